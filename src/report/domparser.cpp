#include "report/domparser.h"

#include "dom/nodesearch.h"
#include "events/eventsender.h"
#include "host/trace.h"
#include "report/attributes.h"

#include <utility>

namespace {

// The text of an element whose first child is a text; a CDATA section is none.
bool ReadText(const QDomNode &node, QString &text)
{
    const QDomNode first = node.firstChild();
    const bool isText = first.nodeType() == QDomNode::TextNode;
    if (isText) {
        text = first.nodeValue();
    }
    return isText;
}

} // namespace

DomParser::DomParser(ITagwright *pCallback, OccursMap occursMap, ChoiceMap choiceMap)
    : m_OccursMap(std::move(occursMap))
    , m_ChoiceMap(std::move(choiceMap))
    , m_hChoiceKeys(GreatestChoiceKeys(m_ChoiceMap))
    , m_oOccurrences(m_OccursMap, m_oElementIndex)
{
    if (trace::CheckCallback(pCallback, "DomParser", QStringLiteral("domparser"), __LINE__)) {
        m_pCallback = pCallback;
        m_pCurrentElement = std::make_unique<QDomElement>();
        m_pResumeNode = &m_oResumeNode;
    }
}

DomParser::~DomParser() = default;

bool DomParser::SetDocument(QDomDocument *document)
{
    if (document == nullptr) {
        return false;
    }
    m_pDocument = document;
    return true;
}

bool DomParser::Parse()
{
    if (m_pCallback == nullptr || m_pDocument == nullptr) {
        return false;
    }
    const QDomElement root = m_pDocument->documentElement();
    if (root.isNull()) {
        return false;
    }
    m_bWalking = true;
    m_oElementIndex.SetDocument(*m_pDocument);
    SendEvent<DocBeginEvent>(m_pCallback);
    AnnounceRoot(root);
    WalkLevels(root);
    EndWalk();
    return true;
}

QDomElement *DomParser::GetCurrentElement()
{
    return m_pCurrentElement.get();
}

bool DomParser::SetNodeToContinue(QDomNode *node, bool stayOnNode)
{
    if (node == nullptr) {
        return false;
    }
    m_bResumeRequested = true;
    m_bResumeOnSameNode = stayOnNode;
    m_pResumeNode = node;
    return true;
}

std::list<QDomNode> *DomParser::GetElement(QString name, QString parent)
{
    auto result = std::make_unique<std::list<QDomNode>>();
    m_pSearchResult = result.get();
    if (m_pDocument != nullptr) {
        dom::FindBelow(name, parent, dom::DocumentRoots(*m_pDocument), *m_pSearchResult);
    }
    return result.release();
}

// The root is never removed. Whatever the receiver asks for here is taken up at the root's first child.
void DomParser::AnnounceRoot(const QDomElement &root)
{
    *m_pCurrentElement = root;
    SendElemBegin(root, QString());
}

// One level for each element that has been entered, on a stack of its own: each empty container that is removed leaves
// a level behind, so that a row of them would overflow the call stack.
void DomParser::WalkLevels(const QDomElement &root)
{
    std::vector<Level> levels;
    levels.push_back({ root, root.firstChild(), QString(), true });
    while (!levels.empty()) {
        Level &level = levels.back();
        if (IsAtEnd(level)) {
            Leave(levels);
        } else if (HandleChild(level)) {
            const QDomElement entered = level.m_oChild.toElement();
            levels.push_back({ entered, entered.firstChild(), QString(), false });
        }
    }
}

void DomParser::Leave(std::vector<Level> &levels)
{
    levels.pop_back();
    if (!levels.empty()) {
        levels.back().m_oChild = levels.back().m_oChild.nextSibling();
    }
}

bool DomParser::IsAtEnd(const Level &level) const
{
    return level.m_oChild.isNull() || (!level.m_bTop && level.m_oChild.nodeType() == QDomNode::TextNode);
}

// Announces the level's child and moves the level on to what comes next. True if that is the inside of its child.
bool DomParser::HandleChild(Level &level)
{
    AnnounceChild(level);
    if (m_bResumeRequested) {
        TakeUpResumeNode(level);
        return false;
    }
    if (!HandleUnsetElement()) {
        return true;
    }
    level.m_oChild = *m_pResumeNode;
    // At the top a container of which the content decides is announced once more before it is entered.
    return !level.m_bTop && m_pPendingElement != nullptr;
}

void DomParser::AnnounceChild(Level &level)
{
    *m_pCurrentElement = level.m_oChild.toElement();
    if (!ReadText(level.m_oChild, level.m_sText) && !level.m_bTop) {
        TakeDefaultAsText();
    }
    SendElemBegin(level.m_oChild, level.m_sText);
}

void DomParser::TakeDefaultAsText()
{
    const QString name = QStringLiteral("default");
    const QString value = m_pCurrentElement->attribute(name);
    if (!value.isEmpty()) {
        const ElementIndex::OwnChange change(m_oElementIndex);
        m_pCurrentElement->removeAttribute(name);
        m_pCurrentElement->appendChild(m_pDocument->createTextNode(value));
    }
}

void DomParser::TakeUpResumeNode(Level &level)
{
    m_bResumeRequested = false;
    level.m_oChild = *m_pResumeNode;
    if (!level.m_bTop) {
        m_pPendingElement.reset();
    }
    if (!m_bResumeOnSameNode) {
        level.m_oChild = level.m_oChild.nextSibling();
    }
}

// The handler may end its document before this object goes, so nothing of it is held on to.
void DomParser::EndWalk()
{
    m_pCurrentElement->clear();
    SendEvent<DocEndEvent>(m_pCallback);
    m_bWalking = false;
    m_pCurrentElement->clear();
    m_pPendingElement.reset();
    m_oResumeNode.clear();
    m_pResumeNode = &m_oResumeNode;
    m_oElementIndex.SetDocument(QDomDocument());
}

// Called for an element that stays without a value. True: m_pResumeNode says where to go on.
bool DomParser::HandleUnsetElement()
{
    if (m_pPendingElement != nullptr) {
        if (!HasType()) {
            return false;
        }
        DropPendingElement();
        return true;
    }
    const QString name = m_pCurrentElement->tagName();
    if (!CheckOccursMap(name) && !IsChoiceItem(name)) {
        Error(ITagwright::CURRENT_OCCURRENCE_IS_NOT_VALID);
        return false;
    }
    // Asked only now: what the receiver does on an error may take the type away.
    if (HasType()) {
        DropCurrentElement();
        return true;
    }
    m_pPendingElement = std::make_unique<QDomElement>(*m_pCurrentElement);
    m_oResumeNode = *m_pCurrentElement;
    m_pResumeNode = &m_oResumeNode;
    return true;
}

// An element without a type is a container, whatever it holds.
bool DomParser::HasType() const
{
    return !m_pCurrentElement->attribute(QStringLiteral("type")).isEmpty();
}

// The first element with simple content that gets no value decides for the whole container.
void DomParser::DropPendingElement()
{
    const QDomElement pending = *m_pPendingElement;
    ResumeBehind(pending);
    Remove(pending);
    m_pPendingElement.reset();
}

void DomParser::DropCurrentElement()
{
    const QDomElement unset = *m_pCurrentElement;
    ResumeBehind(unset);
    if (!Remove(unset)) {
        Error(ITagwright::GENERAL_ERROR);
    }
}

void DomParser::ResumeBehind(const QDomNode &node)
{
    m_oResumeNode = node.nextSibling();
    m_pResumeNode = &m_oResumeNode;
    *m_pCurrentElement = m_oResumeNode.toElement();
}

// Whether the current element may be left out where it stands.
bool DomParser::CheckOccursMap(const QString &name)
{
    if (!m_oOccurrences.HasRow(name)) {
        Error(ITagwright::CURRENT_VALUE_IS_NOT_VALID);
        return false;
    }
    return m_oOccurrences.IsFound(name, name, *m_pCurrentElement, [](int key) { return key % 100 == 0; });
}

bool DomParser::IsChoiceItem(const QString &name) const
{
    return !name.isEmpty() && m_hChoiceKeys.contains(name);
}

QXmlAttributes DomParser::ToXmlAttributes(const QDomNode &node) const
{
    QXmlAttributes result;
    for (const QDomAttr &attribute : SortedAttributes(node)) {
        result.append(attribute.nodeName(), QString(), QString(), attribute.nodeValue());
    }
    return result;
}

void DomParser::SendElemBegin(const QDomNode &node, const QString &text)
{
    SendEvent<ElemBeginEvent>(m_pCallback, node, node.nodeName(), ToXmlAttributes(node), text);
}

void DomParser::Error(ITagwright::ErrorID id)
{
    SendEvent<ErrorEvent>(m_pCallback, id);
}

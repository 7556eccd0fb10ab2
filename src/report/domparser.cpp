#include "report/domparser.h"

#include "dom/nextsibling.h"
#include "dom/nodesearch.h"
#include "events/eventsender.h"
#include "host/trace.h"

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
    if (!m_bUnwatched) {
        m_oAttributes.SetShared();
    }
    m_oElementIndex.SetDocument(*m_pDocument);
    SendEvent<DocBeginEvent>(m_pCallback);
    AnnounceRoot(root);
    WalkLevels(root);
    EndWalk();
    return true;
}

void DomParser::SetUnwatched()
{
    m_bUnwatched = true;
    m_oElementIndex.SetUnwatched(true);
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
    m_oAttributes.Bind(root, nullptr);
    m_oRefusals.Clear();
    SendElemBegin(root, QString());
}

// One level for each element that has been entered, on a stack of its own: each empty container that is removed leaves
// a level behind, so that a row of them would overflow the call stack.
void DomParser::WalkLevels(const QDomElement &root)
{
    m_lLevels.push_back({ root, root.firstChild(), QString(), true });
    while (!m_lLevels.empty()) {
        if (IsAtEnd(m_lLevels.back())) {
            LeaveLevel();
        } else if (HandleChild(m_lLevels.back())) {
            EnterChild();
        }
    }
}

void DomParser::EnterChild()
{
    const QDomElement entered = m_lLevels.back().m_oChild.toElement();
    const ModelSequence models = m_oAttributes.GetChildModels();
    m_oAttributes.WriteOwn();
    m_oAttributes.Release();
    m_lLevels.push_back({ entered, entered.firstChild(), QString(), false, models });
}

void DomParser::LeaveLevel()
{
    if (!m_lLevels.back().m_oChild.isNull()) {
        const Level &level = m_lLevels.back(); // a text has ended it: what follows is not walked
        CompleteRest(level);
    }
    m_lLevels.pop_back();
    if (!m_lLevels.empty()) {
        Level &outer = m_lLevels.back();
        outer.m_oChild = dom::NextSibling(outer.m_oChild);
        outer.m_oModels.Advance();
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
    if (!m_oAttributes.IsBoundTo(level.m_oChild)) {
        m_oAttributes.Bind(*m_pCurrentElement, level.m_oModels.GetCurrent());
        m_oRefusals.Clear();
    }
    if (!ReadText(level.m_oChild, level.m_sText) && !level.m_bTop) {
        TakeDefaultAsText();
    }
    SendElemBegin(level.m_oChild, level.m_sText);
}

void DomParser::TakeDefaultAsText()
{
    const QString name = QStringLiteral("default");
    const QString value = m_oAttributes.GetValue(name);
    if (!value.isEmpty()) {
        const ElementIndex::OwnChange change(m_oElementIndex);
        m_oAttributes.Remove(name);
        m_pCurrentElement->appendChild(m_pDocument->createTextNode(value));
    }
}

void DomParser::TakeUpResumeNode(Level &level)
{
    m_bResumeRequested = false;
    if (*m_pResumeNode != level.m_oChild) {
        CompleteDocument(); // wherever that is, the models have not kept step
    }
    level.m_oChild = *m_pResumeNode;
    if (!level.m_bTop) {
        m_pPendingElement.reset();
    }
    if (!m_bResumeOnSameNode) {
        m_oAttributes.WriteAll();
        m_oAttributes.Release();
        level.m_oChild = dom::NextSibling(level.m_oChild);
        level.m_oModels.Advance();
    }
}

// The handler may end its document before this object goes, so nothing of it is held on to.
void DomParser::EndWalk()
{
    m_pCurrentElement->clear();
    SendEvent<DocEndEvent>(m_pCallback);
    m_bWalking = false;
    m_pCurrentElement->clear();
    m_oAttributes.Release();
    m_oRefusals = Refusals();
    m_oMultiplied.Clear();
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
        TellMissing();
        return false;
    }
    // Asked only now: what the receiver does on an error may take the type away.
    if (HasType()) {
        DropCurrentElement();
        return true;
    }
    m_pPendingElement = std::make_unique<QDomElement>(*m_pCurrentElement);
    m_iPendingLevel = m_lLevels.size() - 1;
    m_oResumeNode = *m_pCurrentElement;
    m_pResumeNode = &m_oResumeNode;
    return true;
}

// A container lacks nothing itself, and an element with a default has that for its value. Told behind the error, which
// the receiver may have answered with a value.
void DomParser::TellMissing()
{
    if (!trace::IsOn() || m_bResumeRequested) {
        return;
    }
    m_oRefusals.Tell(*m_pCurrentElement);
    if ((HasType() || m_oRefusals.HasRefusedValue()) && !m_pCurrentElement->firstChild().isText()) {
        m_oRefusals.TellMissing(*m_pCurrentElement, ITagwright::CURRENT_OCCURRENCE_IS_NOT_VALID);
    }
}

// An element without a type is a container, whatever it holds.
bool DomParser::HasType()
{
    return !m_oAttributes.GetValue(QStringLiteral("type")).isEmpty();
}

// The first element with simple content that gets no value decides for the whole container.
void DomParser::DropPendingElement()
{
    const QDomElement pending = *m_pPendingElement;
    const ModelSequence models = ModelsOfPending();
    ResumeBehind(pending, models);
    Remove(pending);
    m_pPendingElement.reset();
}

// The level that the walk is on goes on over the siblings of the pending element, and so over their models.
ModelSequence DomParser::ModelsOfPending()
{
    if (m_iPendingLevel >= m_lLevels.size() || m_lLevels[m_iPendingLevel].m_oChild != *m_pPendingElement) {
        // The walk goes back to elements that it has dealt with already.
        CompleteDocument();
        return ModelSequence();
    }
    return m_lLevels[m_iPendingLevel].m_oModels;
}

void DomParser::DropCurrentElement()
{
    const QDomElement unset = *m_pCurrentElement;
    ResumeBehind(unset, m_lLevels.back().m_oModels);
    if (!Remove(unset)) {
        Error(ITagwright::GENERAL_ERROR);
    }
}

// What is bound now is on its way out of the document, and nothing is written to it.
void DomParser::ResumeBehind(const QDomNode &node, const ModelSequence &models)
{
    m_oResumeNode = dom::NextSibling(node);
    m_pResumeNode = &m_oResumeNode;
    *m_pCurrentElement = m_oResumeNode.toElement();
    Level &level = m_lLevels.back();
    level.m_oModels = models;
    level.m_oModels.Advance();
    m_oAttributes.Bind(*m_pCurrentElement, level.m_oModels.GetCurrent());
    m_oRefusals.Clear();
}

// Whoever takes a node may look at any place of the document, now and later, and change it. Told once: what is noticed
// of changes from then on must not begin anew at each node.
void DomParser::NodeTaken()
{
    if (!m_bUnwatched) {
        return;
    }
    CompleteDocument();
    m_bUnwatched = false;
    m_oElementIndex.SetUnwatched(false);
    m_oAttributes.SetShared();
}

void DomParser::CompleteDocument()
{
    m_oAttributes.WriteAll();
    for (Level &level : m_lLevels) {
        CompleteRest(level);
        level.m_oModels = ModelSequence();
    }
}

// The siblings behind the level's present child, as far as anything of them was kept out: a receiver may cause this at
// each of them.
void DomParser::CompleteRest(const Level &level)
{
    ModelSequence models = level.m_oModels;
    QDomNode node = level.m_oChild;
    while (models.HasMore() && !node.isNull()) {
        node = dom::NextSibling(node);
        models.Advance();
        if (const AttributeModel::Pointer model = models.GetCurrent()) {
            model->WriteTo(node);
        }
    }
}

void DomParser::InsertCopies(int count)
{
    m_oMultiplied.Insert(*m_pCurrentElement);
    QDomElement parent = m_pCurrentElement->parentNode().toElement();
    if (parent.isNull() || count < 1) {
        return; // the root has no place for a second one
    }
    const ElementIndex::OwnChange change(m_oElementIndex);
    if (m_bUnwatched && !m_lLevels.empty()) {
        InsertBareCopies(parent, count);
        return;
    }
    for (int i = 0; i < count; ++i) {
        const QDomNode copy = m_pCurrentElement->cloneNode(true);
        parent.insertAfter(copy, *m_pCurrentElement);
        m_oMultiplied.Insert(copy);
    }
}

void DomParser::InsertBareCopies(QDomElement parent, int count)
{
    const AttributeModel::Pointer model = m_oAttributes.MakeModel();
    const QDomNode bare = m_pCurrentElement->cloneNode(true);
    AttributeModel::Strip(bare);
    for (int i = 0; i < count; ++i) {
        const QDomNode copy = i == 0 ? bare : bare.cloneNode(true);
        parent.insertAfter(copy, *m_pCurrentElement);
        m_oMultiplied.Insert(copy);
    }
    m_lLevels.back().m_oModels.InsertBehind(model, count);
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

void DomParser::SendElemBegin(const QDomNode &node, const QString &text)
{
    SendEvent<ElemBeginEvent>(m_pCallback, node, node.nodeName(), m_oAttributes.GetEventAttributes(), text,
                              static_cast<INodeWatcher *>(&m_oNodeWatch));
    // An element that is announced again may still get its values then.
    if (trace::IsOn() && !(m_bResumeRequested && m_bResumeOnSameNode)) {
        m_oRefusals.Tell(node.toElement());
    }
}

void DomParser::Error(ITagwright::ErrorID id)
{
    SendEvent<ErrorEvent>(m_pCallback, id);
}

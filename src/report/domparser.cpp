#include "report/domparser.h"

#include "dom/nodesearch.h"
#include "dom/nodewalk.h"
#include "events/eventsender.h"
#include "host/trace.h"

#include <algorithm>
#include <utility>

namespace {

// An event that tells the walk when a receiver takes hold of its node.
class WalkEvent final : public ElemBeginEvent
{
public:
    WalkEvent(const QDomNode &node, const QXmlAttributes &attributes, const QString &text,
              const std::function<void()> *nodeTaken)
        : ElemBeginEvent(node, node.nodeName(), attributes, text, nodeTaken)
    {
    }
};

} // namespace

DomParser::DomParser(ITagwright *pCallback, OccursMap occursMap, ChoiceMap choiceMap)
    : m_OccursMap(std::move(occursMap))
    , m_ChoiceMap(std::move(choiceMap))
    , m_oOccurrences(m_OccursMap, m_oWalked)
{
    if (trace::CheckCallback(pCallback, "DomParser", QStringLiteral("domparser"), __LINE__)) {
        m_pCallback = pCallback;
        m_pCurrentElement = std::make_unique<QDomElement>();
        m_pResumeNode = &m_oResumeNode;
    }
}

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
    m_oWalked.SetDocument(*m_pDocument);
    SendEvent<DocBeginEvent>(m_pCallback);
    // The root is never removed. Whatever the receiver asks for here is taken up at the root's first child.
    SetCurrent(root, nullptr);
    SendElemBegin(root, QString());
    if (m_pValidOutput != nullptr) {
        m_pValidOutput->Enter(root, m_oAttributes);
    }
    WalkLevels(root);
    m_pCurrentElement->clear();
    if (m_pValidOutput != nullptr) {
        FinishValidOutput();
    }
    SendEvent<DocEndEvent>(m_pCallback);
    return true;
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

// One level for each element that has been entered, on a stack of its own: each empty container that is removed leaves
// a level behind, so that a row of them would overflow the call stack.
void DomParser::WalkLevels(const QDomElement &root)
{
    m_lLevels.push_back({ ChildCursor(root), QString(), true });
    while (!m_lLevels.empty()) {
        Level &level = m_lLevels.back();
        const QDomNode &child = level.m_oCursor.GetNode();
        if (child.isNull() || (!level.m_bTop && child.nodeType() == QDomNode::TextNode)) {
            LeaveLevel();
        } else if (HandleChild(level)) {
            EnterChild();
        }
    }
}

void DomParser::EnterChild()
{
    const QDomElement entered = m_lLevels.back().m_oCursor.GetNode().toElement();
    const ChildCursor children(entered, m_oAttributes.GetModel());
    if (m_pValidOutput != nullptr) {
        m_pValidOutput->Enter(entered, m_oAttributes);
    }
    m_oAttributes.WriteOwn();
    m_oAttributes.Release();
    m_lLevels.push_back({ children, QString(), false });
}

void DomParser::LeaveLevel()
{
    m_lLevels.back().m_oCursor.WriteRest(); // a text may have ended the level: the siblings behind it aren't walked
    m_lLevels.pop_back();
    if (m_pValidOutput != nullptr) {
        m_pValidOutput->Leave();
    }
    if (!m_lLevels.empty()) {
        m_lLevels.back().m_oCursor.Advance();
    }
}

// Announces the level's child and moves the level on to the node that comes next. True if the child is to be entered.
bool DomParser::HandleChild(Level &level)
{
    AnnounceChild(level);
    if (m_bResumeRequested) {
        TakeUpRequest(level);
        return false;
    }
    if (!HandleUnsetElement()) {
        return true;
    }
    MoveToResumeNode(level);
    // At the top a pending container is announced once more before it is entered.
    return !level.m_bTop && m_pPendingElement != nullptr;
}

void DomParser::AnnounceChild(Level &level)
{
    const QDomNode child = level.m_oCursor.GetNode();
    SetCurrent(child, level.m_oCursor.GetModel());
    const QString defaultName = QStringLiteral("default");
    const QDomNode first = child.firstChild();
    if (first.nodeType() == QDomNode::TextNode) {
        level.m_sText = first.nodeValue();
    } else if (const QString value = level.m_bTop ? QString() : m_oAttributes.GetValue(defaultName); !value.isEmpty()) {
        const WalkedDocument::OwnChange change(m_oWalked);
        m_oAttributes.Remove(defaultName);
        if (m_pValidOutput == nullptr) {
            m_pCurrentElement->appendChild(m_pDocument->createTextNode(value));
        }
    }
    SendElemBegin(child, level.m_sText);
}

void DomParser::TakeUpRequest(Level &level)
{
    m_bResumeRequested = false;
    if (m_pValidOutput != nullptr && !m_bResumeOnSameNode) {
        m_pValidOutput->Pass(*m_pCurrentElement, m_oAttributes);
    }
    MoveToResumeNode(level);
    if (!level.m_bTop) {
        m_pPendingElement.reset();
    }
    if (!m_bResumeOnSameNode) {
        m_oAttributes.WriteAll();
        m_oAttributes.Release();
        if (m_pValidOutput != nullptr) {
            m_pValidOutput->PassContent(*m_pCurrentElement);
        }
        level.m_oCursor.Advance();
    }
}

// The node may be one that the receiver has named, anywhere: the models don't belong to its siblings then.
void DomParser::MoveToResumeNode(Level &level)
{
    if (level.m_oCursor.GetNode() != *m_pResumeNode) {
        CompleteDocument();
        level.m_oCursor.MoveTo(*m_pResumeNode);
    }
}

// Called for an element that stays without a value. True: the walk goes on at m_pResumeNode.
bool DomParser::HandleUnsetElement()
{
    if (m_pValidOutput != nullptr) {
        return false;
    }
    if (m_pPendingElement != nullptr) {
        if (!HasType()) {
            return false;
        }
        Drop(CursorOfPending());
        m_pPendingElement.reset();
        return true;
    }
    const QString name = m_pCurrentElement->tagName();
    if (!CheckOccursMap(name) && !IsChoiceItem(name)) {
        Error(ITagwright::CURRENT_OCCURRENCE_IS_NOT_VALID);
        TellMissing();
        return false;
    }
    // Asked only now: the receiver may have taken the type away when it was told of error 15.
    if (HasType()) {
        if (!Drop(m_lLevels.back().m_oCursor)) {
            Error(ITagwright::GENERAL_ERROR);
        }
        return true;
    }
    // An optional container: its content decides whether it stays.
    m_pPendingElement = std::make_unique<QDomElement>(*m_pCurrentElement);
    m_iPendingLevel = m_lLevels.size() - 1;
    m_bGoesBack = true;
    m_oResumeNode = *m_pCurrentElement;
    m_pResumeNode = &m_oResumeNode;
    return true;
}

// Called behind the error, which the receiver may have answered with a value. A container needs no value, and an
// element with a default has one.
void DomParser::TellMissing()
{
    if (!m_oRefusals.IsAsked() || m_bResumeRequested) {
        return;
    }
    m_oRefusals.Tell(*m_pCurrentElement);
    if ((HasType() || m_oRefusals.HasRefusedValue()) && !m_pCurrentElement->firstChild().isText()) {
        m_oRefusals.TellMissing(*m_pCurrentElement, QString(), ITagwright::CURRENT_OCCURRENCE_IS_NOT_VALID);
    }
}

// There is no current element any more, so that an answer to an error changes nothing.
void DomParser::FinishValidOutput()
{
    using Kind = ValidOutput::Finding::Kind;
    if (m_oWalked.IsWatched()) {
        m_pValidOutput->CleanRest();
    }
    for (const ValidOutput::Finding &finding : m_pValidOutput->Finish()) {
        switch (finding.m_eKind) {
        case Kind::Remove:
            Remove(finding.m_oElement);
            break;
        case Kind::Excluded:
            m_oRefusals.TellExcluded(finding.m_oElement, ITagwright::CURRENT_OCCURRENCE_IS_NOT_VALID);
            break;
        case Kind::Missing:
            Error(ITagwright::CURRENT_OCCURRENCE_IS_NOT_VALID);
            [[fallthrough]];
        case Kind::MissingAttribute:
            m_oRefusals.TellMissing(finding.m_oElement, finding.m_sAttribute,
                                    ITagwright::CURRENT_OCCURRENCE_IS_NOT_VALID);
            break;
        }
    }
}

// The level that is walked goes on over the siblings of the pending element.
ChildCursor DomParser::CursorOfPending()
{
    if (m_iPendingLevel < m_lLevels.size() && m_lLevels[m_iPendingLevel].m_oCursor.GetNode() == *m_pPendingElement) {
        return m_lLevels[m_iPendingLevel].m_oCursor;
    }
    // The walk has left the pending element and comes back to siblings of which the models are used up and the
    // positions change.
    CompleteDocument();
    m_oRefusals.ForgetPath();
    ChildCursor cursor;
    cursor.MoveTo(*m_pPendingElement);
    return cursor;
}

// The walk goes on behind the element that the cursor stands on. Its attributes aren't written back: it is removed.
bool DomParser::Drop(ChildCursor cursor)
{
    const QDomNode dropped = cursor.GetNode();
    cursor.Advance();
    m_lLevels.back().m_oCursor = cursor;
    m_oResumeNode = cursor.GetNode();
    m_pResumeNode = &m_oResumeNode;
    m_oAttributes.Release();
    SetCurrent(m_oResumeNode, cursor.GetModel());
    return Remove(dropped);
}

bool DomParser::Remove(const QDomNode &node)
{
    m_oRefusals.LeaveOut(node);
    return m_oWalked.Remove(node);
}

// A receiver that holds a node may look at any place of the document, now and later, and change it: from here on the
// document is complete, and all questions read it.
void DomParser::NodeTaken()
{
    if (!m_oWalked.IsWatched()) {
        CompleteDocument();
        m_oWalked.SetWatched(true);
    }
}

void DomParser::CompleteDocument()
{
    m_oAttributes.WriteAll();
    for (Level &level : m_lLevels) {
        level.m_oCursor.WriteRest();
    }
}

void DomParser::Multiply(int count)
{
    m_oMultiplied.Insert(*m_pCurrentElement);
    QDomElement parent = m_pCurrentElement->parentNode().toElement();
    if (parent.isNull() || count <= 1) {
        return; // there can't be a second root
    }
    const WalkedDocument::OwnChange change(m_oWalked);
    const bool isBare = !m_oWalked.IsWatched() && !m_lLevels.empty();
    QDomNode copy = m_pCurrentElement->cloneNode(true);
    if (isBare) {
        m_lLevels.back().m_oCursor.InsertBehind(m_oAttributes.MakeModel(), count - 1);
        AttributeModel::Strip(copy);
    }
    for (int i = 1; i < count; ++i) {
        copy = i == 1 ? copy : copy.cloneNode(true);
        parent.insertAfter(copy, *m_pCurrentElement);
        m_oMultiplied.Insert(copy);
    }
}

// Without a pending element the walk only goes forward, so that no element but the current one comes again. Behind a
// pending element it may go back, and pass over the same siblings on two levels.
bool DomParser::ServeOnce()
{
    if (m_oLastServed == *m_pCurrentElement || m_oServed.Contains(*m_pCurrentElement)) {
        return false;
    }
    m_oLastServed = *m_pCurrentElement;
    if (m_bGoesBack) {
        m_oServed.Insert(*m_pCurrentElement);
    }
    return true;
}

// Whether the current element may be left out where it stands.
bool DomParser::CheckOccursMap(const QString &name)
{
    const OccurrenceLookup::Row *row = m_oOccurrences.FindRow(name);
    if (row == nullptr) {
        Error(ITagwright::CURRENT_VALUE_IS_NOT_VALID);
        return false;
    }
    return m_oOccurrences.IsFound(*row, name, *m_pCurrentElement, [](int key) { return key % 100 == 0; });
}

bool DomParser::IsChoiceItem(const QString &name) const
{
    return !name.isEmpty()
        && std::any_of(m_ChoiceMap.begin(), m_ChoiceMap.end(), [&](const auto &row) { return row.second == name; });
}

void DomParser::SetCurrent(const QDomNode &node, AttributeModel::Pointer model)
{
    *m_pCurrentElement = node.toElement();
    // An element that is announced again keeps its changed attributes and its refused values.
    if (!m_oAttributes.IsBoundTo(node)) {
        m_oAttributes.Bind(*m_pCurrentElement, std::move(model));
        m_oRefusals.Clear();
    }
}

void DomParser::SendElemBegin(const QDomNode &node, const QString &text)
{
    SendEvent<WalkEvent>(m_pCallback, node, m_oAttributes.GetEventAttributes(), text, &m_fnNodeTaken);
    // An element that is announced again may still get its values then.
    if (!m_bResumeRequested || !m_bResumeOnSameNode) {
        m_oRefusals.Tell(*m_pCurrentElement);
    }
}

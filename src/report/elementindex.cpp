#include "report/elementindex.h"

#include "dom/nextsibling.h"
#include "dom/nodesearch.h"
#include "report/nodeset.h"

namespace {

// A document of which little is asked is not worth going through as a whole.
constexpr int kSearchesAtFirst = 4;
constexpr int kMostSearches = 1 << 20;

QDomNode NextOutside(QDomNode node)
{
    QDomNode sibling = dom::NextSibling(node);
    while (sibling.isNull() && !node.isNull()) {
        node = node.parentNode();
        sibling = dom::NextSibling(node);
    }
    return sibling;
}

QDomNode NextNode(const QDomNode &node)
{
    const QDomNode child = node.firstChild();
    return child.isNull() ? NextOutside(node) : child;
}

QDomNode TopOf(QDomNode node)
{
    for (QDomNode parent = node.parentNode(); !parent.isNull(); parent = parent.parentNode()) {
        node = parent;
    }
    return node;
}

// Texts and comments, by their fixed names, are never taken for the element of a name; a processing instruction or an
// entity reference may be, and then decides where a search ends.
bool IsNamedLikeElement(const QDomNode &node)
{
    return !node.isElement() && !node.nodeName().startsWith(QLatin1Char('#'));
}

// The first node from `node` on that a name may stand for, null at the end. A text may go at any time.
QDomNode NextElement(QDomNode node, const QDomNode &end)
{
    while (!node.isNull() && node != end && !node.isElement() && !IsNamedLikeElement(node)) {
        node = NextNode(node);
    }
    return node == end ? QDomNode() : node;
}

bool IsWithin(QDomNode node, const QDomNode &top)
{
    while (!node.isNull() && node != top) {
        node = node.parentNode();
    }
    return !node.isNull();
}

} // namespace

void ElementIndex::SetDocument(const QDomDocument &document)
{
    Forget();
    m_iPatience = kSearchesAtFirst;
    m_hRemoved.clear();
    m_oTop = Top();
    m_oDocument = document;
}

void ElementIndex::SetUnwatched(bool unwatched)
{
    m_bUnwatched = unwatched;
    Arm();
}

QDomNode ElementIndex::FindFirst(const QString &name)
{
    ForgetIfChanged();
    const Top &top = GetTop();
    const bool isRoot = top.m_sRootName == name;
    if (!m_bKnown && !isRoot && ++m_iSearches > m_iPatience) {
        BeginScan();
    }
    if (!m_bKnown || isRoot || name.startsWith(QLatin1Char('#'))) {
        return dom::FindFirst(name, { top.m_oRoot, top.m_oLast });
    }
    return FindKnown(name);
}

const ElementIndex::Top &ElementIndex::GetTop()
{
    if (!m_bUnwatched || m_oTop.m_oRoot.isNull()) {
        m_oTop.m_oRoot = m_oDocument.documentElement();
        m_oTop.m_sRootName = m_oTop.m_oRoot.tagName();
        m_oTop.m_oLast = m_oDocument.lastChild();
    }
    return m_oTop;
}

bool ElementIndex::Remove(QDomNode node)
{
    QDomNode parent = node.parentNode();
    if (parent.isNull()) {
        return false;
    }
    const OwnChange change(*this);
    if (parent.isDocument()) {
        Forget();
        m_oTop = Top();
    }
    const QDomNode successor = m_bKnown ? NextOutside(node) : QDomNode();
    if (m_bKnown && IsWithin(m_oScan, node)) {
        m_oScan = NextElement(successor, m_oScanEnd);
    }
    m_hRemoved[NodeIdentity(node).Get()] = { node, successor };
    return !parent.removeChild(node).isNull();
}

void ElementIndex::ForgetIfChanged()
{
    if (m_bKnown && !m_bUnwatched && m_oProbe.HasChanged()) {
        GiveUp();
    }
}

// A receiver that changes the document all the time would have it gone through again and again.
void ElementIndex::GiveUp()
{
    Forget();
    m_iPatience = qMin(2 * m_iPatience, kMostSearches);
}

void ElementIndex::Forget()
{
    m_bKnown = false;
    m_iSearches = 0;
    m_hFirst.clear();
    m_oScan.clear();
    m_oScanEnd.clear();
    m_oProbe.Disarm();
}

void ElementIndex::Arm()
{
    if (m_bKnown && !m_bUnwatched) {
        m_oProbe.Arm(m_oDocument);
    }
}

void ElementIndex::BeginScan()
{
    const QDomElement root = GetTop().m_oRoot;
    m_oScanEnd = NextOutside(root);
    m_oScan = NextElement(root.firstChild(), m_oScanEnd);
    m_bKnown = true;
    Arm();
}

// Goes on with the scan until it has come upon the name or to the end. What is put into the document in front of the
// scan are copies, of which each name has been seen.
void ElementIndex::ScanTo(const QString &name)
{
    while (!m_oScan.isNull() && !m_hFirst.contains(name)) {
        if (IsNamedLikeElement(m_oScan)) {
            GiveUp();
            return;
        }
        const QString scanned = m_oScan.nodeName();
        if (!m_hFirst.contains(scanned)) {
            m_hFirst.insert(scanned, m_oScan);
        }
        m_oScan = NextElement(NextNode(m_oScan), m_oScanEnd);
    }
}

QDomNode ElementIndex::FindKnown(const QString &name)
{
    ScanTo(name);
    const auto entry = m_hFirst.find(name);
    if (!m_bKnown) {
        return dom::FindFirst(name, dom::DocumentRoots(m_oDocument));
    }
    if (entry == m_hFirst.end()) {
        return QDomNode();
    }
    const bool isStanding = TopOf(*entry).isDocument() || FindAgain(name, *entry);
    if (isStanding && (entry->isNull() || entry->nodeName() == name)) {
        return *entry;
    }
    // Somebody has renamed it, or has taken it out in a way that could not be noticed.
    Forget();
    return dom::FindFirst(name, dom::DocumentRoots(m_oDocument));
}

// What stood in front of a removed element holds none of its name, and nothing is ever put there: the search goes on
// where the removed subtree stood. So a name of which each element is removed in its turn costs one pass in all.
bool ElementIndex::FindAgain(const QString &name, QDomNode &first)
{
    QDomNode top = TopOf(first);
    while (!first.isNull() && !top.isDocument()) {
        const auto removed = m_hRemoved.find(NodeIdentity(top).Get());
        if (removed == m_hRemoved.end()) {
            return false;
        }
        first = removed->second.m_oSuccessor;
        top = TopOf(first);
    }
    const QDomNode end = NextOutside(m_oDocument.documentElement());
    while (!first.isNull() && first != end && first.nodeName() != name) {
        first = NextNode(first);
    }
    if (first == end) {
        first.clear();
    }
    return true;
}

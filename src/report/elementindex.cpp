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

} // namespace

void ElementIndex::SetDocument(const QDomDocument &document)
{
    Forget();
    m_iPatience = kSearchesAtFirst;
    m_hRemoved.clear();
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
    const dom::SearchRoots roots = dom::DocumentRoots(m_oDocument);
    const bool isRoot = roots.m_oStart.tagName() == name;
    if (!m_bKnown && !isRoot && ++m_iSearches > m_iPatience) {
        Build();
    }
    if (!m_bKnown || isRoot || name.startsWith(QLatin1Char('#'))) {
        return dom::FindFirst(name, roots);
    }
    return FindKnown(name);
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
    }
    const QDomNode successor = m_bKnown ? NextOutside(node) : QDomNode();
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
    m_oProbe.Disarm();
}

void ElementIndex::Arm()
{
    if (m_bKnown && !m_bUnwatched) {
        m_oProbe.Arm(m_oDocument);
    }
}

void ElementIndex::Build()
{
    const QDomElement root = m_oDocument.documentElement();
    const QDomNode end = NextOutside(root);
    for (QDomNode node = root.firstChild(); !node.isNull() && node != end; node = NextNode(node)) {
        if (IsNamedLikeElement(node)) {
            GiveUp();
            return;
        }
        const QString name = node.nodeName();
        if (node.isElement() && !m_hFirst.contains(name)) {
            m_hFirst.insert(name, node);
        }
    }
    m_bKnown = true;
    Arm();
}

QDomNode ElementIndex::FindKnown(const QString &name)
{
    const auto entry = m_hFirst.find(name);
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

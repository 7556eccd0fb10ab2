#include "report/walkeddocument.h"

#include "report/nodeset.h"

namespace {

bool IsInDocument(QDomNode node)
{
    while (!node.isNull() && !node.isDocument()) {
        node = node.parentNode();
    }
    return !node.isNull();
}

} // namespace

const dom::SearchRoots &WalkedDocument::GetRoots()
{
    if (m_bWatched || m_oRoots.m_oStart.isNull()) {
        m_oRoots = dom::DocumentRoots(m_oDocument);
    }
    return m_oRoots;
}

QDomNode WalkedDocument::FindFirst(const QString &name)
{
    ForgetIfChanged();
    const auto known = m_hFirst.constFind(name);
    if (known != m_hFirst.constEnd() && (known->isNull() || (known->nodeName() == name && IsInDocument(*known)))) {
        return *known;
    }
    const QDomNode first = dom::FindFirst(name, GetRoots());
    m_hFirst.insert(name, first);
    Arm();
    return first;
}

bool WalkedDocument::Remove(QDomNode node)
{
    QDomNode parent = node.parentNode();
    if (parent.isNull()) {
        return false;
    }
    const OwnChange change(*this);
    if (parent.isDocument()) {
        m_oRoots = dom::SearchRoots();
        m_hFirst.clear();
    }
    m_lGone.push_back({ node, parent });
    return !parent.removeChild(node).isNull();
}

int WalkedDocument::CountGone(const QDomNode &parent, const QString &name)
{
    for (; m_iCounted < m_lGone.size(); ++m_iCounted) {
        const Gone &gone = m_lGone[m_iCounted];
        m_hGone[NodeIdentity(gone.m_oParent).Get()][gone.m_oNode.nodeName()] += gone.m_iCount;
    }
    if (m_hGone.empty()) {
        return 0;
    }
    const auto found = m_hGone.find(NodeIdentity(parent).Get());
    return found == m_hGone.end() ? 0 : found->second.value(name);
}

void WalkedDocument::ForgetIfChanged()
{
    if (m_bWatched && m_oProbe.HasChanged()) {
        m_hFirst.clear();
    }
}

void WalkedDocument::Arm()
{
    if (m_bWatched && !m_hFirst.isEmpty()) {
        m_oProbe.Arm(m_oDocument);
    }
}

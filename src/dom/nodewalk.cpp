#include "dom/nodewalk.h"

#include <vector>

namespace dom {

void NodeWalk::Next(bool passOver)
{
    if (!passOver && m_oNode.hasChildNodes()) {
        m_oNode = m_oNode.firstChild();
        ++m_iDepth;
        return;
    }
    for (; m_iDepth > 0; --m_iDepth) {
        const QDomNode sibling = m_oNode.nextSibling();
        if (!sibling.isNull()) {
            m_oNode = sibling;
            return;
        }
        m_oNode = m_oNode.parentNode();
    }
    m_oNode = QDomNode();
}

bool IsDeeperThan(const QDomNode &top, int limit)
{
    const int atTop = top.isElement() ? 1 : 0;
    for (NodeWalk walk(top); !walk.AtEnd(); walk.Next()) {
        if (walk.Node().isElement() && walk.Depth() + atTop > limit) {
            return true;
        }
    }
    return false;
}

void TakeApart(const QDomNode &node)
{
    std::vector<QDomNode> open { node };
    while (!open.empty()) {
        QDomNode parent = open.back();
        open.pop_back();
        for (QDomNode child = parent.firstChild(); !child.isNull(); child = parent.firstChild()) {
            parent.removeChild(child);
            open.push_back(child);
        }
    }
}

} // namespace dom

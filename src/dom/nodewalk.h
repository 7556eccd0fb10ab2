#pragma once

#include <QDomNode>

namespace dom {

/// The sibling behind a node that a receiver may have taken out of its document. Where the parent of a node that is
/// held has been destroyed, Qt leaves it with pointers to siblings that are gone.
inline QDomNode NextSibling(const QDomNode &node)
{
    return node.parentNode().isNull() ? QDomNode() : node.nextSibling();
}

/// Goes through a node and all that is below it, in document order, without recursion:
///
///     for (dom::NodeWalk walk(top); !walk.AtEnd(); walk.Next()) {
///         Use(walk.Node(), walk.Depth());
///     }
///
/// The tree may change behind the node on which the walk stands, and below it.
class NodeWalk
{
public:
    /// A null node is a walk at its end.
    explicit NodeWalk(const QDomNode &top)
        : m_oNode(top)
    {
    }

    bool AtEnd() const { return m_oNode.isNull(); }
    const QDomNode &Node() const { return m_oNode; }
    /// Levels below the top, which is at 0.
    int Depth() const { return m_iDepth; }

    /// To the first child, unless what is below the node is to be passed over; else to the next node outside it.
    void Next(bool passOver = false);

private:
    QDomNode m_oNode;
    int m_iDepth = 0;
};

/// True if more than `limit` elements lie within each other at some place in `top`, itself counted if it is an element.
[[nodiscard]] bool IsDeeperThan(const QDomNode &top, int limit);

/// Takes all that is below `node` out of its parents, so that a tree of any depth can be destroyed: Qt does that by
/// recursion. A node to which a handle is kept elsewhere is alone after it.
void TakeApart(const QDomNode &node);

} // namespace dom

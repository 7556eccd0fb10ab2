#pragma once

#include <QDomNode>

#include <unordered_map>

/// A node's identity, by which it can be filed. Handles on one node share it; it is unique as long as one of them
/// lives.
class NodeIdentity : public QDomNode
{
public:
    explicit NodeIdentity(const QDomNode &node)
        : QDomNode(node)
    {
    }

    const void *Get() const { return impl; }
};

/// A set of nodes, which stay alive in it. Finding one takes the same time however many there are.
class NodeSet
{
public:
    void Insert(const QDomNode &node) { m_hNodes.emplace(NodeIdentity(node).Get(), node); }
    bool Contains(const QDomNode &node) const { return m_hNodes.count(NodeIdentity(node).Get()) != 0; }

private:
    std::unordered_map<const void *, QDomNode> m_hNodes;
};

#include "dom/nodesearch.h"

#include "dom/nodewalk.h"

namespace dom {

namespace {

/// An element made with a namespace may be called "p:x" by nodeName and "x" by tagName. Where only the latter is the
/// name sought, the element counts as a start of that name: the top node stands for it.
bool IsStartCalled(const QDomNode &node, const QString &name)
{
    return node.isElement() && node.toElement().tagName() == name;
}

} // namespace

SearchRoots DocumentRoots(const QDomDocument &document)
{
    return { document.documentElement(), document.lastChild() };
}

QDomNode FindFirst(const QString &name, const SearchRoots &roots)
{
    if (roots.m_oStart.tagName() == name) {
        return roots.m_oTop;
    }
    NodeWalk walk(roots.m_oStart);
    for (walk.Next(); !walk.AtEnd();) {
        const QDomNode &node = walk.Node();
        const bool isMatch = node.nodeName() == name;
        const bool isStart = !isMatch && IsStartCalled(node, name);
        if (isMatch && node.isElement()) {
            return node;
        }
        if (isStart && roots.m_oTop.isElement()) {
            return roots.m_oTop;
        }
        const int depth = walk.Depth();
        walk.Next(isMatch || isStart || !node.isElement());
        // A match that is no element: the search of its parent ends without a result, and goes on behind the parent.
        while (isMatch && walk.Depth() == depth) {
            walk.Next(true);
        }
    }
    return QDomNode();
}

void FindAll(const QString &name, const SearchRoots &roots, std::list<QDomNode> &result)
{
    const QDomNode &top = roots.m_oTop;
    if (roots.m_oStart.tagName() == name && !top.isNull()) {
        result.push_back(top);
    }
    NodeWalk walk(roots.m_oStart);
    for (walk.Next(); !walk.AtEnd();) {
        const QDomNode &node = walk.Node();
        const bool isMatch = node.nodeName() == name;
        if (isMatch || (IsStartCalled(node, name) && !top.isNull())) {
            result.push_back(isMatch ? node : top);
        }
        // What lies in a reference to an entity isn't searched.
        walk.Next(isMatch || !node.isElement());
    }
}

void FindBelow(const QString &name, const QString &parent, const SearchRoots &roots, std::list<QDomNode> &result)
{
    if (parent.isEmpty()) {
        FindAll(name, roots, result);
        return;
    }
    const QDomNode first = FindFirst(parent, roots);
    if (first.isElement()) {
        FindAll(name, { first.toElement(), roots.m_oTop }, result);
    }
}

} // namespace dom

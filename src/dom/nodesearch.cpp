#include "dom/nodesearch.h"

namespace dom {

namespace {

/// The next node in document order that is not below `node`; null where that would leave what is below `start`.
QDomNode NextOutside(QDomNode node, const QDomNode &start)
{
    for (; !node.isNull() && node != start; node = node.parentNode()) {
        const QDomNode sibling = node.nextSibling();
        if (!sibling.isNull()) {
            return sibling;
        }
    }
    return QDomNode();
}

QDomNode NextNode(const QDomNode &node, const QDomNode &start)
{
    return node.isElement() && node.hasChildNodes() ? node.firstChild() : NextOutside(node, start);
}

/// An element made with a namespace may be called "p:x" by nodeName and "x" by tagName. Where only the latter is the
/// name sought, the element counts as a start of that name: the top node stands for it.
bool IsStartCalled(const QDomNode &node, const QString &name)
{
    return node.isElement() && node.toElement().tagName() == name;
}

void AppendTop(const SearchRoots &roots, std::list<QDomNode> &result)
{
    if (!roots.m_oTop.isNull()) {
        result.push_back(roots.m_oTop);
    }
}

} // namespace

SearchRoots DocumentRoots(const QDomDocument &document)
{
    return { document.documentElement(), document.lastChild() };
}

QDomNode FindFirst(const QString &name, const SearchRoots &roots)
{
    const QDomElement &start = roots.m_oStart;
    if (start.tagName() == name) {
        return roots.m_oTop;
    }
    QDomNode node = start.firstChild();
    while (!node.isNull()) {
        const bool isMatch = node.nodeName() == name;
        const bool isStart = !isMatch && IsStartCalled(node, name);
        if (isMatch && node.isElement()) {
            return node;
        }
        if (isStart && roots.m_oTop.isElement()) {
            return roots.m_oTop;
        }
        if (isMatch) {
            // No element: the search of its parent ends here without a result, and goes on behind the parent.
            node = NextOutside(node.parentNode(), start);
        } else {
            node = isStart ? NextOutside(node, start) : NextNode(node, start);
        }
    }
    return QDomNode();
}

void FindAll(const QString &name, const SearchRoots &roots, std::list<QDomNode> &result)
{
    const QDomElement &start = roots.m_oStart;
    if (start.tagName() == name) {
        AppendTop(roots, result);
    }
    QDomNode node = start.firstChild();
    while (!node.isNull()) {
        if (node.nodeName() == name) {
            result.push_back(node);
            node = NextOutside(node, start);
            continue;
        }
        if (IsStartCalled(node, name)) {
            AppendTop(roots, result);
        }
        node = NextNode(node, start);
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

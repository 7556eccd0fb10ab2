#include "dom/nodedepth.h"

bool dom::IsDeeperThan(const QDomNode &top, int limit)
{
    int depth = 0;
    QDomNode node = top;
    while (!node.isNull()) {
        if (node.isElement() && depth + 1 > limit) {
            return true;
        }
        const QDomNode child = node.firstChild();
        if (!child.isNull()) {
            depth += node.isElement() ? 1 : 0;
            node = child;
            continue;
        }
        while (node != top && node.nextSibling().isNull()) {
            node = node.parentNode();
            depth -= node.isElement() ? 1 : 0;
        }
        node = node == top ? QDomNode() : node.nextSibling();
    }
    return false;
}

#pragma once

#include <QDomDocument>
#include <QDomElement>

/// A chain of `depth` elements called "n" around `innermost`; the result is the outermost. Built from the inside, since
/// Qt climbs to the top at each append.
inline QDomElement MakeChain(QDomDocument document, QDomElement innermost, int depth)
{
    for (int level = 0; level < depth; ++level) {
        QDomElement outer = document.createElement(QStringLiteral("n"));
        outer.appendChild(innermost);
        innermost = outer;
    }
    return innermost;
}

/// Takes a chain out of its parent and apart, from its outermost element on: Qt destroys nested nodes by recursion.
inline void DismantleChain(QDomNode outermost)
{
    outermost.parentNode().removeChild(outermost);
    while (!outermost.isNull()) {
        const QDomNode child = outermost.firstChild();
        outermost.removeChild(child);
        outermost = child;
    }
}

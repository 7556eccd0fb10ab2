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

#pragma once

#include <QDomNode>

namespace dom {

/// The sibling behind a node that a receiver may have taken out of its document. Where the parent of a node that is
/// held has been destroyed, Qt leaves it with pointers to siblings that are gone.
inline QDomNode NextSibling(const QDomNode &node)
{
    return node.parentNode().isNull() ? QDomNode() : node.nextSibling();
}

} // namespace dom

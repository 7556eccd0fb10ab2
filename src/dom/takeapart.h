#pragma once

#include <QDomNode>

namespace dom {

/// Takes all that is below `node` out of its parents, so that a tree of any depth can be destroyed: Qt does that by
/// recursion. A node to which a handle is kept elsewhere is alone after it. Doesn't recurse.
void TakeApart(const QDomNode &node);

} // namespace dom

#pragma once

#include <QDomNode>

namespace dom {

/// True if more than `limit` elements lie within each other at some place in `top`, itself counted if it is an element.
/// Doesn't recurse, so that any depth can be asked.
[[nodiscard]] bool IsDeeperThan(const QDomNode &top, int limit);

} // namespace dom

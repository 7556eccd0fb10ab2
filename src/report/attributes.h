#pragma once

#include <QDomAttr>
#include <QDomNode>

#include <vector>

/// The attributes of a node in the order of their names. Qt keeps them in the order of a hash, which differs from
/// process to process; whatever goes through attributes one by one goes through this list, so that a run has the same
/// outcome in every process.
std::vector<QDomAttr> SortedAttributes(const QDomNode &node);

#pragma once

#include <QDomNode>
#include <QString>

#include <utility>
#include <vector>

namespace dom {

/// Names and values of attributes.
using AttributeList = std::vector<std::pair<QString, QString>>;

/// The attributes of a node, in no order; none for anything but an element.
AttributeList ListAttributes(const QDomNode &node);

} // namespace dom

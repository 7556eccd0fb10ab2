#pragma once

#include "dom/attributelist.h"

#include <QDomNode>
#include <QXmlAttributes>

/// In the report room in the order of the names. Qt keeps them in the order of a hash, which differs from
/// process to process. Code that visits attributes one by one takes this list, so that a run has the same outcome in
/// every process.
using dom::AttributeList;

/// The attributes of a node; none for anything but an element.
AttributeList SortedAttributes(const QDomNode &node);

/// The list in the form that an event carries: qualified name and value, no URI, no local name and no marks of the
/// declarations.
QXmlAttributes ToXmlAttributes(const AttributeList &attributes);

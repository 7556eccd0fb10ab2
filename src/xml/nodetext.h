#pragma once

#include <QDomNode>
#include <QString>

/// The text that QDomNode::save makes of a node with indentation 0, but for the line end behind it, which depends on
/// the next sibling. It can be had of a node whose document has gone: Qt leaves that one with pointers to siblings, or
/// to the document, that have gone too, and its save follows the former, its cloneNode the latter. As save it recurses,
/// and is for nodes of limited depth.
QString NodeText(const QDomNode &node);

#pragma once

#include <QDomDocumentFragment>
#include <QDomElement>
#include <QString>

#include <vector>

/// What becomes of a declaration's fragment when something refers to it.
namespace content {

struct Attribute
{
    QString m_sName;
    QString m_sValue;
};

using AttributeList = std::vector<Attribute>;

/// The name of the placeholder that carries what a named type gives to an element that refers to it, and that keeps the
/// place of references in a named type. It never enters a template as an element.
QString PlaceholderName();
bool IsPlaceholder(const QDomNode &node);

/// Whether the fragment's first child is a carrier: an element that refers to the type takes over its attributes.
bool HasCarrier(const QDomDocumentFragment &fragment);

/// Costs the square of the number of attributes, since Qt finds them by index only by counting.
AttributeList ListAttributes(const QDomElement &element);

/// Sets each of the attributes; those that the target has already are replaced.
void SetAttributes(const AttributeList &attributes, QDomElement &target);

/// Sets those of the attributes that the target doesn't have yet.
void AddAttributes(const AttributeList &attributes, QDomElement &target);

/// Gives `target` the schema attribute `name`, the tag name of a carrier with these attributes: the carrier's type as
/// value, its bounds and enumerations beside it under names that end in `name`.
void SetSchemaAttribute(const QString &name, const AttributeList &carrier, QDomElement &target);

/// A deep clone of the fragment without its placeholders.
QDomDocumentFragment CloneContent(const QDomDocumentFragment &fragment);

} // namespace content

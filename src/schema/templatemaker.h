#pragma once

#include <QDomDocument>
#include <QDomDocumentFragment>
#include <QDomElement>
#include <QString>

/// Makes the elements and attributes of a run and counts them, so that a small file can't ask for more than the host
/// can bear: minOccurs multiplies, and types that hold others twice double at each level. Once a limit is broken
/// nothing more is made.
class TemplateMaker
{
public:
    /// An element that no schema asks for: the carrier of a named type, which holds the attributes that an element of
    /// the type takes over, or the place of content that is still to come. A mark tells it from an element to which a
    /// schema itself gives the name "dummy". It never enters a template.
    static QDomElement NewPlaceholder(QDomDocument &document);
    static bool IsPlaceholder(const QDomNode &node) { return !node.namespaceURI().isNull(); }

    /// Whether an element of this type takes over the attributes of the declaration's first child, going by its name.
    static bool HasCarrier(const QDomDocumentFragment &source);
    /// Whether an element of this type gets the declaration's children. A schema's own element "dummy" that comes first
    /// makes the declaration one without content.
    static bool HasContent(const QDomDocumentFragment &source);

    /// Appends the element, if the limits allow it.
    void Append(QDomNode parent, const QDomElement &element);
    /// Sets an attribute, if the limits allow it. A null element takes nothing.
    void SetAttribute(QDomElement target, const QString &name, const QString &value);

    enum class Existing { Replace, Keep };
    /// Sets all attributes of the declaration's first child.
    void CopyAttributes(const QDomDocumentFragment &source, const QDomElement &target, Existing existing);
    /// Sets the schema attribute that is called like the declaration's first child: the child's type as value, its
    /// bounds and enumerations beside it under names that end in the attribute's name.
    void SetSchemaAttribute(const QDomDocumentFragment &source, const QDomElement &target);

    /// A deep clone of the declaration's children without placeholders, as far as the limits allow it below this
    /// parent.
    QDomDocumentFragment CloneContent(const QDomDocumentFragment &source, const QDomNode &parent);

    bool IsExceeded() const { return !m_sReason.isEmpty(); }
    /// The limit that was broken, as a sentence; empty if none was.
    QString GetReason() const { return m_sReason; }

private:
    bool Count(int level, int attributes);
    bool CountAttributes(int attributes);
    void CloneBelow(QDomNode parent, const QDomNode &node, int level);

    int m_iElements = 0;
    int m_iAttributes = 0;
    QString m_sReason;
};

#pragma once

#include "report/attributes.h"

#include <QDomElement>
#include <QXmlAttributes>

#include <memory>
#include <vector>

/// The attributes of an element and of all below it, kept outside the document.
///
/// The copies that a repetition makes stand bare in the document and share one model. A template's attributes serve
/// the check of a value and are removed with it: giving each copy its own, only to take them out again, would cost more
/// than everything else in a large report. Attributes that no value has used up are written when the walk moves on.
class AttributeModel
{
public:
    using Pointer = std::shared_ptr<const AttributeModel>;

    /// The model of a subtree as the document holds it.
    explicit AttributeModel(const QDomNode &node);
    /// The model of a bare copy: its present attributes, and the models of its children.
    AttributeModel(AttributeList attributes, std::vector<Pointer> children);

    const AttributeList &GetAttributes() const { return m_lAttributes; }
    const QXmlAttributes &GetEventAttributes() const { return m_oEventAttributes; }
    /// One for each child node, in order.
    const std::vector<Pointer> &GetChildren() const { return m_lChildren; }

    /// Gives `node` and all below it the attributes of the model. The subtree must be shaped as the model is.
    void WriteTo(const QDomNode &node) const;
    /// The same without `node` itself.
    void WriteToChildren(const QDomNode &node) const;

    /// Takes the attributes of a subtree out of the document.
    static void Strip(const QDomNode &node);

private:
    AttributeList m_lAttributes;
    QXmlAttributes m_oEventAttributes;
    std::vector<Pointer> m_lChildren;
};

#pragma once

#include "report/attributes.h"

#include <QDomElement>
#include <QXmlAttributes>

#include <memory>
#include <vector>

/// The attributes of an element and of all below it, kept outside the document.
///
/// The copies that a repetition makes stand bare in the document and share one model. A template's attributes serve
/// the check of a value and are removed with it, so that giving each copy its own, only to take them out again, costs
/// more than everything else in a large report. The walk brings those that stay into the document.
class AttributeModel
{
public:
    using Pointer = std::shared_ptr<const AttributeModel>;

    /// The model of a subtree as the document holds it.
    explicit AttributeModel(const QDomNode &node);
    /// An element that itself is a bare copy: its present attributes, and the models of its children.
    AttributeModel(AttributeList attributes, std::vector<Pointer> children);

    const AttributeList &GetAttributes() const { return m_lAttributes; }
    const QXmlAttributes &GetEventAttributes() const { return m_oEventAttributes; }
    /// One for each child node, in order.
    const std::vector<Pointer> &GetChildren() const { return m_lChildren; }

    /// Gives `node` and all below it the attributes of the model. The node's subtree is that of the model.
    void WriteTo(const QDomNode &node) const;
    /// The same for all below `node` alone.
    void WriteToChildren(const QDomNode &node) const;

    /// Takes the attributes of a subtree out of the document.
    static void Strip(const QDomNode &node);

private:
    AttributeList m_lAttributes;
    QXmlAttributes m_oEventAttributes;
    std::vector<Pointer> m_lChildren;
};

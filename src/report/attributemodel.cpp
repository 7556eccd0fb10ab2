#include "report/attributemodel.h"

#include <utility>

AttributeModel::AttributeModel(const QDomNode &node)
    : m_lAttributes(SortedAttributes(node))
    , m_oEventAttributes(ToXmlAttributes(m_lAttributes))
{
    for (QDomNode child = node.firstChild(); !child.isNull(); child = child.nextSibling()) {
        m_lChildren.push_back(std::make_shared<AttributeModel>(child));
    }
}

AttributeModel::AttributeModel(AttributeList attributes, std::vector<Pointer> children)
    : m_lAttributes(std::move(attributes))
    , m_oEventAttributes(ToXmlAttributes(m_lAttributes))
    , m_lChildren(std::move(children))
{
}

void AttributeModel::WriteTo(const QDomNode &node) const
{
    QDomElement element = node.toElement();
    for (const auto &[name, value] : m_lAttributes) {
        element.setAttribute(name, value);
    }
    WriteToChildren(node);
}

void AttributeModel::WriteToChildren(const QDomNode &node) const
{
    QDomNode child = node.firstChild();
    for (const Pointer &model : m_lChildren) {
        model->WriteTo(child);
        child = child.nextSibling();
    }
}

void AttributeModel::Strip(const QDomNode &node)
{
    QDomElement element = node.toElement();
    for (const auto &[name, value] : SortedAttributes(node)) {
        element.removeAttribute(name);
    }
    for (QDomNode child = node.firstChild(); !child.isNull(); child = child.nextSibling()) {
        Strip(child);
    }
}

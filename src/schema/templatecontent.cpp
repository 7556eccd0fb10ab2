#include "schema/templatecontent.h"

#include <QDomNamedNodeMap>

#include <algorithm>

namespace {

// Of a schema attribute's facets only these can be checked, so only these travel.
bool IsChecked(const QString &facet)
{
    return facet.contains(QLatin1String("enumeration")) || facet.contains(QLatin1String("clusive"));
}

} // namespace

namespace content {

QString PlaceholderName()
{
    return QStringLiteral("dummy");
}

bool IsPlaceholder(const QDomNode &node)
{
    return node.nodeName() == QLatin1String("dummy");
}

bool HasCarrier(const QDomDocumentFragment &fragment)
{
    return IsPlaceholder(fragment.firstChild());
}

AttributeList ListAttributes(const QDomElement &element)
{
    const QDomNamedNodeMap map = element.attributes();
    const int count = map.count();
    AttributeList result;
    result.reserve(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i) {
        const QDomNode attribute = map.item(i);
        result.push_back({ attribute.nodeName(), attribute.nodeValue() });
    }
    return result;
}

void SetAttributes(const AttributeList &attributes, QDomElement &target)
{
    for (const Attribute &attribute : attributes) {
        target.setAttribute(attribute.m_sName, attribute.m_sValue);
    }
}

void AddAttributes(const AttributeList &attributes, QDomElement &target)
{
    for (const Attribute &attribute : attributes) {
        if (!target.hasAttribute(attribute.m_sName)) {
            target.setAttribute(attribute.m_sName, attribute.m_sValue);
        }
    }
}

void SetSchemaAttribute(const QString &name, const AttributeList &carrier, QDomElement &target)
{
    const auto type = std::find_if(carrier.begin(), carrier.end(), [](const Attribute &attribute) {
        return attribute.m_sName == QLatin1String("type");
    });
    target.setAttribute(name, type == carrier.end() ? QString() : type->m_sValue);
    for (const Attribute &attribute : carrier) {
        if (IsChecked(attribute.m_sName)) {
            target.setAttribute(attribute.m_sName + name, attribute.m_sValue);
        }
    }
}

QDomDocumentFragment CloneContent(const QDomDocumentFragment &fragment)
{
    QDomDocumentFragment clone = fragment.cloneNode(true).toDocumentFragment();
    for (QDomNode node = clone.firstChild(); !node.isNull();) {
        const QDomNode next = node.nextSibling();
        if (IsPlaceholder(node)) {
            clone.removeChild(node);
        }
        node = next;
    }
    return clone;
}

} // namespace content

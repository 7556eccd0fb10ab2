#include "report/attributes.h"

#include "schema/declarations.h"

#include <QDomNamedNodeMap>

#include <algorithm>

AttributeList SortedAttributes(const QDomNode &node)
{
    AttributeList result;
    const QDomNamedNodeMap attributes = node.attributes();
    const int count = attributes.length();
    result.reserve(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i) {
        const QDomNode attribute = attributes.item(i);
        result.emplace_back(attribute.nodeName(), attribute.nodeValue());
    }
    std::sort(result.begin(), result.end());
    return result;
}

QXmlAttributes ToXmlAttributes(const AttributeList &attributes)
{
    QXmlAttributes result;
    for (const auto &[name, value] : attributes) {
        if (!Declarations::IsMark(name)) {
            result.append(name, QString(), QString(), value);
        }
    }
    return result;
}

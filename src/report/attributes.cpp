#include "report/attributes.h"

#include <QDomNamedNodeMap>

#include <algorithm>

std::vector<QDomAttr> SortedAttributes(const QDomNode &node)
{
    std::vector<QDomAttr> result;
    const QDomNamedNodeMap attributes = node.attributes();
    const int count = attributes.length();
    result.reserve(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i) {
        result.push_back(attributes.item(i).toAttr());
    }
    std::sort(result.begin(), result.end(),
              [](const QDomAttr &left, const QDomAttr &right) { return left.nodeName() < right.nodeName(); });
    return result;
}

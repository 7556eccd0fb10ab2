#include "dom/attributelist.h"

#include <QDomNamedNodeMap>

namespace dom {

// Qt finds an attribute by its index only by counting up to it: many are listed by removing the first of a copy, over
// and over.
AttributeList ListAttributes(const QDomNode &node)
{
    constexpr int kMany = 50;
    QDomNamedNodeMap map = node.attributes();
    const int count = map.count();
    const bool areMany = count > kMany;
    const QDomNode copy = areMany ? node.cloneNode(false) : QDomNode();
    if (areMany) {
        map = copy.attributes();
    }
    AttributeList list;
    list.reserve(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i) {
        const QDomNode attribute = map.item(areMany ? 0 : i);
        list.emplace_back(attribute.nodeName(), attribute.nodeValue());
        if (areMany) {
            map.removeNamedItem(list.back().first);
        }
    }
    return list;
}

} // namespace dom

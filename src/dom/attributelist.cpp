#include "dom/attributelist.h"

#include <QDomNamedNodeMap>

namespace dom {

// Qt finds an attribute by its index only by counting up to it: many are listed by removing the first of a copy, over
// and over.
AttributeList ListAttributes(const QDomNode &node)
{
    constexpr int kMany = 50;
    const bool areMany = node.attributes().count() > kMany;
    const QDomNode holder = areMany ? node.cloneNode(false) : node;
    QDomNamedNodeMap map = holder.attributes();
    AttributeList list(static_cast<std::size_t>(map.count()));
    int index = 0;
    for (auto &[name, value] : list) {
        const QDomNode attribute = map.item(index);
        name = attribute.nodeName();
        value = attribute.nodeValue();
        if (areMany) {
            map.removeNamedItem(name);
        } else {
            ++index;
        }
    }
    return list;
}

} // namespace dom

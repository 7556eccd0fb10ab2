#include "report/attributes.h"

#include "schema/declarations.h"

#include <algorithm>

AttributeList SortedAttributes(const QDomNode &node)
{
    AttributeList result = dom::ListAttributes(node);
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

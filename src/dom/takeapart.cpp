#include "dom/takeapart.h"

#include <vector>

void dom::TakeApart(const QDomNode &node)
{
    std::vector<QDomNode> open { node };
    while (!open.empty()) {
        QDomNode parent = open.back();
        open.pop_back();
        for (QDomNode child = parent.firstChild(); !child.isNull(); child = parent.firstChild()) {
            parent.removeChild(child);
            open.push_back(child);
        }
    }
}

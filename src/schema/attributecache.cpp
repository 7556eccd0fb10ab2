#include "schema/attributecache.h"

#include "schema/templatebudget.h"

const content::AttributeList &AttributeCache::Of(const QDomDocumentFragment &fragment)
{
    const auto known = m_hLists.find(&fragment);
    return known != m_hLists.end() ? known->second : m_hLists.emplace(&fragment, List(fragment)).first->second;
}

const content::AttributeList &AttributeCache::OfOpen(const QDomDocumentFragment &fragment)
{
    m_lOpen = List(fragment);
    return m_lOpen;
}

void AttributeCache::Drop(const QDomDocumentFragment *fragment)
{
    if (fragment == nullptr) {
        m_hLists.clear();
    } else {
        m_hLists.erase(fragment);
    }
}

content::AttributeList AttributeCache::List(const QDomDocumentFragment &fragment)
{
    const QDomElement first = fragment.firstChild().toElement();
    return m_oBudget.TakeListing(first.attributes().count()) ? content::ListAttributes(first)
                                                             : content::AttributeList();
}

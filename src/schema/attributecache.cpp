#include "schema/attributecache.h"

const content::AttributeList &AttributeCache::Of(const QDomDocumentFragment &fragment)
{
    const auto [entry, isNew] = m_hLists.try_emplace(&fragment);
    if (isNew) {
        entry->second = content::ListAttributes(fragment.firstChild().toElement());
    }
    return entry->second;
}

const content::AttributeList &AttributeCache::OfOpen(const QDomDocumentFragment &fragment)
{
    m_lLatest = content::ListAttributes(fragment.firstChild().toElement());
    return m_lLatest;
}

void AttributeCache::Clear()
{
    m_hLists.clear();
}

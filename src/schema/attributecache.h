#pragma once

#include "schema/templatecontent.h"

#include <QDomDocumentFragment>

#include <unordered_map>

class TemplateBudget;

/// The attributes of the first child of declarations, listed once for all elements that take them over.
class AttributeCache
{
public:
    /// The steps of listing are counted there. The budget must outlive the cache.
    explicit AttributeCache(TemplateBudget &budget)
        : m_oBudget(budget)
    {
    }

    /// What a declaration gives. Valid until the declaration is dropped.
    const content::AttributeList &Of(const QDomDocumentFragment &fragment);

    /// The same for a declaration that is still being read. Valid until the next call.
    const content::AttributeList &OfOpen(const QDomDocumentFragment &fragment);

    /// To be called when a declaration may have changed; null for any of them.
    void Drop(const QDomDocumentFragment *fragment);

private:
    content::AttributeList List(const QDomDocumentFragment &fragment);

    TemplateBudget &m_oBudget;
    std::unordered_map<const QDomDocumentFragment *, content::AttributeList> m_hLists;
    content::AttributeList m_lOpen;
};

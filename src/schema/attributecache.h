#pragma once

#include "schema/templatecontent.h"

#include <QDomDocumentFragment>

#include <unordered_map>

/// The attributes of the first child of declarations, listed once for all elements that take them over.
class AttributeCache
{
public:
    /// The attributes of a declaration that is read to its end.
    const content::AttributeList &Of(const QDomDocumentFragment &fragment);

    /// The same for one that may still change.
    const content::AttributeList &OfOpen(const QDomDocumentFragment &fragment);

    /// To be called when declarations may have changed that were read to their end.
    void Clear();

private:
    std::unordered_map<const QDomDocumentFragment *, content::AttributeList> m_hLists;
    content::AttributeList m_lLatest;
};

#pragma once

#include "control/itemlist.h"

#include <QXmlAttributes>

/// An attribute or element that takes the present time without any item.
bool IsTimeName(const QString &name);

/// A walk over the control's items for one element, which stops only at items that match the element or, short of that,
/// one of its attributes. Each item between two stops would stamp the first date-time attribute, if there is one, and
/// do nothing else. Items that are added during the walk aren't met.
class ElementItems
{
public:
    /// `list` must outlive the walk and may change during it. `parentName` may be empty while the list has no path
    /// names.
    ElementItems(const ItemList &list, const QString &name, const QString &parentName,
                 const QXmlAttributes &attributes);

    /// Goes to the next item that matches. False behind the last one.
    bool Next();
    /// The item of the present stop.
    const ItemList::Item &GetItem() const { return m_pItem; }
    /// The index of the attribute that the item serves, -1 if it matches the element.
    int GetAttribute() const { return m_iAttribute; }
    /// Whether items that match nothing were passed on the way to the present stop, or to the end.
    bool HasPassedItems() const;
    /// The item that a walk over all items would have looked at last: the present stop's, or the list's last.
    ItemList::Item GetLastItem() const;

    /// The attribute at which an item that matches nothing stops looking: the first date-time attribute, else the last
    /// one; -1 without attributes.
    int GetLastLookedAt() const { return m_iLastLookedAt; }
    /// Whether an item that matches nothing stamps that attribute.
    bool HasStamp() const { return m_bStamp; }
    /// Whether an item of that name matches the element as "parent/child".
    bool IsPathName(const QString &itemName) const;

private:
    void Offer(const QString &name, int attribute);

    const ItemList &m_lItems;
    const QString m_sName;
    const QXmlAttributes m_oAttributes;
    const ItemList::Serial m_iLast; // when the walk began
    QString m_sPathName; // empty if no item can have such a name
    int m_iLastLookedAt = -1;
    bool m_bStamp = false;

    // The present stop; behind the last one there is no item, and the serial is behind m_iLast.
    ItemList::Serial m_iBefore = ItemList::kNone;
    ItemList::Serial m_iSerial = ItemList::kNone;
    ItemList::Item m_pItem;
    int m_iAttribute = -1;
};

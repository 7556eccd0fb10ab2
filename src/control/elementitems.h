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
    /// Whether that item matches the element. Otherwise it bears the name of an attribute.
    bool MatchesElement() const;
    /// Whether items that match nothing were passed on the way to the present stop, or to the end.
    bool HasPassedItems() const;
    /// The attribute that items which match nothing stamp, empty if there is none.
    const QString &GetStamped() const { return m_sStamped; }
    /// The name of the items that have been used up: "parent/child" if the item that a walk over all items would have
    /// looked at last is called so, which is the present stop's or the list's last; else the element's.
    QString GetUsedName() const;

private:
    void Offer(const QString &name);
    bool IsPathName(const QString &itemName) const;

    const ItemList &m_lItems;
    const QString m_sName;
    const QXmlAttributes m_oAttributes;
    const ItemList::Serial m_iLast; // when the walk began
    const QString m_sPathName; // empty if no item can have such a name
    QString m_sStamped;
    int m_iReachable = 0; // how many attributes an item may serve

    // The present stop; behind the last one there is no item, and the serial is behind m_iLast.
    ItemList::Serial m_iBefore = ItemList::kNone;
    ItemList::Serial m_iSerial = ItemList::kNone;
    ItemList::Item m_pItem;
};

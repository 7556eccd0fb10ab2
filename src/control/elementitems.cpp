#include "control/elementitems.h"

namespace {

constexpr int kElement = -1;

/// The item's name is split at its first "/", so a parent's name that holds one, or none at all, is out of reach.
QString MakePathName(const QString &parentName, const QString &name)
{
    const QLatin1Char slash('/');
    return parentName.isEmpty() || parentName.contains(slash) ? QString() : parentName + slash + name;
}

} // namespace

bool IsTimeName(const QString &name)
{
    return name == QLatin1String("DateTime") || name == QLatin1String("DFDateTime");
}

ElementItems::ElementItems(const ItemList &list, const QString &name, const QString &parentName,
                           const QXmlAttributes &attributes)
    : m_lItems(list)
    , m_sName(name)
    , m_oAttributes(attributes)
    , m_iLast(list.GetLast())
    , m_sPathName(MakePathName(parentName, name))
{
    // No item gets past the first date-time attribute: it serves an attribute up to there, or stamps that one.
    for (int i = 0; i < attributes.count() && !m_bStamp; ++i) {
        m_iLastLookedAt = i;
        m_bStamp = IsTimeName(attributes.qName(i));
    }
}

bool ElementItems::Next()
{
    m_iBefore = m_iSerial;
    m_iSerial = m_iLast + 1;
    // An item that bears the name of the element and of an attribute as well is the element's.
    Offer(m_sName, kElement);
    if (!m_sPathName.isEmpty()) {
        Offer(m_sPathName, kElement);
    }
    for (int i = 0; i <= m_iLastLookedAt; ++i) {
        Offer(m_oAttributes.qName(i), i);
    }
    m_pItem = m_iSerial > m_iLast ? ItemList::Item() : m_lItems.Get(m_iSerial);
    return m_pItem != nullptr;
}

bool ElementItems::HasPassedItems() const
{
    return m_lItems.HasBetween(m_iBefore, m_iSerial);
}

ItemList::Item ElementItems::GetLastItem() const
{
    return m_pItem != nullptr ? m_pItem : m_lItems.GetLastUpTo(m_iLast);
}

bool ElementItems::IsPathName(const QString &itemName) const
{
    return !m_sPathName.isEmpty() && itemName == m_sPathName;
}

/// The earliest item of all names is the next stop; of names that share it, the first that was offered counts.
void ElementItems::Offer(const QString &name, int attribute)
{
    const ItemList::Serial serial = m_lItems.FindBehind(m_iBefore, name);
    if (serial != ItemList::kNone && serial < m_iSerial) {
        m_iSerial = serial;
        m_iAttribute = attribute;
    }
}

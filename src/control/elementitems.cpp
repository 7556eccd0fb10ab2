#include "control/elementitems.h"

#include "control/reportdata.h"

#include <QStringBuilder>

#include <algorithm>

namespace {

/// The item's name is split at its first "/", so a parent's name that holds one, or none at all, is out of reach.
QString MakePathName(const QString &parentName, const QString &name)
{
    const QLatin1Char slash('/');
    return parentName.isEmpty() || parentName.contains(slash) ? QString() : QString(parentName % slash % name);
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
    for (; m_iReachable < attributes.count() && m_sStamped.isEmpty(); ++m_iReachable) {
        if (IsTimeName(attributes.qName(m_iReachable))) {
            m_sStamped = attributes.qName(m_iReachable);
        }
    }
}

bool ElementItems::Next()
{
    m_iBefore = m_iSerial;
    m_iSerial = m_iLast + 1;
    Offer(m_sName);
    if (!m_sPathName.isEmpty()) {
        Offer(m_sPathName);
    }
    for (int i = 0; i < m_iReachable; ++i) {
        Offer(m_oAttributes.qName(i));
    }
    m_pItem = m_iSerial > m_iLast ? ItemList::Item() : m_lItems.Get(m_iSerial);
    return m_pItem != nullptr;
}

bool ElementItems::MatchesElement() const
{
    return m_pItem->GetName() == m_sName || IsPathName(m_pItem->GetName());
}

bool ElementItems::HasPassedItems() const
{
    return m_lItems.HasBetween(m_iBefore, m_iSerial);
}

QString ElementItems::GetUsedName() const
{
    const ItemList::Item last = m_pItem != nullptr ? m_pItem : m_lItems.GetLastUpTo(m_iLast);
    return last != nullptr && IsPathName(last->GetName()) ? m_sPathName : m_sName;
}

/// The earliest item of all names is the next stop.
void ElementItems::Offer(const QString &name)
{
    const ItemList::Serial serial = m_lItems.FindBehind(m_iBefore, name);
    if (serial != ItemList::kNone) {
        m_iSerial = std::min(m_iSerial, serial);
    }
}

bool ElementItems::IsPathName(const QString &itemName) const
{
    return !m_sPathName.isEmpty() && itemName == m_sPathName;
}

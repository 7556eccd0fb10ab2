#include "control/itemlist.h"

#include "control/reportdata.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace {

int CountPathNames(const QString &name, std::size_t items)
{
    return name.contains(QLatin1Char('/')) ? static_cast<int>(items) : 0;
}

} // namespace

void ItemList::Append(Item item)
{
    const QString name = item->GetName();
    ++m_iLastSerial;
    m_hSerials[name].push_back(m_iLastSerial);
    m_lItems.emplace_hint(m_lItems.cend(), m_iLastSerial, std::move(item));
    m_iPathNames += CountPathNames(name, 1);
}

void ItemList::Remove(const QString &name)
{
    const std::vector<Serial> serials = m_hSerials.take(name);
    for (const Serial serial : serials) {
        m_lItems.erase(serial);
    }
    m_iPathNames -= CountPathNames(name, serials.size());
}

void ItemList::Clear()
{
    m_lItems.clear();
    m_hSerials.clear();
    m_iPathNames = 0;
}

ItemList::Item ItemList::Get(Serial serial) const
{
    const auto found = m_lItems.find(serial);
    return found == m_lItems.cend() ? Item() : found->second;
}

ItemList::Serial ItemList::GetFirst() const
{
    return m_lItems.empty() ? kNone : m_lItems.cbegin()->first;
}

ItemList::Serial ItemList::FindBehind(Serial serial, const QString &name) const
{
    const auto serials = m_hSerials.constFind(name);
    if (serials == m_hSerials.cend()) {
        return kNone;
    }
    const auto next = std::upper_bound(serials->cbegin(), serials->cend(), serial);
    return next == serials->cend() ? kNone : *next;
}

bool ItemList::HasBetween(Serial before, Serial behind) const
{
    const auto next = m_lItems.upper_bound(before);
    return next != m_lItems.cend() && next->first < behind;
}

ItemList::Item ItemList::GetLastUpTo(Serial serial) const
{
    const auto next = m_lItems.upper_bound(serial);
    return next == m_lItems.cbegin() ? Item() : std::prev(next)->second;
}

#include "control/itemlist.h"

#include "control/sourceitem.h"

#include <algorithm>
#include <iterator>
#include <set>
#include <utility>

namespace {

int CountPathNames(const QString &name, std::size_t items)
{
    return name.contains(QLatin1Char('/')) ? static_cast<int>(items) : 0;
}

bool IsSource(const ItemList::Item &item)
{
    return dynamic_cast<const SourceItem *>(item.get()) != nullptr;
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
    RemoveIf(name, [](const Item &) { return true; });
}

void ItemList::RemoveUsed(const QString &name)
{
    RemoveIf(name, [](const Item &item) { return !IsSource(item); });
}

void ItemList::RemoveSources()
{
    std::set<QString> names;
    for (const auto &[serial, item] : m_lItems) {
        if (IsSource(item)) {
            names.insert(item->GetName());
        }
    }
    for (const QString &name : names) {
        RemoveIf(name, IsSource);
    }
}

template <typename IsGoing>
void ItemList::RemoveIf(const QString &name, IsGoing isGoing)
{
    const std::vector<Serial> serials = m_hSerials.take(name);
    std::vector<Serial> staying;
    std::vector<Item> gone; // freed when the list is in order: a source's function may hold anything
    for (const Serial serial : serials) {
        if (const auto item = m_lItems.find(serial); isGoing(item->second)) {
            gone.push_back(std::move(item->second));
            m_lItems.erase(item);
        } else {
            staying.push_back(serial);
        }
    }
    m_iPathNames -= CountPathNames(name, serials.size() - staying.size());
    if (!staying.empty()) {
        m_hSerials.insert(name, staying);
    }
}

void ItemList::Clear()
{
    std::map<Serial, Item> gone = std::exchange(m_lItems, {});
    m_hSerials.clear();
    m_iPathNames = 0;
    // In their order, which a map's end doesn't keep.
    for (auto &[serial, item] : gone) {
        item.reset();
    }
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

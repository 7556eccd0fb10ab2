#include "control/itemlist.h"

#include "control/sourceitem.h"

#include <algorithm>
#include <iterator>
#include <set>
#include <utility>

namespace {

bool IsSource(const ItemList::Item &item)
{
    return dynamic_cast<const SourceItem *>(item.get()) != nullptr;
}

} // namespace

void ItemList::Append(Item item)
{
    ++m_iLastSerial;
    m_hSerials[item->GetName()].push_back(m_iLastSerial);
    m_bPathNames = m_bPathNames || item->GetName().contains(QLatin1Char('/'));
    m_lItems.emplace_hint(m_lItems.cend(), m_iLastSerial, std::move(item));
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
    std::vector<Item> gone; // freed when the list is in order: a source's function may hold anything
    for (const Serial serial : m_hSerials.take(name)) {
        if (const auto item = m_lItems.find(serial); isGoing(item->second)) {
            gone.push_back(std::move(item->second));
            m_lItems.erase(item);
        } else {
            m_hSerials[name].push_back(serial);
        }
    }
}

void ItemList::Clear()
{
    std::map<Serial, Item> gone = std::exchange(m_lItems, {});
    m_hSerials.clear();
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

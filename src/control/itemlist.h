#pragma once

#include <QHash>
#include <QString>

#include <map>
#include <memory>
#include <vector>

class ReportData;

/// The control's items, in the order in which they were added, and by name at the cost of the items found.
///
/// Each item has a serial number, which never changes and by which the list is ordered: a walk over the list goes on
/// behind the last serial that it saw, whatever has been added or removed meanwhile. Whoever reads an item shares it,
/// since the value that is read is a host's and may take the item out of the list.
class ItemList
{
public:
    using Serial = quint64;
    using Item = std::shared_ptr<ReportData>;

    static constexpr Serial kNone = 0;

    void Append(Item item);
    /// Removes all items of that name.
    void Remove(const QString &name);
    /// The same, but for sources and containers.
    void RemoveUsed(const QString &name);
    /// Removes all sources and containers.
    void RemoveSources();
    void Clear();

    /// Null if there is no such item any more.
    Item Get(Serial serial) const;
    Serial GetFirst() const;
    Serial GetLast() const { return m_iLastSerial; }
    /// Whether there has been an item whose name may be one of a parent and its child: without one nobody needs the
    /// parent's name, which costs more to make up than the element's items to find.
    bool HasPathNames() const { return m_bPathNames; }
    /// The next item of that name behind `serial`, kNone if there is none.
    Serial FindBehind(Serial serial, const QString &name) const;
    /// Whether an item stands between the two, which need not be there themselves.
    bool HasBetween(Serial before, Serial behind) const;
    /// The last item at or ahead of `serial`, null if there is none.
    Item GetLastUpTo(Serial serial) const;

private:
    template <typename IsGoing>
    void RemoveIf(const QString &name, IsGoing isGoing);

    std::map<Serial, Item> m_lItems;
    QHash<QString, std::vector<Serial>> m_hSerials; // ascending
    Serial m_iLastSerial = kNone; // the last that was given out
    bool m_bPathNames = false;
};

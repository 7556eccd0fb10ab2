#pragma once

#include <QHash>
#include <QString>

#include <vector>

/// Finds the items of a list by name, in list order, at the cost of the items found. It follows the list: whoever
/// appends to the list or takes from it does the same here.
///
/// Positions shift when items leave the list, so the index keeps a serial number for each item instead, which never
/// changes; a serial's position is found by halving, since the list's order is that of the serials.
class ItemIndex
{
public:
    /// An item of that name has been put at the list's end.
    void Append(const QString &name);
    /// All items of that name leave the list. The result is where they stood, in ascending order.
    std::vector<int> Remove(const QString &name);
    /// All items leave the list.
    void Clear();

    int GetCount() const;
    /// Whether any item's name may be one of a parent and its child.
    bool HasPathNames() const { return m_iPathNames > 0; }
    /// Calls `visit` with the position of each item of that name, in list order.
    template <typename Visit>
    void ForEach(const QString &name, Visit visit) const
    {
        const auto serials = m_hSerials.constFind(name);
        if (serials != m_hSerials.cend()) {
            for (const quint64 serial : *serials) {
                visit(GetPosition(serial));
            }
        }
    }
    /// The position of the first item of that name, -1 if there is none.
    int FindFirst(const QString &name) const;

private:
    int GetPosition(quint64 serial) const;

    QHash<QString, std::vector<quint64>> m_hSerials;
    std::vector<quint64> m_lSerials; // by position
    quint64 m_iNextSerial = 0;
    int m_iPathNames = 0;
};

/// Takes what stands at the given ascending positions out of a list and closes the gaps.
template <typename Item>
void EraseAt(std::vector<Item> &list, const std::vector<int> &positions)
{
    if (positions.empty()) {
        return;
    }
    auto next = positions.cbegin();
    int kept = *next;
    for (int i = kept; i < static_cast<int>(list.size()); ++i) {
        if (next != positions.cend() && i == *next) {
            ++next;
        } else {
            list[kept++] = std::move(list[i]);
        }
    }
    list.resize(kept);
}

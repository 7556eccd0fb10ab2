#include "control/itemindex.h"

#include <algorithm>

namespace {

bool IsPathName(const QString &name)
{
    return name.contains(QLatin1Char('/'));
}

} // namespace

void ItemIndex::Append(const QString &name)
{
    m_hSerials[name].push_back(m_iNextSerial);
    m_lSerials.push_back(m_iNextSerial);
    ++m_iNextSerial;
    m_iPathNames += IsPathName(name) ? 1 : 0;
}

std::vector<int> ItemIndex::Remove(const QString &name)
{
    std::vector<int> positions;
    ForEach(name, [&positions](int position) { positions.push_back(position); });
    m_iPathNames -= IsPathName(name) ? static_cast<int>(positions.size()) : 0;
    m_hSerials.remove(name);
    EraseAt(m_lSerials, positions);
    return positions;
}

void ItemIndex::Clear()
{
    m_hSerials.clear();
    m_lSerials.clear();
    m_iPathNames = 0;
}

int ItemIndex::GetCount() const
{
    return static_cast<int>(m_lSerials.size());
}

int ItemIndex::FindFirst(const QString &name) const
{
    const auto serials = m_hSerials.constFind(name);
    return serials == m_hSerials.cend() ? -1 : GetPosition(serials->front());
}

int ItemIndex::GetPosition(quint64 serial) const
{
    return static_cast<int>(std::lower_bound(m_lSerials.cbegin(), m_lSerials.cend(), serial) - m_lSerials.cbegin());
}

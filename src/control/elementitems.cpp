#include "control/elementitems.h"

#include "control/itemindex.h"

#include <QXmlAttributes>

#include <algorithm>

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

ElementItems::ElementItems(const ItemIndex &index, const QString &name, const QString &parentName,
                           const QXmlAttributes &attributes)
    : m_sPathName(index.HasPathNames() ? MakePathName(parentName, name) : QString())
{
    Add(index, name, kElement);
    if (!m_sPathName.isEmpty()) {
        Add(index, m_sPathName, kElement);
    }
    // No item gets past the first date-time attribute: it serves an attribute up to there, or stamps that one.
    for (int i = 0; i < attributes.count() && !m_bStamp; ++i) {
        const QString attribute = attributes.qName(i);
        Add(index, attribute, i);
        m_iLastLookedAt = i;
        m_bStamp = IsTimeName(attribute);
    }
    Sort();
}

const QVarLengthArray<ElementItems::Candidate, 8> &ElementItems::GetCandidates() const
{
    return m_lCandidates;
}

int ElementItems::GetLastLookedAt() const
{
    return m_iLastLookedAt;
}

bool ElementItems::HasStamp() const
{
    return m_bStamp;
}

bool ElementItems::IsPathName(const QString &itemName) const
{
    return !m_sPathName.isEmpty() && itemName == m_sPathName;
}

void ElementItems::Add(const ItemIndex &index, const QString &name, int attribute)
{
    index.ForEach(name, [&](int position) { m_lCandidates.append({ position, attribute }); });
}

// An item that bears the name of the element and of an attribute as well is the element's.
void ElementItems::Sort()
{
    if (m_lCandidates.size() < 2) {
        return;
    }
    std::sort(m_lCandidates.begin(), m_lCandidates.end(), [](const Candidate &left, const Candidate &right) {
        return left.m_iPosition != right.m_iPosition ? left.m_iPosition < right.m_iPosition
                                                     : left.m_iAttribute < right.m_iAttribute;
    });
    const auto end =
        std::unique(m_lCandidates.begin(), m_lCandidates.end(), [](const Candidate &left, const Candidate &right) {
            return left.m_iPosition == right.m_iPosition;
        });
    m_lCandidates.resize(static_cast<int>(end - m_lCandidates.begin()));
}

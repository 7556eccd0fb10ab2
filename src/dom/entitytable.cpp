#include "dom/entitytable.h"

#include <QXmlInputSource>

#include <algorithm>
#include <map>

namespace dom {

namespace {

/// Stands for any length beyond all limits; the square root of what fits, so that two can be multiplied.
constexpr qint64 kHuge = qint64(1) << 31;

/// For each entity Qt compares its name with all texts and its text with all names so far: a character compared takes
/// about half a nanosecond, a name as long as 70 of them. The limit comes to about a second.
constexpr qint64 kWorkForName = 70;
constexpr qint64 kMaxWork = 2'000'000'000;

qint64 Capped(qint64 length)
{
    return std::min(length, kHuge);
}

/// The last two characters of all are the end of the file to Qt, wherever they stand.
bool IsMarkup(QChar character)
{
    return character == QLatin1Char('<') || character.unicode() >= QXmlInputSource::EndOfData;
}

/// In UTF-8, without making the copy.
qint64 Length(const QString &text)
{
    qint64 length = 0;
    for (const QChar character : text) {
        const ushort code = character.unicode();
        length += code < 0x80 ? 1 : code < 0x800 || character.isSurrogate() ? 2 : 3;
    }
    return length;
}

qint64 ReferenceLength(const QString &name)
{
    return Length(name) + 2;
}

} // namespace

bool EntityTable::Add(const QString &name, const QString &value)
{
    if (m_hIndex.contains(name)) {
        return true;
    }
    const auto count = static_cast<qint64>(m_lEntities.size());
    m_iWork += m_iCharacters + count * (kWorkForName + value.size());
    m_iCharacters += value.size();
    m_hIndex.insert(name, static_cast<int>(count));
    m_lEntities.emplace_back();
    m_lEntities.back().m_sName = name;
    m_lEntities.back().m_sValue = value;
    m_iLongestName = std::max(m_iLongestName, name.size());
    m_bHasMarkup = m_bHasMarkup || std::any_of(value.cbegin(), value.cend(), IsMarkup);
    return m_iWork <= kMaxWork;
}

void EntityTable::AddReference(const QString &name)
{
    if (m_hIndex.contains(name)) {
        ++m_hReferences[name];
    }
}

void EntityTable::Resolve()
{
    for (Entity &entity : m_lEntities) {
        entity.m_lUsers.clear();
        entity.m_iCost = Length(entity.m_sValue);
    }
    for (int index = 0; index < static_cast<int>(m_lEntities.size()); ++index) {
        FindReferences(index);
    }
    ResolveChains();
    ResolveCircles();
    if (IsAnyCompletedInAnother()) {
        ExpectTheWorst();
    }
    SumUp();
}

qint64 EntityTable::Growth(const QString &name) const
{
    const auto index = m_hIndex.constFind(name);
    return index == m_hIndex.constEnd()
        ? 0
        : std::max(qint64(0), m_lEntities[index.value()].m_iCost - ReferenceLength(name));
}

bool EntityTable::IsOpenEnded(const QString &name) const
{
    const auto index = m_hIndex.constFind(name);
    return index != m_hIndex.constEnd() && m_lEntities[index.value()].m_bIsOpenEnded;
}

void EntityTable::FindReferences(int index)
{
    std::map<int, qint64> references;
    ReferenceReader reader;
    for (const QChar &character : std::as_const(m_lEntities[index].m_sValue)) {
        if (!reader.Feed(character.unicode(), m_iLongestName)) {
            continue;
        }
        const auto referred = m_hIndex.constFind(reader.GetName());
        if (referred != m_hIndex.constEnd()) {
            ++references[referred.value()];
        }
    }
    m_lEntities[index].m_bIsOpenEnded = reader.IsOpen();
    m_lEntities[index].m_iUnresolved = static_cast<int>(references.size());
    for (const auto &[referred, count] : references) {
        m_lEntities[referred].m_lUsers.emplace_back(index, count);
    }
}

/// From the entities without references up, each after all that it refers to.
void EntityTable::ResolveChains()
{
    std::vector<int> resolved;
    for (int index = 0; index < static_cast<int>(m_lEntities.size()); ++index) {
        if (m_lEntities[index].m_iUnresolved == 0) {
            resolved.push_back(index);
        }
    }
    for (std::size_t next = 0; next < resolved.size(); ++next) {
        PassOn(m_lEntities[resolved[next]], resolved);
    }
}

/// Adds what `entity` comes to to each that refers to it; those that wait for no other are resolved with it.
void EntityTable::PassOn(const Entity &entity, std::vector<int> &resolved)
{
    const qint64 growth = std::max(qint64(0), entity.m_iCost - ReferenceLength(entity.m_sName));
    for (const auto &[index, count] : entity.m_lUsers) {
        Entity &user = m_lEntities[index];
        user.m_iCost = Capped(user.m_iCost + Capped(count) * growth);
        if (--user.m_iUnresolved == 0) {
            resolved.push_back(index);
        }
    }
}

/// What refers to itself never ends: Qt enters at most one entity more than there are, and gives up. On the way it
/// reads each of them up to the reference that leads further.
void EntityTable::ResolveCircles()
{
    qint64 cost = 0;
    for (const Entity &entity : m_lEntities) {
        cost = Capped(cost + (entity.m_iUnresolved > 0 ? entity.m_iCost : 0));
    }
    cost = Capped(cost * static_cast<qint64>(m_lEntities.size() + 2));
    for (Entity &entity : m_lEntities) {
        entity.m_iCost = entity.m_iUnresolved > 0 ? cost : entity.m_iCost;
    }
}

bool EntityTable::IsAnyCompletedInAnother() const
{
    return std::any_of(m_lEntities.cbegin(), m_lEntities.cend(),
                       [](const Entity &entity) { return entity.m_bIsOpenEnded && !entity.m_lUsers.empty(); });
}

/// Where one entity's text completes what another's begins, each ";" may end a reference to any entity.
void EntityTable::ExpectTheWorst()
{
    qint64 branches = 1;
    qint64 cost = m_iCharacters * 3;
    for (const Entity &entity : m_lEntities) {
        branches = std::max(branches, qint64(entity.m_sValue.count(QLatin1Char(';'))));
    }
    for (std::size_t level = 0; level < m_lEntities.size() + 2; ++level) {
        cost = Capped(Capped(cost) * branches);
    }
    cost = Capped(cost * static_cast<qint64>(m_lEntities.size() + 2));
    for (Entity &entity : m_lEntities) {
        entity.m_iCost = cost;
    }
}

void EntityTable::SumUp()
{
    m_iHighestGrowth = 0;
    for (const Entity &entity : m_lEntities) {
        m_iHighestGrowth = std::max(m_iHighestGrowth, Capped(entity.m_iCost));
    }
    m_iDeclarationGrowth = 0;
    bool isAnyOpenEnded = false;
    for (auto reference = m_hReferences.cbegin(); reference != m_hReferences.cend(); ++reference) {
        isAnyOpenEnded = isAnyOpenEnded || IsOpenEnded(reference.key());
        m_iDeclarationGrowth = Capped(m_iDeclarationGrowth + Capped(reference.value()) * Growth(reference.key()));
    }
    if (isAnyOpenEnded) {
        m_iDeclarationGrowth = Capped(m_iDeclarationGrowth + Capped(m_iEnds) * m_iHighestGrowth);
    }
}

} // namespace dom

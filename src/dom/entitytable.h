#pragma once

#include <QHash>
#include <QString>

#include <utility>
#include <vector>

namespace dom {

/// Finds references "&name;" in characters that come one by one, across any borders.
class ReferenceReader
{
public:
    /// True if the character ends a reference, whose name GetName then gives. Longer names than `longest` are none.
    bool Feed(ushort character, int longest)
    {
        if (character == '&') {
            m_bIsOpen = true;
            m_sName.resize(0);
        } else if (m_bIsOpen && character == ';') {
            m_bIsOpen = false;
            return true;
        } else if (m_bIsOpen) {
            m_sName.append(QChar(character));
            m_bIsOpen = m_sName.size() <= longest;
        }
        return false;
    }
    /// True after characters that further ones could make a reference.
    bool IsOpen() const { return m_bIsOpen; }
    const QString &GetName() const { return m_sName; }

private:
    QString m_sName;
    bool m_bIsOpen = false;
};

/// The internal general entities of a file, and how much text each reference to one comes to. Lengths are in bytes.
class EntityTable
{
public:
    /// The first declaration of a name counts. False if Qt would take too long over so many entities.
    bool Add(const QString &name, const QString &value);
    /// A reference in the file's declarations, whose text Qt makes while it reads them; nothing where the name isn't
    /// declared yet.
    void AddReference(const QString &name);
    /// A ";" in the file's declarations.
    void AddReferenceEnd() { ++m_iEnds; }

    /// Works out what the entities come to. To be called after each run of Add and before what follows.
    void Resolve();

    bool IsEmpty() const { return m_lEntities.empty(); }
    int GetLongestName() const { return m_iLongestName; }
    /// What a reference to the entity comes to beyond its own length; nothing for a name that isn't declared.
    qint64 Growth(const QString &name) const;
    /// The greatest of all.
    qint64 GetHighestGrowth() const { return m_iHighestGrowth; }
    /// What the references that were added come to.
    qint64 GetDeclarationGrowth() const { return m_iDeclarationGrowth; }
    /// True if an entity's text can begin or end a tag, or hide one.
    bool HasMarkup() const { return m_bHasMarkup; }
    /// True if the entity's text ends within a reference, which what follows it would complete.
    bool IsOpenEnded(const QString &name) const;

private:
    struct Entity
    {
        QString m_sName;
        QString m_sValue;
        /// Bytes that it comes to, as far as its references are resolved.
        qint64 m_iCost = 0;
        int m_iUnresolved = 0;
        bool m_bIsOpenEnded = false;
        /// The entities that refer to it, and how often.
        std::vector<std::pair<int, qint64>> m_lUsers;
    };

    void FindReferences(int index);
    void ResolveChains();
    void PassOn(const Entity &entity, std::vector<int> &resolved);
    void ResolveCircles();
    bool IsAnyCompletedInAnother() const;
    void ExpectTheWorst();
    void SumUp();

    std::vector<Entity> m_lEntities;
    QHash<QString, int> m_hIndex;
    QHash<QString, qint64> m_hReferences;
    qint64 m_iCharacters = 0;
    qint64 m_iWork = 0;
    qint64 m_iEnds = 0;
    qint64 m_iHighestGrowth = 0;
    qint64 m_iDeclarationGrowth = 0;
    int m_iLongestName = 0;
    bool m_bHasMarkup = false;
};

} // namespace dom

#pragma once

#include <QHash>
#include <QString>

namespace dom {

/// What a reference to an entity of a document type can put in at most. Each entity may refer to earlier ones alone, so
/// that this is known as soon as it is declared.
class EntityCosts
{
public:
    EntityCosts();

    /// An entity, its name with "%" in front if it is a parameter entity. Empty, or why Qt must not go on.
    QString Declare(const QString &name, const QString &text);
    /// An entity whose text isn't read.
    void DeclareExternal(const QString &name) { m_hCosts.insert(Key(name), Cost()); }

    /// Characters, of the longest entity.
    qint64 GetLength() const { return m_oHighest.m_iLength; }
    /// Opening parentheses, of the entity with most of them.
    qint64 GetParentheses() const { return m_oHighest.m_iParentheses; }

private:
    struct Cost
    {
        qint64 m_iLength = 0;
        qint64 m_iParentheses = 0;
    };

    static QString Key(const QString &name);
    bool AddReferences(const QString &text, bool isParameter, Cost &cost) const;

    /// By the reference without its semicolon, as "&e" or "%p".
    QHash<QString, Cost> m_hCosts;
    Cost m_oHighest;
    qint64 m_iSearched = 0;
};

} // namespace dom

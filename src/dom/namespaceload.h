#pragma once

#include <QHash>
#include <QString>
#include <QStringList>

#include <vector>

namespace dom {

/// How long Qt's SAX reader takes over namespaces: at the end of each element it compares each prefix in scope with all
/// of them. Three thousand prefixes on the root and as many children, 50 KB, would keep it busy for minutes.
class NamespaceLoad
{
public:
    /// A declaration of the element that begins next, by the attribute's name.
    void Declare(const QString &attribute) { m_lDeclared.append(attribute); }
    void BeginElement();
    void EndElement();
    bool IsTooMuch() const { return m_iWork > kMaxWork; }

private:
    /// Up to here the comparing takes no longer than the rest of an element's parsing.
    static constexpr qint64 kFreePrefixes = 16;
    /// Comparisons beyond that; about eight seconds.
    static constexpr qint64 kMaxWork = 2'000'000'000;

    QStringList m_lDeclared;
    /// The declarations of the elements that are open.
    std::vector<QStringList> m_lScopes;
    QHash<QString, int> m_hPrefixes;
    qint64 m_iWork = 0;
};

/// Finds the attributes that declare a namespace among the characters of a tag, those of the values left out.
class DeclarationFinder
{
public:
    /// True if the character ends such a name, which GetName then gives.
    bool Feed(ushort character)
    {
        const bool isBlank = character <= ' ';
        if (m_iMatched == kLength && (isBlank || character == '=')) {
            m_iMatched = isBlank ? 0 : -1;
            return true;
        }
        if (isBlank) {
            BeginName();
        } else if (m_iMatched == kLength) {
            m_sName.append(QChar(character));
        } else if (m_iMatched >= 0) {
            m_iMatched = character == "xmlns"[m_iMatched] ? m_iMatched + 1 : -1;
        }
        return false;
    }
    /// Between two attributes.
    void BeginName()
    {
        m_iMatched = 0;
        m_sName.resize(0);
    }
    /// What stands behind "xmlns".
    const QString &GetName() const { return m_sName; }

private:
    static constexpr int kLength = 5;

    int m_iMatched = -1;
    QString m_sName;
};

} // namespace dom

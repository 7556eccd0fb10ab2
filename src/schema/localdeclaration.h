#pragma once

#include <QString>
#include <QXmlAttributes>

/// The start tag of a local element or attribute, and the key under which an element's limits are filed.
struct LocalDeclaration
{
    /// The value of a limit that wasn't given. A literal "-100" reads the same.
    static constexpr int kNotGiven = -100;
    static constexpr int kUnbounded = -1;

    explicit LocalDeclaration(const QXmlAttributes &atts);

    /// The name, or the reference of an element without one; empty if it has neither.
    const QString &Key() const { return m_sName.isEmpty() ? m_sRef : m_sName; }
    /// How many copies the tag asks for: none for a negative minOccurs, one for a minOccurs of 0.
    int Copies() const;
    /// False for an element whose limits needn't be filed: not optional, and without maxOccurs.
    bool HasLimits() const { return m_iMinOccurs == 0 || m_iMaxOccurs != kNotGiven; }
    /// How often the element may stand: kUnbounded for any number.
    int MostOccurs() const { return m_iMaxOccurs == kNotGiven ? 1 : m_iMaxOccurs; }
    /// Both limits packed into one number; only where HasLimits().
    int OccursKey() const;

    QString m_sName;
    QString m_sType;
    QString m_sRef;
    QString m_sDefault;
    /// 1 if not given.
    int m_iMinOccurs = kNotGiven;
    int m_iMaxOccurs = kNotGiven;
};

#pragma once

#include "schema/declarations.h"

#include <QRegularExpression>
#include <QString>

#include <optional>
#include <vector>

/// Holds the values of one type against what XML Schema says of it: the lexical form and the range of the type, and the
/// facets of the declaration. A facet that can't be read, and a type that isn't known, lets everything pass.
class ValueJudge
{
public:
    explicit ValueJudge(const Declarations::Rule &rule);

    /// Brings `text` into the form of the type. `pNumber` is the number that it writes, null for other values;
    /// `isDouble` says that it came as a double. Empty if it may stand there, else what completes "the value was not
    /// written: ".
    QString Refuse(QString &text, const double *pNumber, bool isDouble) const;
    /// Whether both texts mean one value.
    bool IsSame(const QString &first, const QString &second) const { return IsSame(Parse(first), Parse(second)); }

private:
    enum class Kind { Unknown, String, Integer, Double, Boolean, DateTime, Time };
    // A number, or milliseconds. Without a zone the milliseconds are those of UTC.
    struct Value
    {
        long double m_dNumber = 0;
        bool m_bHasZone = false;
    };
    // Nothing for a text that names no number or moment, and so can't be compared but as a text.
    struct Parsed
    {
        QString m_sText;
        std::optional<Value> m_oValue;
    };
    struct Bound
    {
        QString m_sName;
        QString m_sText;
        Value m_oValue;
    };

    static Kind KindOf(const QString &type);
    void ReadFacet(const QString &name, const QString &value);
    void ReadRange(const QString &type);
    std::optional<Value> Read(const QString &text) const;
    Parsed Parse(const QString &text) const { return { text, Read(text.trimmed()) }; }
    static bool IsSame(const Parsed &one, const Parsed &other);
    bool HasForm(const QString &text) const;
    bool IsListed(const QString &text) const;
    bool IsHeld(const Bound &bound, const Value &value) const;
    bool IsWellWithin(double number) const;
    QString RefuseBounds(const QString &text, const double *pNumber) const;
    QString RefuseSize(const QString &text) const;

    QString m_sType;
    Kind m_eKind;
    std::vector<Bound> m_lBounds;
    std::vector<Parsed> m_lEnumeration;
    std::vector<std::pair<QString, int>> m_lSizes; // of lengths and digits
    QRegularExpression m_oPattern;
    bool m_bHasPattern = false;
    bool m_bReplaces = false; // white space becomes blanks
    bool m_bCollapses = false; // and only single ones between words stay
};

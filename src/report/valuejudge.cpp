#include "report/valuejudge.h"

#include "report/schemapattern.h"

#include <QDateTime>
#include <QHash>

#include <algorithm>
#include <cmath>

namespace {

// A moment without a zone may lie up to 14 hours ahead of or behind the one that it names in UTC.
constexpr long double kZoneMs = 14.0L * 60 * 60 * 1000;

long double ToNumber(const QString &text)
{
    bool isExact = false;
    const qint64 number = text.toLongLong(&isExact);
    return isExact ? static_cast<long double>(number) : static_cast<long double>(text.toDouble());
}

// An integer type takes a double cut towards zero.
QString ToIntegerForm(double value, const QString &text)
{
    return std::isfinite(value) ? QString::number(std::trunc(value) + 0.0, 'f', 0) : text;
}

QString ToDoubleForm(double value, const QString &text)
{
    if (std::isnan(value)) {
        return QStringLiteral("NaN");
    }
    return std::isinf(value) ? (value < 0 ? QStringLiteral("-INF") : QStringLiteral("INF")) : text;
}

int CountDigits(const QString &integer)
{
    const auto isSignOrZero = [](QChar character) { return !character.isDigit() || character == QLatin1Char('0'); };
    const auto first = std::find_if_not(integer.begin(), integer.end(), isSignOrZero);
    return std::max(1, static_cast<int>(integer.end() - first));
}

} // namespace

ValueJudge::ValueJudge(const Declarations::Rule &rule)
    : m_sType(rule.m_sType)
    , m_eKind(KindOf(rule.m_sType))
{
    ReadRange(rule.m_sType);
    QStringList patterns;
    for (const auto &[name, value] : rule.m_lFacets) {
        ReadFacet(name, value);
        if (name == QLatin1String("pattern")) {
            // Patterns of one restriction are alternatives: one that can't be read lets everything pass.
            patterns << FromSchemaPattern(value).value_or(QString(QLatin1String("\\A")));
        }
    }
    m_oPattern.setPattern(patterns.join(QLatin1Char('|')));
    m_bHasPattern = !patterns.isEmpty() && m_oPattern.isValid(); // all together may be too long
}

// Of the built-in types only these take values at all.
ValueJudge::Kind ValueJudge::KindOf(const QString &type)
{
    static const QHash<QString, Kind> kinds {
        { QStringLiteral("string"), Kind::String },     { QStringLiteral("double"), Kind::Double },
        { QStringLiteral("boolean"), Kind::Boolean },   { QStringLiteral("integer"), Kind::Integer },
        { QStringLiteral("short"), Kind::Integer },     { QStringLiteral("long"), Kind::Integer },
        { QStringLiteral("dateTime"), Kind::DateTime }, { QStringLiteral("time"), Kind::Time },
    };
    return kinds.value(type, Kind::Unknown);
}

void ValueJudge::ReadRange(const QString &type)
{
    if (type == QLatin1String("short")) {
        ReadFacet(QStringLiteral("minInclusive"), QStringLiteral("-32768"));
        ReadFacet(QStringLiteral("maxInclusive"), QStringLiteral("32767"));
    } else if (type == QLatin1String("long")) {
        ReadFacet(QStringLiteral("minInclusive"), QStringLiteral("-9223372036854775808"));
        ReadFacet(QStringLiteral("maxInclusive"), QStringLiteral("9223372036854775807"));
    }
}

void ValueJudge::ReadFacet(const QString &name, const QString &value)
{
    static const QStringList sizes { QStringLiteral("length"), QStringLiteral("minLength"), QStringLiteral("maxLength"),
                                     QStringLiteral("totalDigits") };
    if (name == QLatin1String("enumeration")) {
        m_lEnumeration.push_back(Parse(value));
    } else if (name == QLatin1String("whiteSpace")) {
        m_bCollapses = value == QLatin1String("collapse");
        m_bReplaces = m_bReplaces || value == QLatin1String("replace");
    } else if (sizes.contains(name)) {
        bool isNumber = false;
        const int size = value.toInt(&isNumber);
        if (isNumber) {
            m_lSizes.emplace_back(name, size);
        }
    } else if (name.endsWith(QLatin1String("clusive"))) {
        const QString text = value.trimmed();
        if (const std::optional<Value> bound = Read(text)) {
            m_lBounds.push_back({ name, text, *bound });
        }
    }
}

// Of the kinds that have a form, only an integer can come as a text of the host's. Qt has written all other values; of
// an invalid date or time it writes nothing, and it knows zones beyond the 14 hours of XML Schema.
bool ValueJudge::HasForm(const QString &text) const
{
    static const QRegularExpression integer(QStringLiteral("\\A[+-]?[0-9]+\\z"));
    constexpr int kZone = 20; // where the hours of a zone stand behind its sign
    switch (m_eKind) {
    case Kind::Integer:
        return integer.match(text).hasMatch();
    case Kind::DateTime:
    case Kind::Time:
        return !text.isEmpty() && !text.startsWith(QLatin1String("0000")) && text.mid(kZone) <= QLatin1String("14:00");
    default:
        return true;
    }
}

std::optional<ValueJudge::Value> ValueJudge::Read(const QString &text) const
{
    if (m_eKind == Kind::Integer) {
        return HasForm(text) ? std::optional<Value>({ ToNumber(text), false }) : std::nullopt;
    }
    if (m_eKind == Kind::Boolean) {
        return Value { text == QLatin1String("true") || text == QLatin1String("1") ? 1.0L : 0.0L };
    }
    if (m_eKind == Kind::Double) {
        bool isNumber = false;
        const double number = text.toLower().toDouble(&isNumber);
        return isNumber ? std::optional<Value>({ number, false }) : std::nullopt;
    }
    if (m_eKind != Kind::DateTime && m_eKind != Kind::Time) {
        return std::nullopt;
    }
    const QString full = m_eKind == Kind::Time ? QLatin1String("2000-01-01T") + text : text;
    QDateTime moment = QDateTime::fromString(full, Qt::ISODateWithMs);
    if (!moment.isValid()) {
        return std::nullopt;
    }
    static const QRegularExpression zone(QStringLiteral("(Z|[+-]\\d\\d:\\d\\d)\\z"));
    const bool hasZone = zone.match(full).hasMatch();
    if (!hasZone) {
        moment = QDateTime(moment.date(), moment.time(), Qt::UTC);
    }
    return Value { static_cast<long double>(moment.toMSecsSinceEpoch()), hasZone };
}

bool ValueJudge::IsHeld(const Bound &bound, const Value &value) const
{
    const bool isInclusive = bound.m_sName.endsWith(QLatin1String("Inclusive"));
    const bool isLower = bound.m_sName.startsWith(QLatin1String("min"));
    const long double above =
        isLower ? value.m_dNumber - bound.m_oValue.m_dNumber : bound.m_oValue.m_dNumber - value.m_dNumber;
    if (value.m_bHasZone != bound.m_oValue.m_bHasZone) {
        return above > kZoneMs;
    }
    // The difference of two infinite numbers is no number.
    return above > 0 || (isInclusive && value.m_dNumber == bound.m_oValue.m_dNumber);
}

// Far from a bound the twelve digits that are written make no difference.
bool ValueJudge::IsWellWithin(double number) const
{
    constexpr long double kMargin = 1e-11L;
    return std::all_of(m_lBounds.begin(), m_lBounds.end(), [number](const Bound &bound) {
        const long double other = bound.m_oValue.m_dNumber;
        const bool isLower = bound.m_sName.startsWith(QLatin1String("min"));
        return (isLower ? number - other : other - number) > kMargin * (std::abs(other) + std::abs(number));
    });
}

QString ValueJudge::RefuseBounds(const QString &text, const double *pNumber) const
{
    const bool isInteger = m_eKind == Kind::Integer; // which is written cut
    const bool isNumber = pNumber != nullptr && (isInteger || m_eKind == Kind::Double);
    if (m_lBounds.empty() || (isNumber && IsWellWithin(isInteger ? std::trunc(*pNumber) : *pNumber))) {
        return QString();
    }
    const std::optional<Value> value = Read(text);
    for (const Bound &bound : m_lBounds) {
        if (!value || !IsHeld(bound, *value)) {
            return QLatin1String("it breaks ") + bound.m_sName + QLatin1Char(' ') + bound.m_sText;
        }
    }
    return QString();
}

QString ValueJudge::RefuseSize(const QString &text) const
{
    for (const auto &[name, limit] : m_lSizes) {
        const bool isDigits = name == QLatin1String("totalDigits");
        if (isDigits ? m_eKind != Kind::Integer : m_eKind != Kind::String) {
            continue;
        }
        const int size = isDigits ? CountDigits(text) : text.toUcs4().size();
        const bool isLower = name == QLatin1String("minLength");
        if (isLower ? size < limit : (name == QLatin1String("length") ? size != limit : size > limit)) {
            return QLatin1String("it breaks ") + name + QLatin1Char(' ') + QString::number(limit);
        }
    }
    return QString();
}

bool ValueJudge::IsSame(const Parsed &one, const Parsed &other)
{
    if (!one.m_oValue || !other.m_oValue) {
        return one.m_sText == other.m_sText;
    }
    const auto &[first, firstHasZone] = *one.m_oValue;
    const auto &[second, secondHasZone] = *other.m_oValue;
    return (std::isnan(first) && std::isnan(second)) || (first == second && firstHasZone == secondHasZone);
}

// An empty enumeration lists all.
bool ValueJudge::IsListed(const QString &text) const
{
    if (m_lEnumeration.empty()) {
        return true;
    }
    return std::any_of(m_lEnumeration.begin(), m_lEnumeration.end(),
                       [parsed = Parse(text)](const Parsed &allowed) { return IsSame(parsed, allowed); });
}

QString ValueJudge::Refuse(QString &text, const double *pNumber, bool isDouble) const
{
    if (m_eKind == Kind::Integer && isDouble) {
        text = ToIntegerForm(*pNumber, text);
    } else if (m_eKind == Kind::Double && isDouble) {
        text = ToDoubleForm(*pNumber, text);
    }
    QString judged = text;
    if (m_bReplaces || m_bCollapses) {
        static const QRegularExpression blank(QStringLiteral("[\\t\\n\\r]"));
        judged.replace(blank, QStringLiteral(" "));
    }
    if (m_bCollapses) {
        // Qt's own simplified() takes a no-break space for a blank, too.
        judged = judged.split(QLatin1Char(' '), Qt::SkipEmptyParts).join(QLatin1Char(' '));
    }
    const bool isInteger = m_eKind == Kind::Integer && pNumber != nullptr && std::isfinite(*pNumber);
    if (!isInteger && !HasForm(judged)) {
        return QStringLiteral("it is no %1").arg(m_sType);
    }
    if (!IsListed(judged)) {
        return QStringLiteral("not among the enumeration values");
    }
    if (m_bHasPattern && !m_oPattern.match(judged).hasMatch()) {
        return QStringLiteral("it doesn't match the pattern");
    }
    const QString refusal = RefuseBounds(judged, pNumber);
    return refusal.isEmpty() ? RefuseSize(judged) : refusal;
}

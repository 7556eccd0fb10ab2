#include "report/facets.h"

#include <array>
#include <cmath>
#include <cstddef>
#include <limits>

namespace facets {

namespace {

constexpr double kAbsent = 65535;

enum Side : std::size_t { MinInclusive, MaxInclusive, MinExclusive, MaxExclusive, SideCount };

// In the order in which an attribute's name is searched for them.
constexpr int kNameSize = 12;
constexpr std::array<QLatin1String, SideCount> kNames = { QLatin1String("minInclusive", kNameSize),
                                                          QLatin1String("maxInclusive", kNameSize),
                                                          QLatin1String("minExclusive", kNameSize),
                                                          QLatin1String("maxExclusive", kNameSize) };
// How a value that breaks the bound lies to it.
constexpr std::array<const char *, SideCount> kBreaches = { "below", "above", "not above", "not below" };

struct Bound
{
    // Every integer of 32 bits is a double, so that the comparison is exact for both kinds of number.
    double m_dValue = kAbsent;
    QString m_sUsed; // the attribute to remove with the check; empty if it isn't named exactly for its target

    bool IsThere() const { return m_dValue != kAbsent; }
};

using Bounds = std::array<Bound, SideCount>;

// The side that an attribute of this name bounds, or SideCount.
std::size_t SideOf(const QString &name, const QString &attribute)
{
    const bool isOfElement = attribute.isEmpty();
    std::size_t side = isOfElement || name.contains(attribute) ? MinInclusive : SideCount;
    while (side < SideCount && !(isOfElement ? name == kNames[side] : name.contains(kNames[side]))) {
        ++side;
    }
    return side;
}

// A text that can't be read counts as 0, and that bound is then in force.
Bounds ReadBounds(const AttributeList &attributes, const QString &attribute, Facets kind)
{
    Bounds bounds;
    for (const auto &[name, text] : attributes) {
        const std::size_t side = SideOf(name, attribute);
        if (side < SideCount && bounds[side].m_sUsed.isEmpty()) {
            const bool isExact = attribute.isEmpty() || name == kNames[side] + attribute;
            bounds[side] = { kind == Facets::IntegerBounds ? text.toInt() : text.toDouble(),
                             isExact ? name : QString() };
        }
    }
    return bounds;
}

bool IsHeld(const Bounds &bounds, Side side, double value)
{
    const bool isInclusive = side == MinInclusive || side == MaxInclusive;
    const bool isLower = side == MinInclusive || side == MinExclusive;
    const double bound = bounds[side].m_dValue;
    return bounds[side].IsThere() && ((isInclusive && value == bound) || (isLower ? value > bound : value < bound));
}

// Of the two bounds on one side one has to hold, and is used up then. False if there are bounds and none holds.
bool CheckSide(const Bounds &bounds, double value, Side inclusive, Side exclusive, Verdict &verdict)
{
    if (!bounds[inclusive].IsThere() && !bounds[exclusive].IsThere()) {
        return true;
    }
    const bool isInclusiveHeld = IsHeld(bounds, inclusive, value);
    if (!isInclusiveHeld && !IsHeld(bounds, exclusive, value)) {
        const Side broken = bounds[inclusive].IsThere() ? inclusive : exclusive;
        const QString bound = QString::number(bounds[broken].m_dValue, 'g', 12);
        verdict = { QStringLiteral("%1 %2 %3").arg(QLatin1String(kBreaches[broken]), kNames[broken], bound), {} };
        return false;
    }
    const QString &used = bounds[isInclusiveHeld ? inclusive : exclusive].m_sUsed;
    if (!used.isEmpty()) {
        verdict.m_lUsed.append(used);
    }
    return true;
}

Verdict CheckNumber(Facets kind, double value, const AttributeList &attributes, const QString &attribute)
{
    Bounds bounds = ReadBounds(attributes, attribute, kind);
    const bool hasLower = bounds[MinInclusive].IsThere() || bounds[MinExclusive].IsThere();
    if (hasLower && bounds[MaxInclusive].IsThere()) {
        bounds[MaxExclusive] = Bound(); // behind a lower bound the inclusive upper one rules alone
    }
    Verdict verdict;
    if (CheckSide(bounds, value, MinInclusive, MinExclusive, verdict)) {
        CheckSide(bounds, value, MaxInclusive, MaxExclusive, verdict);
    }
    return verdict;
}

// An enumeration of empty values alone restricts nothing. All are asked, since Qt's order of attributes is random.
Verdict CheckText(const QString &text, const AttributeList &attributes, const QString &attribute)
{
    Verdict verdict;
    bool hasMatch = false;
    bool restricts = false;
    for (const auto &[name, value] : attributes) {
        if (name.contains(QLatin1String("enumeration"))
            && (attribute.isEmpty() ? name.at(name.size() - 1).isDigit() : name.contains(attribute))) {
            hasMatch = hasMatch || value == text;
            restricts = restricts || !value.isEmpty();
            verdict.m_lUsed.append(name);
        }
    }
    if (restricts && !hasMatch) {
        verdict.m_sRefusal = QStringLiteral("not among the enumeration values");
    }
    return verdict;
}

} // namespace

Verdict Check(Facets kind, const QString &text, double number, const AttributeList &attributes,
              const QString &attribute)
{
    if (kind == Facets::None) {
        return Verdict();
    }
    return kind == Facets::Enumeration ? CheckText(text, attributes, attribute)
                                       : CheckNumber(kind, number, attributes, attribute);
}

std::optional<int> ToInteger(double number)
{
    const double cut = std::trunc(number);
    if (cut >= std::numeric_limits<int>::min() && cut <= std::numeric_limits<int>::max()) {
        return static_cast<int>(cut);
    }
    return std::nullopt;
}

} // namespace facets

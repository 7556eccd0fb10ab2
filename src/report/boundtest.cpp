#include "report/boundtest.h"

#include <algorithm>

namespace bounds {

namespace {

// In the order in which an attribute's name is searched for them.
constexpr std::array<Side, SideCount> kSides = { MinInclusive, MaxInclusive, MinExclusive, MaxExclusive };

// A text that can't be read counts as 0, and that bound is then in force.
template <typename Number>
Number ToNumber(const QString &text);

template <>
int ToNumber<int>(const QString &text)
{
    return text.toInt();
}

template <>
double ToNumber<double>(const QString &text)
{
    return text.toDouble();
}

std::optional<Side> SideIn(const QString &name)
{
    for (const Side side : kSides) {
        if (name.contains(FacetName(side))) {
            return side;
        }
    }
    return std::nullopt;
}

// The first of two bounds that is there and that the value holds.
template <typename Number>
std::optional<Side> FirstHeld(const Bounds<Number> &bounds, Number value, Side inclusive, Side exclusive)
{
    if (bounds.HasAndHolds(inclusive, value)) {
        return inclusive;
    }
    return bounds.HasAndHolds(exclusive, value) ? std::optional<Side>(exclusive) : std::nullopt;
}

} // namespace

QString FacetName(Side side)
{
    switch (side) {
    case MinInclusive:
        return QStringLiteral("minInclusive");
    case MaxInclusive:
        return QStringLiteral("maxInclusive");
    case MinExclusive:
        return QStringLiteral("minExclusive");
    default:
        return QStringLiteral("maxExclusive");
    }
}

template <typename Number>
bool Bounds<Number>::Holds(Side side, Number value) const
{
    const Number bound = m_lValues[side];
    switch (side) {
    case MinInclusive:
        return value >= bound;
    case MaxInclusive:
        return value <= bound;
    case MinExclusive:
        return value > bound;
    default:
        return value < bound;
    }
}

template <typename Number>
Bounds<Number> OfElement(const AttributeList &attributes)
{
    Bounds<Number> bounds;
    for (const auto &[name, value] : attributes) {
        const auto side = std::find_if(kSides.begin(), kSides.end(),
                                       [&name = name](Side candidate) { return name == FacetName(candidate); });
        if (side != kSides.end()) {
            bounds.m_lValues[*side] = ToNumber<Number>(value);
        }
    }
    return bounds;
}

template <typename Number>
Bounds<Number> OfAttribute(const AttributeList &attributes, const QString &attributeName)
{
    Bounds<Number> bounds;
    std::array<bool, SideCount> isExact = {};
    for (const auto &[name, value] : attributes) {
        const std::optional<Side> side = name.contains(attributeName) ? SideIn(name) : std::nullopt;
        if (side && !isExact[*side]) {
            bounds.m_lValues[*side] = ToNumber<Number>(value);
            isExact[*side] = name == FacetName(*side) + attributeName;
        }
    }
    return bounds;
}

template <typename Number>
Verdict Judge(const Bounds<Number> &bounds, Number value)
{
    const bool hasLower = bounds.Has(MinInclusive) || bounds.Has(MinExclusive);
    const bool hasUpper = bounds.Has(MaxInclusive) || bounds.Has(MaxExclusive);
    Verdict verdict;
    if (!hasLower) {
        verdict.m_eUpper = FirstHeld(bounds, value, MaxInclusive, MaxExclusive);
        verdict.m_bPasses = !hasUpper || verdict.m_eUpper;
        return verdict;
    }
    verdict.m_eLower = FirstHeld(bounds, value, MinInclusive, MinExclusive);
    if (hasUpper) {
        // Behind a lower bound the inclusive upper one rules, whether the value holds it or not.
        verdict.m_eUpper = bounds.Has(MaxInclusive) ? MaxInclusive : MaxExclusive;
    }
    verdict.m_bPasses = verdict.m_eLower && (!hasUpper || bounds.Holds(*verdict.m_eUpper, value));
    return verdict;
}

template <typename Number>
QString Explain(const Bounds<Number> &bounds, Number value)
{
    const bool brokeLower =
        (bounds.Has(MinInclusive) || bounds.Has(MinExclusive)) && !FirstHeld(bounds, value, MinInclusive, MinExclusive);
    const Side inclusive = brokeLower ? MinInclusive : MaxInclusive;
    const Side exclusive = brokeLower ? MinExclusive : MaxExclusive;
    const Side broken = bounds.Has(inclusive) ? inclusive : exclusive;
    const QString bound =
        FacetName(broken) + QLatin1Char(' ') + QString::number(static_cast<double>(bounds.m_lValues[broken]), 'g', 12);
    if (broken == exclusive) {
        return (brokeLower ? QLatin1String("not above ") : QLatin1String("not below ")) + bound;
    }
    return (brokeLower ? QLatin1String("below ") : QLatin1String("above ")) + bound;
}

QStringList UsedNames(const Verdict &verdict, const QString &attributeName)
{
    QStringList names;
    for (const std::optional<Side> &side : { verdict.m_eLower, verdict.m_eUpper }) {
        if (side) {
            names.append(FacetName(*side) + attributeName);
        }
    }
    return names;
}

template Bounds<int> OfElement<int>(const AttributeList &);
template Bounds<double> OfElement<double>(const AttributeList &);
template Bounds<int> OfAttribute<int>(const AttributeList &, const QString &);
template Bounds<double> OfAttribute<double>(const AttributeList &, const QString &);
template Verdict Judge<int>(const Bounds<int> &, int);
template Verdict Judge<double>(const Bounds<double> &, double);
template QString Explain<int>(const Bounds<int> &, int);
template QString Explain<double>(const Bounds<double> &, double);

} // namespace bounds

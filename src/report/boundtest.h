#pragma once

#include "report/attributes.h"

#include <QString>
#include <QStringList>

#include <array>
#include <cstddef>
#include <optional>

/// The test of a number against the bounds that the template gives an element or an attribute, written once for both
/// and for both kinds of number (int and double).
namespace bounds {

enum Side : std::size_t { MinInclusive, MaxInclusive, MinExclusive, MaxExclusive, SideCount };

QString FacetName(Side side);

/// Stands for a missing bound: a facet with this very value is neither tested nor removed.
constexpr int kAbsent = 65535;

template <typename Number>
struct Bounds
{
    std::array<Number, SideCount> m_lValues = { kAbsent, kAbsent, kAbsent, kAbsent };

    bool Has(Side side) const { return m_lValues[side] != Number(kAbsent); }
    bool Holds(Side side, Number value) const;
    bool HasAndHolds(Side side, Number value) const { return Has(side) && Holds(side, value); }
};

/// What a test came to, and the bounds that it was decided by.
struct Verdict
{
    bool m_bPasses = false;
    std::optional<Side> m_eLower;
    std::optional<Side> m_eUpper;
};

/// The bounds of an element: the attributes that bear a facet's name.
template <typename Number>
Bounds<Number> OfElement(const AttributeList &attributes);

/// The bounds of an element's attribute: the attributes whose names contain a facet's name and `attributeName`. Where
/// two serve one bound, the one that is named exactly so wins, else the last by name.
template <typename Number>
Bounds<Number> OfAttribute(const AttributeList &attributes, const QString &attributeName);

/// Holds a value against bounds. Of two lower bounds one is enough; an upper one has its say after that.
template <typename Number>
Verdict Judge(const Bounds<Number> &bounds, Number value);

/// Says of a value that was refused what it broke: "above maxInclusive 40000".
template <typename Number>
QString Explain(const Bounds<Number> &bounds, Number value);

/// The names of the attributes that served the verdict; `attributeName` is empty for an element's bounds.
QStringList UsedNames(const Verdict &verdict, const QString &attributeName);

} // namespace bounds

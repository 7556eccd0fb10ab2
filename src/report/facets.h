#pragma once

#include "report/attributes.h"

#include <QString>
#include <QStringList>

#include <optional>

/// The check of a value against the facets that the template gives an element or an attribute, written once for both:
/// `attribute` is empty for the element's own value.
///
/// The facets of an element bear their plain names, and its enumeration values end in a digit. Those of an attribute
/// hold the facet's and the attribute's name; where two serve one bound, the one that is named exactly so wins, else
/// the last by name. A bound of 65535 counts as absent.
namespace facets {

enum class Facets { None, Enumeration, IntegerBounds, DoubleBounds };

struct Verdict
{
    /// Completes "the value was not written: ". Empty for a value that passes.
    QString m_sRefusal;
    /// The names of the attributes that served the check, and go with it.
    QStringList m_lUsed;
};

/// Holds a value, as text and as number, against the facets of its kind. Of two lower bounds one is enough; an upper
/// bound has its say after that.
Verdict Check(Facets kind, const QString &text, double number, const AttributeList &attributes,
              const QString &attribute);

/// The integer form of a number, cut towards zero. Nothing for NaN and for what 32 bits don't hold, which is never bent
/// to fit.
std::optional<int> ToInteger(double number);

} // namespace facets

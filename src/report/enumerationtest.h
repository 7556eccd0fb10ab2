#pragma once

#include "report/attributes.h"

#include <QString>
#include <QStringList>

/// The test of a text against the enumeration values that the template gives an element or an attribute.
namespace enumeration {

struct Verdict
{
    bool m_bPasses = false;
    /// The names of all enumeration values that were looked at.
    QStringList m_lNames;
};

/// Says of a text that was refused what it broke.
QString Explain();

/// Judges a text by an element's own enumeration: the attributes whose names contain "enumeration" and end in a digit.
Verdict JudgeForElement(const AttributeList &attributes, const QString &text);

/// Judges a text by the enumeration of an element's attribute: the attributes whose names contain "enumeration" and
/// `attributeName`.
Verdict JudgeForAttribute(const AttributeList &attributes, const QString &attributeName, const QString &text);

} // namespace enumeration

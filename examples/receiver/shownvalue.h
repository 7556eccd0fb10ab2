#pragma once

#include <QString>

/// How a value of the report is shown to the operator: a number with the decimal sign of the language, a word of the
/// schema's enumerations by its translation.
namespace shownvalue {

/// What is neither stays as it is.
QString ToShown(const QString &value);
/// The way back. A text that is neither goes into the report as it was typed.
QString FromShown(const QString &text);

} // namespace shownvalue

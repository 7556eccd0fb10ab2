#pragma once

#include <QString>

/// How a value of the report is shown to the operator: a number with the decimal sign of the language, a word of the
/// schema's enumerations by its translation.
namespace shownvalue {

/// Another value stays as it is.
QString ToShown(const QString &value);
/// The way back. Another text goes into the report as it was typed.
QString FromShown(const QString &text);

} // namespace shownvalue

#pragma once

#include <QString>

#include <optional>

/// The pattern of a schema as QRegularExpression writes it, for a whole text; nothing where one can't say what the
/// other can: names of XML, blocks of Unicode, differences of sets.
std::optional<QString> FromSchemaPattern(const QString &pattern);

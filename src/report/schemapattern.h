#pragma once

#include <QString>

#include <optional>

/// The pattern of a schema as QRegularExpression writes it, for a whole text; nothing for a pattern with names of XML,
/// blocks of Unicode or differences of sets, which QRegularExpression doesn't know, and for one that is none.
std::optional<QString> FromSchemaPattern(const QString &pattern);

#pragma once

#include <QString>

/// Schema tags and built-in types are known by a literal prefix, wherever it stands in a text.
namespace schematags {

constexpr int kPrefixLength = 3;
inline constexpr QLatin1String kPrefix("xs:", kPrefixLength);

inline bool HasPrefix(const QString &text)
{
    return text.contains(kPrefix);
}

/// The text without its first characters, as many as the prefix has, whether they are the prefix or not.
inline QString WithoutPrefix(const QString &text)
{
    return text.mid(kPrefixLength);
}

/// The name under which the schema reader traces.
inline QString UnitName()
{
    return QStringLiteral("xmlschemahandler");
}

} // namespace schematags

#pragma once

#include <QString>

/// The literal prefix by which schema tags and built-in types are told, wherever in a text it stands.
namespace schematags {

constexpr int kPrefixLength = 3;

inline bool HasPrefix(const QString &text)
{
    return text.contains(QLatin1String("xs:"));
}

/// A text without the characters that the prefix takes. No check is made that it begins with the prefix.
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

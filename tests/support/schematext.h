#pragma once

#include <QRegularExpression>
#include <QString>

/// "<e a min=2>" is short for "<xs:element name='a' minOccurs='2'>": tags of one letter, the first attribute without
/// its name, no quotes. "<t a>" is an element of the type string.
inline QString Expanded(QString text)
{
    static const char *const tags[][3] = {
        { "e", "element", "name" },      { "a", "attribute", "name" },
        { "c", "complexType", "name" },  { "s", "simpleType", "name" },
        { "r", "restriction", "base" },  { "x", "extension", "base" },
        { "v", "enumeration", "value" }, { "q", "sequence", "" },
        { "h", "choice", "" },           { "t", "element type='xs:string'", "name" }
    };
    for (const auto &[letter, tag, first] : tags) {
        text.replace(QRegularExpression(QStringLiteral("<%1 ([\\w:.#^-]+)(?=[ />])").arg(QLatin1String(letter))),
                     QStringLiteral("<xs:%1 %2='\\1'").arg(QLatin1String(tag), QLatin1String(first)));
        text.replace(QRegularExpression(QStringLiteral("<(/?)%1(?=[ />])").arg(QLatin1String(letter))),
                     QStringLiteral("<\\1xs:%1").arg(QLatin1String(tag)));
    }
    text.replace(QRegularExpression(QStringLiteral(" (min|max)=")), QStringLiteral(" \\1Occurs="));
    return text.replace(QRegularExpression(QStringLiteral(" (\\w+)=([\\w:.#^-]+)")), QStringLiteral(" \\1='\\2'"));
}

/// A global element "R" with an anonymous complex type that holds `content`.
inline QString RootElement(const QString &content)
{
    return QStringLiteral("<e R><c><q>%1</q></c></e>").arg(content);
}

/// The bytes of a schema with declarations as Expanded() takes them.
inline QByteArray SchemaText(const QString &declarations)
{
    return "<xs:schema xmlns:xs='http://www.w3.org/2001/XMLSchema'>" + Expanded(declarations).toUtf8() + "</xs:schema>";
}

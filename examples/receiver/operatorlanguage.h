#pragma once

#include <QString>
#include <QTranslator>

/// The language in which the operator is spoken to: the example's texts, the library's and Qt's own, and the form of
/// the numbers. One at a time, made before the windows and gone before the application.
class OperatorLanguage
{
public:
    /// `code` is a locale's name, as "de" or "fr_CH". A language that nobody has translated, and the locale "C", give
    /// English.
    explicit OperatorLanguage(const QString &code);

private:
    QTranslator m_oQt; // leaves the application by itself
};

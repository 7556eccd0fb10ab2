#include "shownvalue.h"

#include <QCoreApplication>
#include <QLocale>

namespace {

constexpr int kDigits = 12;

constexpr const char *kWords[] = {
    QT_TRANSLATE_NOOP("ShownValue", "Average"),    QT_TRANSLATE_NOOP("ShownValue", "Peak"),
    QT_TRANSLATE_NOOP("ShownValue", "RMS"),        QT_TRANSLATE_NOOP("ShownValue", "Sample"),
    QT_TRANSLATE_NOOP("ShownValue", "licensed"),   QT_TRANSLATE_NOOP("ShownValue", "unknown"),
    QT_TRANSLATE_NOOP("ShownValue", "unlicensed"),
};

QString Translate(const char *word)
{
    return QCoreApplication::translate("ShownValue", word);
}

/// Without signs between the thousands: in one language they are the decimal sign of the other.
QLocale NumberLocale()
{
    QLocale locale;
    locale.setNumberOptions(QLocale::OmitGroupSeparator | QLocale::RejectGroupSeparator);
    return locale;
}

} // namespace

namespace shownvalue {

QString ToShown(const QString &value)
{
    for (const char *word : kWords) {
        if (value == QLatin1String(word)) {
            return Translate(word);
        }
    }
    bool isNumber = false;
    const double number = value.toDouble(&isNumber);
    return isNumber ? NumberLocale().toString(number, 'g', kDigits) : value;
}

QString FromShown(const QString &text)
{
    for (const char *word : kWords) {
        if (text == Translate(word)) {
            return QLatin1String(word);
        }
    }
    bool isNumber = false;
    const double number = NumberLocale().toDouble(text, &isNumber);
    return isNumber ? QString::number(number, 'g', kDigits) : text;
}

} // namespace shownvalue

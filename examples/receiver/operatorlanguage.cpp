#include "operatorlanguage.h"

#include "host/ostrel.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QLocale>

namespace {

QString GetQtFolder()
{
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
    return QLibraryInfo::location(QLibraryInfo::TranslationsPath);
#else
    return QLibraryInfo::path(QLibraryInfo::TranslationsPath);
#endif
}

} // namespace

OperatorLanguage::OperatorLanguage(const QString &code)
{
    // The linker would pass over the translators, which lie in a static library.
    Q_INIT_RESOURCE(example);
    const QLocale wanted(code);
    const bool isTranslated = wanted.language() == QLocale::German || wanted.language() == QLocale::French;
    const bool isEnglish = wanted.language() == QLocale::English;
    const QLocale locale = isTranslated || isEnglish ? wanted : QLocale(QLocale::English);
    QLocale::setDefault(locale);
    // Where Qt's own translations aren't installed, the texts of its buttons stay English.
    if (m_oQt.load(locale, QStringLiteral("qtbase"), QStringLiteral("_"), GetQtFolder())) {
        QCoreApplication::installTranslator(&m_oQt);
    }
    TranslationCenter::Instance().Register(QStringLiteral("Example"));
    TranslationCenter::Instance().SetLocale(locale);
}

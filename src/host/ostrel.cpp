#include "host/ostrel.h"

#include <QCoreApplication>

namespace {

void InstallTranslatorsAtStart()
{
    TranslationCenter::Instance().InstallTranslators();
}

} // namespace

Q_COREAPP_STARTUP_FUNCTION(InstallTranslatorsAtStart)

TranslationCenter &TranslationCenter::Instance()
{
    static TranslationCenter center;
    return center;
}

void TranslationCenter::Register(const QString &name)
{
    if (!m_lNames.contains(name)) {
        m_lNames.append(name);
        InstallTranslator(name);
    }
}

void TranslationCenter::Unregister(const QString &name)
{
    m_lNames.removeAll(name);
    // The destructor takes the translator out of the application, if there still is one.
    m_hTranslators.erase(name);
}

QStringList TranslationCenter::GetNames() const
{
    return m_lNames;
}

void TranslationCenter::SetLocale(const QLocale &locale)
{
    m_oLocale = locale;
    InstallTranslators();
}

void TranslationCenter::AddDirectory(const QString &directory)
{
    m_lDirectories.insert(m_lDirectories.size() - 1, directory);
    InstallTranslators();
}

void TranslationCenter::InstallTranslators()
{
    for (const QString &name : std::as_const(m_lNames)) {
        InstallTranslator(name);
    }
}

void TranslationCenter::InstallTranslator(const QString &name)
{
    if (!m_oLocale || QCoreApplication::instance() == nullptr) {
        return;
    }
    m_hTranslators.erase(name);
    auto translator = std::make_unique<QTranslator>();
    for (const QString &directory : std::as_const(m_lDirectories)) {
        if (translator->load(*m_oLocale, name.toLower(), QStringLiteral("_"), directory)) {
            QCoreApplication::installTranslator(translator.get());
            m_hTranslators[name] = std::move(translator);
            return;
        }
    }
}

#pragma once

#include "tagwright_host_export.h"

#include <QLocale>
#include <QString>
#include <QStringList>
#include <QTranslator>

#include <map>
#include <memory>
#include <optional>

/// The registry of the libraries that bring operator texts, and the translators that belong to them. A library
/// registers its name while it is being loaded, which is before any QCoreApplication exists. GUI thread only.
class TAGWRIGHT_HOST_EXPORT TranslationCenter
{
public:
    /// The one object of the process; always there.
    static TranslationCenter &Instance();

    /// Adds a name; one that is there already stays single.
    void Register(const QString &name);

    /// Takes a name and its translator away; an unknown one is passed over.
    void Unregister(const QString &name);

    /// The registered names, in the order of registration.
    QStringList GetNames() const;

    /// Chooses the language of the texts: for each registered name, now and later, the translator of this locale is
    /// installed as soon as an application exists. Before the first call all texts stay as the code has them. A
    /// language for which there is no file leaves the code's texts, too.
    void SetLocale(const QLocale &locale);

    /// A directory in which translators are looked for, ahead of those that the libraries carry within themselves in
    /// ":/tagwright/translations". The files are called as the name in lower case, "_" and the locale:
    /// "tagwright_de.qm".
    void AddDirectory(const QString &directory);

    /// Installs what SetLocale asked for. Called by the application's start; a host need not call it.
    void InstallTranslators();

private:
    TranslationCenter() = default;

    void InstallTranslator(const QString &name);

    QStringList m_lNames;
    QStringList m_lDirectories { QStringLiteral(":/tagwright/translations") };
    std::optional<QLocale> m_oLocale;
    std::map<QString, std::unique_ptr<QTranslator>> m_hTranslators;
};

#pragma once

#include "tagwright_host_export.h"

#include <QString>
#include <QStringList>

/// The registry of the libraries that bring operator texts. A library registers its name while it is being loaded,
/// which is before any QCoreApplication exists.
class TAGWRIGHT_HOST_EXPORT TranslationCenter
{
public:
    /// The one object of the process; always there.
    static TranslationCenter &Instance();

    /// Adds a name; one that is there already stays single.
    void Register(const QString &name);

    /// Takes a name away; an unknown one is passed over.
    void Unregister(const QString &name);

    /// The registered names, in the order of registration.
    QStringList GetNames() const;

private:
    TranslationCenter() = default;

    QStringList m_lNames;
};

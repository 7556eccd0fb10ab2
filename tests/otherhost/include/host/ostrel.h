#pragma once

#include <QStringList>

struct TranslationCenter
{
    static TranslationCenter &Instance();
    void Register(const QString &name) { m_lNames += name; }
    void Unregister(const QString &name) { m_lNames.removeAll(name); }

    QStringList m_lNames;
};

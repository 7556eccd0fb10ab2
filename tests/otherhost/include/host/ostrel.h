#pragma once

#include <QStringList>

struct TranslationCenter
{
    static TranslationCenter &Instance() { return s_oOnly; }
    void Register(const QString &name) { m_lNames += name; }
    void Unregister(const QString &name) { m_lNames.removeAll(name); }

    QStringList m_lNames;
    static TranslationCenter s_oOnly;
};

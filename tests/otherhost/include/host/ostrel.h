#pragma once

#include <QString>
#include <QStringList>

class TranslationCenter
{
public:
    static TranslationCenter &Instance();

    void Register(const QString &name);
    void Unregister(const QString &name);

    QStringList m_lNames;
};

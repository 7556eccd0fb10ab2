#include "host/ostrel.h"

TranslationCenter &TranslationCenter::Instance()
{
    static TranslationCenter center;
    return center;
}

void TranslationCenter::Register(const QString &name)
{
    if (!m_lNames.contains(name)) {
        m_lNames.append(name);
    }
}

void TranslationCenter::Unregister(const QString &name)
{
    m_lNames.removeAll(name);
}

QStringList TranslationCenter::GetNames() const
{
    return m_lNames;
}

#include "host/ostrel.h"
#include "host/quilmar.h"
#include "host/veldra.h"

#include <QDateTime>

TranslationCenter TranslationCenter::s_oOnly;
ErrorHandler ErrorHandler::s_oOnly;
OrvoOS OrvoOS::s_oOnly;
values::Tree values::Tree::s_oOnly;

values::ValueBase *values::Tree::FindValue(QString path)
{
    static struct : ValueBase, IValueNumeric
    {
        QString GetText() override { return QStringLiteral("42.5 dB"); }
        double GetNumber() override { return 42.5; }
    } level;
    return path == level.GetPathName() ? &level : nullptr;
}

void _Q_Trace(const QString &message, const QString &sourceFile, unsigned short)
{
    ErrorHandler::Instance().m_lTraces += sourceFile + QStringLiteral(": ") + message;
}

void _Q_TraceOld(QString format, ...)
{
    ErrorHandler::Instance().m_lTraces += format;
}

QString Orvo::DateTime::toString(const QString &format) const
{
    return QDateTime::fromSecsSinceEpoch(static_cast<qint64>(m_iSeconds), Qt::UTC).toString(format);
}

#include "host/ostrel.h"
#include "host/quilmar.h"
#include "host/veldra.h"

#include <QDateTime>

namespace {

template <typename Service>
Service &TheOnly()
{
    static Service service;
    return service;
}

struct Level : values::ValueBase, values::IValueNumeric
{
    QString GetText() override { return QStringLiteral("42.5 dB"); }
    double GetNumber() override { return 42.5; }
};

} // namespace

TranslationCenter &TranslationCenter::Instance()
{
    return TheOnly<TranslationCenter>();
}

ErrorHandler &ErrorHandler::Instance()
{
    return TheOnly<ErrorHandler>();
}

OrvoOS &OrvoOS::Create()
{
    return TheOnly<OrvoOS>();
}

values::Tree *values::Tree::Instance()
{
    return &TheOnly<Tree>();
}

values::ValueBase *values::Tree::FindValue(QString path)
{
    auto &level = TheOnly<Level>();
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

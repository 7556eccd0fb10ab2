#pragma once

#include <QString>
#include <QStringList>

/// Traces of this host are kept in a list.
class ErrorHandler
{
public:
    static ErrorHandler &Instance();

    virtual ~ErrorHandler() = default;
    virtual int GetTraceMask();

    int m_iMask = 0;
    QStringList m_lTraces;
};

void _Q_Trace(const QString &message, const QString &sourceFile, unsigned short line);
void _Q_TraceOld(QString format, ...);

/// A clock that stands still.
class IOrvoOS
{
public:
    virtual ~IOrvoOS() = default;
    virtual quint64 GetTime();
};

class OrvoOS
{
public:
    static IOrvoOS &Create();
};

namespace Orvo {

class DateTime
{
public:
    explicit DateTime(const quint64 &time);
    QString toString(const QString &format) const;

private:
    quint64 m_iTime;
};

} // namespace Orvo

#pragma once

#include <QStringList>

/// Traces of this host are always on, and kept in a list.
struct ErrorHandler
{
    static ErrorHandler &Instance() { return s_oOnly; }
    int GetTraceMask() const { return m_iMask; }

    int m_iMask = 32;
    QStringList m_lTraces;
    static ErrorHandler s_oOnly;
};
void _Q_Trace(const QString &message, const QString &sourceFile, unsigned short line);
void _Q_TraceOld(QString format, ...);

/// A clock that stands still. It counts seconds, and thinks in UTC.
struct OrvoOS
{
    static OrvoOS &Create() { return s_oOnly; }
    quint64 GetTime() const { return m_iSeconds; }

    quint64 m_iSeconds = 86400;
    static OrvoOS s_oOnly;
};

namespace Orvo {

struct DateTime
{
    explicit DateTime(quint64 seconds)
        : m_iSeconds(seconds)
    {
    }
    QString toString(const QString &format) const;

    quint64 m_iSeconds;
};

} // namespace Orvo

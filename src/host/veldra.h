#pragma once

#include "tagwright_host_export.h"

#include <QString>
#include <QtGlobal>

/// The query that decides whether anything is traced at all.
class TAGWRIGHT_HOST_EXPORT ITraceMask
{
public:
    ITraceMask() = default;
    virtual ~ITraceMask();
    Q_DISABLE_COPY(ITraceMask)

    /// The bits that are switched on; the bit of value 32 switches the library's traces on.
    virtual int GetTraceMask() = 0;
};

/// The process-wide switch of tracing. The mask starts at 0: nothing is traced. GUI thread only.
class TAGWRIGHT_HOST_EXPORT ErrorHandler : public ITraceMask
{
public:
    /// The one object of the process; always there, also before any QCoreApplication.
    static ErrorHandler &Instance();

    int GetTraceMask() override;

    /// Replaces the mask as a whole.
    static void SetTraceMask(int mask);

private:
    ErrorHandler() = default;

    int m_iMask = 0;
};

/// Writes one message to Qt's logging, category "tagwright", with the calling unit's name and line as its place, so
/// that a message handler of the host sees it. Asks no mask: the caller has done so.
TAGWRIGHT_HOST_EXPORT void _Q_Trace(const QString &message, const QString &sourceFile, unsigned short line);

/// Writes one message made from a format. "%s" takes a `const wchar_t *` (null counts as empty), "%ld" a `long`,
/// "%d" an `int`, "%f4.2" a `double` with two decimals. From the first directive that it doesn't know the format is
/// written as it stands, since nothing tells how much to take from the arguments then.
TAGWRIGHT_HOST_EXPORT void _Q_TraceOld(QString format, ...);

/// The operating system's clock, as the library asks it.
class TAGWRIGHT_HOST_EXPORT IOrvoOS
{
public:
    IOrvoOS() = default;
    virtual ~IOrvoOS();
    Q_DISABLE_COPY(IOrvoOS)

    /// The present time in milliseconds since 1970-01-01T00:00:00 UTC.
    virtual quint64 GetTime() = 0;
};

/// Gives the clock that is in force: the system's, or one that a host or a test has put in its place.
class TAGWRIGHT_HOST_EXPORT OrvoOS : public IOrvoOS
{
public:
    /// The clock that is in force.
    static IOrvoOS &Create();

    /// Puts a clock in the system's place; null puts the system's back. Not owned: it must live until it is replaced.
    static void SetClock(IOrvoOS *clock);

    quint64 GetTime() override;
};

namespace Orvo {

/// One moment, for writing it as text.
class TAGWRIGHT_HOST_EXPORT DateTime
{
public:
    /// `time` as IOrvoOS::GetTime gives it.
    explicit DateTime(const quint64 &time);

    /// The moment in local time, in the format language of QDateTime::toString.
    QString toString(const QString &format) const;

private:
    quint64 m_iTime;
};

} // namespace Orvo

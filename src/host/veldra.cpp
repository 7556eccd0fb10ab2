#include "host/veldra.h"

#include <QDateTime>
#include <QLoggingCategory>

#include <cstdarg>

namespace {

const QLoggingCategory &TraceCategory()
{
    static const QLoggingCategory category("tagwright");
    return category;
}

void WriteTrace(const QString &message, const char *file, int line)
{
    if (TraceCategory().isInfoEnabled()) {
        QMessageLogger(file, line, nullptr, TraceCategory().categoryName()).info("%s", qUtf8Printable(message));
    }
}

// NOLINTBEGIN(clang-analyzer-valist.Uninitialized): the analyzer doesn't follow va_start from the caller to here.
QString FormatTrace(const QString &format, va_list args)
{
    QString text;
    int position = 0;
    while (position < format.size()) {
        const QStringView rest = QStringView(format).mid(position);
        if (!rest.startsWith(QLatin1Char('%'))) {
            text += rest.at(0);
            ++position;
        } else if (rest.startsWith(QLatin1String("%s"))) {
            const wchar_t *value = va_arg(args, const wchar_t *);
            text += value == nullptr ? QString() : QString::fromWCharArray(value);
            position += 2;
        } else if (rest.startsWith(QLatin1String("%ld"))) {
            text += QString::number(va_arg(args, long));
            position += 3;
        } else if (rest.startsWith(QLatin1String("%d"))) {
            text += QString::number(va_arg(args, int));
            position += 2;
        } else if (rest.startsWith(QLatin1String("%f4.2"))) {
            text += QString::number(va_arg(args, double), 'f', 2).rightJustified(4);
            position += 5;
        } else {
            return text + format.mid(position);
        }
    }
    return text;
}
// NOLINTEND(clang-analyzer-valist.Uninitialized)

IOrvoOS *&InstalledClock()
{
    static IOrvoOS *clock = nullptr;
    return clock;
}

} // namespace

ITraceMask::~ITraceMask() = default;

ErrorHandler &ErrorHandler::Instance()
{
    static ErrorHandler handler;
    return handler;
}

int ErrorHandler::GetTraceMask()
{
    return m_iMask;
}

void ErrorHandler::SetTraceMask(int mask)
{
    Instance().m_iMask = mask;
}

void _Q_Trace(const QString &message, const QString &sourceFile, unsigned short line)
{
    WriteTrace(message, sourceFile.toUtf8().constData(), line);
}

void _Q_TraceOld(QString format, ...)
{
    va_list args;
    va_start(args, format);
    const QString message = FormatTrace(format, args);
    va_end(args);
    WriteTrace(message, nullptr, 0);
}

IOrvoOS::~IOrvoOS() = default;

IOrvoOS &OrvoOS::Create()
{
    static OrvoOS systemClock;
    return InstalledClock() == nullptr ? systemClock : *InstalledClock();
}

void OrvoOS::SetClock(IOrvoOS *clock)
{
    InstalledClock() = clock;
}

quint64 OrvoOS::GetTime()
{
    return static_cast<quint64>(QDateTime::currentMSecsSinceEpoch());
}

namespace Orvo {

DateTime::DateTime(const quint64 &time)
    : m_iTime(time)
{
}

QString DateTime::toString(const QString &format) const
{
    return QDateTime::fromMSecsSinceEpoch(static_cast<qint64>(m_iTime)).toString(format);
}

} // namespace Orvo

#pragma once

#include "host/trace.h"

#include <QStringList>

/// Switches tracing on while it lives, and collects the library's messages.
class TraceCapture
{
public:
    TraceCapture()
    {
        Lines().clear();
        ErrorHandler::SetTraceMask(trace::kTraceBit);
        m_pPrevious = qInstallMessageHandler([](QtMsgType, const QMessageLogContext &context, const QString &text) {
            if (qstrcmp(context.category, "tagwright") == 0) {
                Lines() << text;
            }
        });
    }
    ~TraceCapture()
    {
        qInstallMessageHandler(m_pPrevious);
        ErrorHandler::SetTraceMask(0);
    }
    Q_DISABLE_COPY(TraceCapture)

    static QStringList &Lines()
    {
        static QStringList lines;
        return lines;
    }
    static QString Text() { return Lines().join(QLatin1Char('\n')); }

private:
    QtMessageHandler m_pPrevious = nullptr;
};

#pragma once

#include "host/veldra.h"

#include <QStringList>

/// Switches tracing on while it lives, and collects the messages.
class TraceCapture
{
public:
    TraceCapture()
    {
        Lines().clear();
        ErrorHandler::SetTraceMask(32);
        m_pPrevious =
            qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &text) { Lines() << text; });
    }
    ~TraceCapture()
    {
        qInstallMessageHandler(m_pPrevious);
        ErrorHandler::SetTraceMask(0);
    }
    Q_DISABLE_COPY(TraceCapture)

    static QString Text() { return Lines().join(QLatin1Char('\n')); }

private:
    static QStringList &Lines()
    {
        static QStringList lines;
        return lines;
    }

    QtMessageHandler m_pPrevious = nullptr;
};

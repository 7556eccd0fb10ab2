#pragma once

#include "host/veldra.h"

/// All traces of the library. The mask is asked first, and a message is only built when tracing is on.
namespace trace {

constexpr int kTraceBit = 32;

inline bool IsOn()
{
    return (ErrorHandler::Instance().GetTraceMask() & kTraceBit) != 0;
}

/// A copy with characters of its own. Those of a literal lie in the library, and a host may keep a text past its end.
inline QString Owned(const QString &text)
{
    return QString(text.constData(), text.size());
}

/// Traces the text that `buildMessage()` gives, a QString. `unit` is the name of the calling source file without
/// suffix.
template <typename BuildMessage>
void Write(const QString &unit, int line, BuildMessage buildMessage)
{
    if (IsOn()) {
        _Q_Trace(Owned(buildMessage()), Owned(unit), static_cast<unsigned short>(line));
    }
}

/// Tests the callback of a constructor. A null one is traced as "Class: pCallback is NULL!"; the result is false then.
template <typename Callback>
bool CheckCallback(const Callback *callback, const char *className, const QString &unit, int line)
{
    if (callback == nullptr) {
        Write(unit, line, [className] { return QLatin1String(className) + QLatin1String(": pCallback is NULL!"); });
    }
    return callback != nullptr;
}

} // namespace trace

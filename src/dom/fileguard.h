#pragma once

#include "dom/readinglimits.h"

#include <QIODevice>
#include <QString>

namespace dom {

/// Looks at a file before one of Qt's parsers gets it, in one pass without recursion. The result is empty if it is a
/// regular file (or a Qt resource) that can be opened and none of the limits is broken; otherwise a sentence that says
/// which, and where (file, line). A file that is merely faulty passes: Qt's parsers say so themselves.
[[nodiscard]] QString CheckXmlFile(const QString &path, const ReadingLimits &limits = ReadingLimits());

/// The same for what an open device holds; `name` stands for it in the sentence.
[[nodiscard]] QString CheckXml(QIODevice *device, const QString &name, const ReadingLimits &limits = ReadingLimits());

/// True for a regular file or a Qt resource: anything else (a directory, a FIFO, a device) may block or has no content.
[[nodiscard]] bool IsRegularFile(const QString &path);

/// True for a named pipe, which may block whoever opens it.
[[nodiscard]] bool IsFifo(const QString &path);

} // namespace dom

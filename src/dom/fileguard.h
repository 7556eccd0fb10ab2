#pragma once

#include <QString>

namespace dom {

/// Looks at a file before one of Qt's parsers gets it, without recursion. The result is empty if it is a regular file
/// (or a Qt resource) that can be opened, nests at most limits::kMaxFileDepth elements and doesn't grow beyond reason
/// by its entities; otherwise a sentence that says which limit was broken, and where (file, line).
[[nodiscard]] QString CheckXmlFile(const QString &path);

/// True for a regular file or a Qt resource: anything else (a directory, a FIFO, a device) may block or has no content.
[[nodiscard]] bool IsRegularFile(const QString &path);

/// True for a named pipe, which may block whoever opens it.
[[nodiscard]] bool IsFifo(const QString &path);

} // namespace dom

#pragma once

#include <QDomDocument>
#include <QString>

namespace dom {

/// Saves a document as the one form in which the library writes files: UTF-8 without byte order mark, indentation 4,
/// the document's own encoding declaration. An existing file is replaced. The result is empty, or, where the file
/// could not be opened or written whole, a sentence that says why; a torn regular file is removed then.
[[nodiscard]] QString SaveDocument(const QDomDocument &document, const QString &path);

} // namespace dom

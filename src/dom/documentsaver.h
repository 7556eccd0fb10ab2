#pragma once

#include <QDomDocument>
#include <QString>

namespace dom {

/// What became of a file.
struct SaveResult
{
    /// Empty, or a sentence that says why the file could not be opened or written whole.
    QString m_sFailure;
    /// True if the document holds a character that XML 1.0 can't hold; U+FFFD stands in its place in the file.
    bool m_bReplaced = false;
};

/// Saves a document as the one form in which the library writes files: UTF-8 without byte order mark, indentation 4,
/// the document's own encoding declaration, attributes in the order of their names (the root's two schema attributes
/// last). An existing file is replaced; a torn regular file is removed. A document with other nodes than elements,
/// texts, comments and instructions is written by Qt, in Qt's order of attributes and as it stands, or not at all if
/// more than 100 elements lie within each other in it.
[[nodiscard]] SaveResult SaveDocument(const QDomDocument &document, const QString &path);

} // namespace dom

#pragma once

#include "tagwright_export.h"

#include <QString>
#include <QtGlobal>

#include <memory>

class QDomDocument;
class QDomElement;
class QFile;

namespace values {
class Node;
}

/// Writes an XML file element by element, or from a branch of the value tree. It holds a document and a cursor, the
/// current element: attributes go on it, new elements below it, at its end. One file per writer. GUI thread only where
/// the value tree is asked, else one thread.
///
///     XMLWriter writer;
///     writer.CreateXmlFile(path, QStringLiteral("settings"));
///     writer.CreateXmlElement(QStringLiteral("window"), QString(), true);
///     writer.SetXmlAttribute(QStringLiteral("visible"), QStringLiteral("true"));
///     writer.CreateXmlElement(QStringLiteral("title"), QStringLiteral("Level & bearing"), false);
///     writer.GoToXmlParent();
///     writer.SaveXmlFile();
///
/// Texts and values may hold anything: markup characters, line ends and blanks come back as they were, but for a text
/// of blanks alone, which is lost when Qt reads it. What XML can't hold, such as a control character, is written as
/// U+FFFD. Names are not checked: a name with a blank, say, gives a file that nobody can read.
class TAGWRIGHT_EXPORT XMLWriter
{
public:
    /// No file, no document, no cursor.
    XMLWriter();
    /// Saves nothing.
    virtual ~XMLWriter();
    Q_DISABLE_COPY(XMLWriter)

    /// Starts the document, with `rootTag` as its root, on which the cursor then stands, and remembers the file's name;
    /// the disk is not touched. False, and no change, if there is a document already. True also for a `rootTag` that
    /// is no XML name; there is no cursor then, and what is created goes nowhere.
    bool CreateXmlFile(const QString &fileName, const QString &rootTag);

    /// Appends an element to the cursor, with that text unless it is empty. With `goDown` it becomes the cursor. False,
    /// and no change, before CreateXmlFile, and if the cursor's last child is a text: an element that holds text takes
    /// no elements.
    bool CreateXmlElement(const QString &name, const QString &text, bool goDown);

    /// Sets an attribute of the cursor, or replaces it. False if there is no cursor.
    bool SetXmlAttribute(const QString &name, const QString &value);

    /// Moves the cursor to its parent. False at the root and without a cursor.
    bool GoToXmlParent();

    /// Writes the document to the file: UTF-8, indentation 4. An existing file is replaced. The document stays, and may
    /// be written on and saved again. False only before CreateXmlFile: a true is NO proof that the file was written,
    /// since a file that can't be opened or written whole shows in no result.
    bool SaveXmlFile();

    /// Writes a branch of the value tree below the cursor: the node as an element of its name, in it each value as an
    /// element of its name with its text, and each node in it likewise; the order is that of the tree. The cursor ends
    /// where it was, if it could take elements. Values must not be taken out of the tree meanwhile. False, and no
    /// change, for a null `node` and before CreateXmlFile.
    bool CreateElementsFromNode(values::Node *node);

private:
    std::unique_ptr<QFile> m_pFile;
    std::unique_ptr<QDomDocument> m_pDocument;
    std::unique_ptr<QDomElement> m_pCurrentElement;
};

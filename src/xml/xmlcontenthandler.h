#pragma once

#include <QDomDocument>
#include <QString>
#include <QXmlAttributes>
#include <QXmlDefaultHandler>

#include <memory>

class ITagwright;

/// Turns the calls of Qt's SAX parser into events, and keeps a cursor in a document that holds the same XML in step
/// with it. There are two modes:
/// - with a document, each element's begin carries its node and no text;
/// - without one, it carries the first character data behind the start tag as text and no node, and an element that no
///   character data follows before the next start tag is not announced.
///
/// The cursor counts nothing. An element whose first child is no element counts as one without children, a comment
/// between two elements stops the cursor, and so does an element within another of the same name: the events keep
/// their names and attributes then, and carry the node on which the cursor stands.
class XmlContentHandler : public QXmlDefaultHandler
{
public:
    /// Neither is owned. A null `pCallback` is traced, and nobody hears of anything; a null `document` means none.
    XmlContentHandler(ITagwright *pCallback, QDomDocument *document);
    ~XmlContentHandler() override = default;
    Q_DISABLE_COPY(XmlContentHandler)

    bool startDocument() override;
    bool endDocument() override;
    bool startElement(const QString &namespaceURI, const QString &localName, const QString &qName,
                      const QXmlAttributes &atts) override;
    bool endElement(const QString &namespaceURI, const QString &localName, const QString &qName) override;
    bool characters(const QString &ch) override;

    /// The cursor: null until a parse with a document has begun, a lone element "dummy" up to the root, then an element
    /// of the document. The object belongs to the handler and stays up to the next SetDocument.
    QDomElement *GetCurrentElement() { return m_pCurrentElement.get(); }

    /// Follows another document, not owned, from the next parse on, and forgets the cursor. Not during a parse.
    void SetDocument(QDomDocument *document);

private:
    void MoveCursor();

    bool m_bElementOpen = false;
    QXmlAttributes m_Attributes;
    QString m_sElementName;
    ITagwright *m_pCallback;
    bool m_bFirstElementPending = false;
    QDomDocument *m_pDocument;
    std::unique_ptr<QDomNode> m_pCursorNode;
    std::unique_ptr<QDomElement> m_pCurrentElement;
    bool m_bCursorLeftElement = false;
};

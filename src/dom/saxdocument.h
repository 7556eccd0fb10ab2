#pragma once

#include <QDomDocument>
#include <QXmlDefaultHandler>

namespace dom {

/// Fills a document from the events of a SAX reader, with the nodes that Qt 5's own document makes of them. Qt 6 reads
/// its documents by another parser, which refuses other files and knows nothing of our limits. Two things are out of
/// reach for users of Qt's classes: nodes don't know their lines and columns, and a document type keeps its name and
/// identifiers alone.
class SaxDocument : public QXmlDefaultHandler
{
public:
    /// The document is replaced by an empty one. Not owned, and not to be touched by others while it is filled.
    explicit SaxDocument(QDomDocument &document);

    bool endDocument() override;
    bool startElement(const QString &namespaceURI, const QString &localName, const QString &qName,
                      const QXmlAttributes &atts) override;
    bool endElement(const QString &namespaceURI, const QString &localName, const QString &qName) override;
    bool characters(const QString &ch) override;
    bool processingInstruction(const QString &target, const QString &data) override;
    bool skippedEntity(const QString &name) override;
    bool startDTD(const QString &name, const QString &publicId, const QString &systemId) override;
    bool startCDATA() override;
    bool endCDATA() override;
    bool comment(const QString &ch) override;

private:
    bool Append(const QDomNode &node);

    QDomDocument &m_oDocument;
    /// The element that is open, or the document.
    QDomNode m_oParent;
    bool m_bInCData = false;
};

} // namespace dom

#pragma once

#include <QXmlContentHandler>

/// Stands between Qt's parser, which recurses on the stack for each open element, and a handler: hands on every call,
/// and stops the parser at the element that nests too deep. It is the last guard, for what can't be seen beforehand: a
/// file that changes while it is read, markup that a host has hidden in a comment or a name.
class DepthFilter : public QXmlContentHandler
{
public:
    /// `handler` isn't owned.
    explicit DepthFilter(QXmlContentHandler *handler);

    /// True if the parser was stopped.
    bool HasStopped() const { return m_bStopped; }

    void setDocumentLocator(QXmlLocator *locator) override;
    bool startDocument() override;
    bool endDocument() override;
    bool startPrefixMapping(const QString &prefix, const QString &uri) override;
    bool endPrefixMapping(const QString &prefix) override;
    bool startElement(const QString &namespaceURI, const QString &localName, const QString &qName,
                      const QXmlAttributes &atts) override;
    bool endElement(const QString &namespaceURI, const QString &localName, const QString &qName) override;
    bool characters(const QString &ch) override;
    bool ignorableWhitespace(const QString &ch) override;
    bool processingInstruction(const QString &target, const QString &data) override;
    bool skippedEntity(const QString &name) override;
    QString errorString() const override;

private:
    QXmlContentHandler *m_pHandler;
    int m_iDepth = 0;
    bool m_bStopped = false;
};

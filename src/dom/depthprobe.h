#pragma once

#include "dom/namespaceload.h"
#include "dom/readinglimits.h"

#include <QXmlDefaultHandler>

namespace dom {

/// Lets Qt's SAX reader itself tell how deep a file is, and stops it before it goes deeper than allowed.
class DepthProbe : public QXmlDefaultHandler
{
public:
    explicit DepthProbe(const ReadingLimits &limits);

    /// Reads the device; faults in it are no concern. True if no limit was broken.
    bool Run(QIODevice *device);
    const QString &GetReason() const { return m_sReason; }
    /// Where it was broken.
    int GetLine() const { return m_iLine; }

    void setDocumentLocator(QXmlLocator *locator) override;
    bool startElement(const QString &namespaceURI, const QString &localName, const QString &qName,
                      const QXmlAttributes &attributes) override;
    bool endElement(const QString &namespaceURI, const QString &localName, const QString &qName) override;

private:
    bool Refuse(const QString &reason);

    ReadingLimits m_oLimits;
    NamespaceLoad m_oNamespaces;
    QXmlLocator *m_pLocator = nullptr;
    QString m_sReason;
    int m_iDepth = 0;
    int m_iLine = 0;
};

} // namespace dom

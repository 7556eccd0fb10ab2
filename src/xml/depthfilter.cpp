#include "xml/depthfilter.h"

#include "dom/limits.h"

DepthFilter::DepthFilter(QXmlContentHandler *handler)
    : m_pHandler(handler)
{
}

void DepthFilter::setDocumentLocator(QXmlLocator *locator)
{
    m_pHandler->setDocumentLocator(locator);
}

bool DepthFilter::startDocument()
{
    return m_pHandler->startDocument();
}

bool DepthFilter::endDocument()
{
    return m_pHandler->endDocument();
}

bool DepthFilter::startPrefixMapping(const QString &prefix, const QString &uri)
{
    return m_pHandler->startPrefixMapping(prefix, uri);
}

bool DepthFilter::endPrefixMapping(const QString &prefix)
{
    return m_pHandler->endPrefixMapping(prefix);
}

bool DepthFilter::startElement(const QString &namespaceURI, const QString &localName, const QString &qName,
                               const QXmlAttributes &atts)
{
    m_bStopped = m_iDepth == limits::kMaxFileDepth;
    ++m_iDepth;
    return !m_bStopped && m_pHandler->startElement(namespaceURI, localName, qName, atts);
}

bool DepthFilter::endElement(const QString &namespaceURI, const QString &localName, const QString &qName)
{
    --m_iDepth;
    return m_pHandler->endElement(namespaceURI, localName, qName);
}

bool DepthFilter::characters(const QString &ch)
{
    return m_pHandler->characters(ch);
}

bool DepthFilter::ignorableWhitespace(const QString &ch)
{
    return m_pHandler->ignorableWhitespace(ch);
}

bool DepthFilter::processingInstruction(const QString &target, const QString &data)
{
    return m_pHandler->processingInstruction(target, data);
}

bool DepthFilter::skippedEntity(const QString &name)
{
    return m_pHandler->skippedEntity(name);
}

QString DepthFilter::errorString() const
{
    return m_pHandler->errorString();
}

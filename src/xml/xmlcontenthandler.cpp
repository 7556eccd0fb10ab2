#include "xml/xmlcontenthandler.h"

#include "dom/nodewalk.h"
#include "events/eventsender.h"
#include "host/trace.h"
#include "xml/readahead.h"

namespace {

/// True for a node whose name holds no "#", as those of texts, comments and CDATA nodes do. The type is asked first: a
/// name lies in memory of its own, and a large document has many.
bool IsElementLike(const QDomNode &node)
{
    return !node.isNull() && !node.isCharacterData() && !node.nodeName().contains(QLatin1Char('#'));
}

} // namespace

XmlContentHandler::XmlContentHandler(ITagwright *pCallback, QDomDocument *document)
    : m_pCallback(pCallback)
    , m_pDocument(document)
{
    trace::CheckCallback(pCallback, "XmlContentHandler", QStringLiteral("xmlcontenthandler"), __LINE__);
}

bool XmlContentHandler::startDocument()
{
    if (m_pDocument != nullptr) {
        m_bFirstElementPending = true;
        // The end of the parse before has left it set; the second element of this one must go down all the same.
        m_bCursorLeftElement = false;
        m_pCursorNode = std::make_unique<QDomNode>();
        m_pCurrentElement = std::make_unique<QDomElement>(m_pDocument->createElement(QStringLiteral("dummy")));
    }
    SendEvent<DocBeginEvent>(m_pCallback);
    return true;
}

bool XmlContentHandler::endDocument()
{
    m_bFirstElementPending = false;
    SendEvent<DocEndEvent>(m_pCallback);
    return true;
}

bool XmlContentHandler::startElement(const QString & /*namespaceURI*/, const QString & /*localName*/,
                                     const QString &qName, const QXmlAttributes &atts)
{
    m_sElementName = qName;
    m_Attributes = atts;
    m_bElementOpen = true;
    if (m_pCurrentElement == nullptr) {
        return true;
    }
    if (m_bFirstElementPending) {
        m_bFirstElementPending = false;
        *m_pCurrentElement = m_pDocument->documentElement();
    } else {
        MoveCursor();
    }
    SendEvent<ElemBeginEvent>(m_pCallback, *m_pCurrentElement, m_sElementName, m_Attributes, QString());
    return true;
}

bool XmlContentHandler::endElement(const QString & /*namespaceURI*/, const QString & /*localName*/,
                                   const QString &qName)
{
    if (m_pCurrentElement != nullptr && qName != m_sElementName) {
        *m_pCurrentElement = m_pCurrentElement->parentNode().toElement();
        m_bCursorLeftElement = true;
    }
    SendEvent<ElemEndEvent>(m_pCallback, qName);
    return true;
}

bool XmlContentHandler::characters(const QString &ch)
{
    if (m_bElementOpen && m_pDocument == nullptr) {
        SendEvent<ElemBeginEvent>(m_pCallback, QDomNode(), m_sElementName, m_Attributes, ch);
    }
    m_bElementOpen = false;
    return true;
}

void XmlContentHandler::SetDocument(QDomDocument *document)
{
    m_pDocument = document;
    m_pCursorNode.reset();
    m_pCurrentElement.reset();
}

/// One step to the element that the parser has just entered, as far as the neighbours of the cursor tell which it is.
void XmlContentHandler::MoveCursor()
{
    if (!m_bCursorLeftElement && IsElementLike(m_pCurrentElement->firstChild())) {
        *m_pCursorNode = m_pCurrentElement->firstChild();
    } else {
        *m_pCursorNode = dom::NextSibling(*m_pCurrentElement);
        m_bCursorLeftElement = false;
    }
    ReadAhead(*m_pCursorNode);
    if (m_pCursorNode->isElement()) {
        *m_pCurrentElement = m_pCursorNode->toElement();
    }
}

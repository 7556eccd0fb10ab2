#include "dom/saxdocument.h"

#include <QXmlAttributes>

namespace dom {

SaxDocument::SaxDocument(QDomDocument &document)
    : m_oDocument(document)
{
    // A name, even none, makes a document that isn't null.
    document = QDomDocument(QString());
    m_oParent = document;
}

bool SaxDocument::endDocument()
{
    return m_oParent == m_oDocument;
}

bool SaxDocument::startElement(const QString & /*namespaceURI*/, const QString & /*localName*/, const QString &qName,
                               const QXmlAttributes &atts)
{
    QDomElement element = m_oDocument.createElement(qName);
    for (int index = 0; index < atts.count(); ++index) {
        element.setAttribute(atts.qName(index), atts.value(index));
    }
    if (!Append(element)) {
        return false;
    }
    m_oParent = element;
    return true;
}

bool SaxDocument::endElement(const QString & /*namespaceURI*/, const QString & /*localName*/, const QString & /*qName*/)
{
    m_oParent = m_oParent.parentNode();
    return !m_oParent.isNull();
}

bool SaxDocument::characters(const QString &ch)
{
    if (m_oParent == m_oDocument) {
        return false;
    }
    return Append(m_bInCData ? m_oDocument.createCDATASection(ch) : m_oDocument.createTextNode(ch));
}

bool SaxDocument::processingInstruction(const QString &target, const QString &data)
{
    return Append(m_oDocument.createProcessingInstruction(target, data));
}

bool SaxDocument::skippedEntity(const QString &name)
{
    return Append(m_oDocument.createEntityReference(name));
}

bool SaxDocument::startDTD(const QString &name, const QString &publicId, const QString &systemId)
{
    // A document takes its type only when it is made: what came before moves over.
    QDomDocument typed(QDomImplementation().createDocumentType(name, publicId, systemId));
    while (m_oDocument.hasChildNodes()) {
        typed.appendChild(m_oDocument.firstChild());
    }
    m_oDocument = typed;
    m_oParent = typed;
    return true;
}

bool SaxDocument::startCDATA()
{
    m_bInCData = true;
    return true;
}

bool SaxDocument::endCDATA()
{
    m_bInCData = false;
    return true;
}

bool SaxDocument::comment(const QString &ch)
{
    return Append(m_oDocument.createComment(ch));
}

/// False for a node that Qt refuses to make: reading ends there.
bool SaxDocument::Append(const QDomNode &node)
{
    return !m_oParent.appendChild(node).isNull();
}

} // namespace dom

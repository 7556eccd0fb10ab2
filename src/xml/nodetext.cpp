#include "xml/nodetext.h"

#include <QDomDocument>
#include <QDomElement>
#include <QDomNamedNodeMap>
#include <QTextStream>

namespace {

QString SavedText(const QDomNode &node)
{
    QString text;
    QTextStream stream(&text, QIODevice::WriteOnly);
    node.save(stream, 0, QDomNode::EncodingFromDocument);
    stream.flush();
    return text;
}

void CopyAttributes(const QDomNode &from, QDomElement &to, bool withNamespace)
{
    const QDomNamedNodeMap attributes = from.attributes();
    for (int i = 0; i < attributes.count(); ++i) {
        const QDomNode attribute = attributes.item(i);
        const QString uri = attribute.namespaceURI();
        if (withNamespace && !uri.isNull()) {
            to.setAttributeNS(uri, attribute.nodeName(), attribute.nodeValue());
        } else if (!withNamespace && uri.isNull()) {
            to.setAttribute(attribute.nodeName(), attribute.nodeValue());
        }
    }
}

/// "<name attributes/>", made of an element of a living document.
QString EmptyTag(const QDomNode &element)
{
    const QString uri = element.namespaceURI();
    const QString name = element.nodeName();
    QDomDocument document;
    QDomElement copy = uri.isNull() ? document.createElement(name) : document.createElementNS(uri, name);
    // A plain "q" after a "p:q" would change that one.
    CopyAttributes(element, copy, false);
    CopyAttributes(element, copy, true);
    return SavedText(copy).trimmed();
}

QString ElementText(const QDomNode &element)
{
    QString text = EmptyTag(element);
    if (!element.hasChildNodes()) {
        return text;
    }
    text.chop(2);
    text += element.firstChild().isText() ? QStringLiteral(">") : QStringLiteral(">\n");
    for (QDomNode child = element.firstChild(); !child.isNull(); child = child.nextSibling()) {
        text += SavedText(child);
    }
    return text + QLatin1String("</") + element.nodeName() + QLatin1Char('>');
}

} // namespace

QString NodeText(const QDomNode &node)
{
    if (node.isElement()) {
        return ElementText(node);
    }
    return SavedText(node.isDocument() || node.isDocumentFragment() ? node : node.cloneNode(false));
}

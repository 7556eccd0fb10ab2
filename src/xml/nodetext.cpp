#include "xml/nodetext.h"

#include <QDomDocument>
#include <QDomElement>
#include <QDomNamedNodeMap>
#include <QIODevice>
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

/// "<name attributes" of an element, by way of one in a living document.
QString OpenTag(const QDomNode &element)
{
    const QString uri = element.namespaceURI();
    const QString name = element.nodeName();
    QDomDocument document;
    QString tag = SavedText(uri.isNull() ? document.createElement(name) : document.createElementNS(uri, name));
    tag.truncate(tag.lastIndexOf(QLatin1String("/>")));
    const QDomNamedNodeMap attributes = element.attributes();
    for (int i = 0; i < attributes.count(); ++i) {
        tag += QLatin1Char(' ') + SavedText(attributes.item(i));
    }
    return tag;
}

} // namespace

QString NodeText(const QDomNode &node)
{
    if (!node.isElement()) {
        return SavedText(node.isDocument() || node.isDocumentFragment() ? node : node.cloneNode(false));
    }
    if (!node.hasChildNodes()) {
        return OpenTag(node) + QLatin1String("/>");
    }
    QString text = OpenTag(node) + QLatin1String(node.firstChild().isText() ? ">" : ">\n");
    for (QDomNode child = node.firstChild(); !child.isNull(); child = child.nextSibling()) {
        text += SavedText(child);
    }
    return text + QLatin1String("</") + node.nodeName() + QLatin1Char('>');
}

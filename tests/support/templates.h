#pragma once

#include <QDomDocument>
#include <QMap>

/// A template, or any document, as XML without blanks between the tags.
inline QDomDocument ReadTemplate(const QString &xml)
{
    QDomDocument document;
    document.setContent(xml);
    return document;
}

/// A node in one line, with attributes in the order of their names: Qt's own order differs from process to process.
inline QString ToText(const QDomNode &node)
{
    if (!node.isElement() && !node.isDocument()) {
        return node.isProcessingInstruction() ? QString() : node.nodeValue();
    }
    QMap<QString, QString> sorted;
    for (int i = 0; i < node.attributes().length(); ++i) {
        sorted.insert(node.attributes().item(i).nodeName(), node.attributes().item(i).nodeValue());
    }
    QString text;
    for (auto attribute = sorted.constBegin(); attribute != sorted.constEnd(); ++attribute) {
        text += QStringLiteral(" %1='%2'").arg(attribute.key(), attribute.value());
    }
    QString content;
    for (QDomNode child = node.firstChild(); !child.isNull(); child = child.nextSibling()) {
        content += ToText(child);
    }
    if (node.isDocument()) {
        return content;
    }
    return content.isEmpty() ? QStringLiteral("<%1%2/>").arg(node.nodeName(), text)
                             : QStringLiteral("<%1%2>%3</%1>").arg(node.nodeName(), text, content);
}

/// A saved report in one line, without the two schema attributes of its root.
inline QString ReportText(const QByteArray &bytes)
{
    QDomDocument document;
    document.setContent(bytes);
    document.documentElement().removeAttribute(QStringLiteral("xsi:noNamespaceSchemaLocation"));
    document.documentElement().removeAttribute(QStringLiteral("xmlns:xsi"));
    return ToText(document);
}

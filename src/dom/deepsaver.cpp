#include "dom/deepsaver.h"

namespace dom {

namespace {

bool IsText(const QDomNode &node)
{
    return node.isText();
}

bool IsDeclaration(const QDomNode &node)
{
    return node.isProcessingInstruction() && node.nodeName() == QLatin1String("xml");
}

} // namespace

DeepSaver::DeepSaver(QTextStream &stream, int indent)
    : m_oStream(stream)
    , m_iIndent(indent)
{
}

void DeepSaver::Save(const QDomDocument &document)
{
    SaveDeclaration(document);
    QDomNode first = document.firstChild();
    if (IsDeclaration(first)) {
        first = first.nextSibling();
    }
    SaveTopLevel(first, document);
}

/// A document of the declaration alone makes Qt set the codec that the declaration asks for.
void DeepSaver::SaveDeclaration(const QDomDocument &document)
{
    QDomDocument shell;
    if (IsDeclaration(document.firstChild())) {
        shell.appendChild(shell.importNode(document.firstChild(), true));
    }
    shell.save(m_oStream, m_iIndent, QDomNode::EncodingFromDocument);
}

void DeepSaver::SaveTopLevel(const QDomNode &first, const QDomDocument &document)
{
    bool hasDoctype = false;
    for (QDomNode node = first; !node.isNull(); node = node.nextSibling()) {
        if (!hasDoctype && !IsDeclaration(node)) {
            document.doctype().save(m_oStream, m_iIndent);
            hasDoctype = true;
        }
        SaveTree(node);
    }
}

void DeepSaver::SaveTree(const QDomNode &top)
{
    int depth = 0;
    QDomNode node = top;
    while (!node.isNull()) {
        if (node.isElement() && node.hasChildNodes()) {
            BeginElement(node, depth);
            node = node.firstChild();
            ++depth;
            continue;
        }
        SaveLeaf(node, depth);
        while (node != top && node.nextSibling().isNull()) {
            node = node.parentNode();
            --depth;
            EndElement(node, depth);
        }
        node = node == top ? QDomNode() : node.nextSibling();
    }
}

/// Saved with no indentation Qt still ends each line as it does with one. Qt looks at the siblings of all but elements
/// without children, which are saved as a copy.
void DeepSaver::SaveLeaf(const QDomNode &node, int depth)
{
    const bool isElement = node.isElement();
    if ((isElement || node.isComment()) && !IsText(node.previousSibling())) {
        Indent(depth);
    }
    if (!isElement) {
        node.save(m_oStream, 0);
        return;
    }
    m_oStream << StartTag(node);
    if (!IsText(node.nextSibling())) {
        m_oStream << '\n';
    }
}

void DeepSaver::BeginElement(const QDomNode &node, int depth)
{
    if (!IsText(node.previousSibling())) {
        Indent(depth);
    }
    QString tag = StartTag(node);
    tag.chop(2);
    m_oStream << tag << '>';
    if (!IsText(node.firstChild())) {
        m_oStream << '\n';
    }
}

void DeepSaver::EndElement(const QDomNode &node, int depth)
{
    if (!IsText(node.lastChild())) {
        Indent(depth);
    }
    const QString tag = StartTag(node);
    // The name ends at the first blank, or at the "/>" of a tag without attributes.
    const int blank = tag.indexOf(QLatin1Char(' '));
    m_oStream << "</" << tag.midRef(1, (blank < 0 ? tag.size() - 2 : blank) - 1) << '>';
    if (!IsText(node.nextSibling())) {
        m_oStream << '\n';
    }
}

void DeepSaver::Indent(int depth)
{
    m_oStream << QString(depth * m_iIndent, QLatin1Char(' '));
}

/// "<name attributes/>" of the element alone.
QString DeepSaver::StartTag(const QDomNode &node) const
{
    QString tag;
    QTextStream stream(&tag);
    stream.setCodec(m_oStream.codec());
    node.cloneNode(false).save(stream, -1);
    stream.flush();
    return tag;
}

} // namespace dom

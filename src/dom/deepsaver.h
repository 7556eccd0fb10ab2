#pragma once

#include <QDomDocument>
#include <QDomElement>
#include <QDomNode>
#include <QString>
#include <QTextStream>

namespace dom {

/// Writes what QDomDocument::save writes with EncodingFromDocument, without its recursion: for documents so deep that
/// Qt would overflow the stack. Single nodes are still written by Qt, so that nothing of its escaping is repeated here.
class DeepSaver
{
public:
    DeepSaver(QTextStream &stream, int indent);

    void Save(const QDomDocument &document);

private:
    void SaveDeclaration(const QDomDocument &document);
    void SaveTopLevel(const QDomNode &first, const QDomDocument &document);
    void SaveTree(const QDomNode &top);
    void SaveLeaf(const QDomNode &node, int depth);
    void BeginElement(const QDomNode &node, int depth);
    void EndElement(const QDomNode &node, int depth);
    void Indent(int depth);
    QString StartTag(const QDomNode &node) const;

    QTextStream &m_oStream;
    int m_iIndent;
};

} // namespace dom

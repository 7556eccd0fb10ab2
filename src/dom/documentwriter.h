#pragma once

#include <QDomDocument>
#include <QDomElement>
#include <QString>

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace dom {

/// Writes a document of plain elements, attributes, texts and instructions as the very bytes of QDomNode::save with
/// indentation 4 and UTF-8, with two differences, which make the same document the same file in every process and
/// readable for every parser: attributes stand in the order of their names (the root's two schema attributes last), and
/// each character that XML 1.0 can't hold is written as U+FFFD. It doesn't recurse, so any depth can be written.
class DocumentWriter
{
public:
    /// False, and nothing of use in TakeBytes, if the document holds any other kind of node, a namespace, or another
    /// declared encoding than UTF-8. Called once.
    [[nodiscard]] bool Write(const QDomDocument &document);

    /// The file's content, handed over.
    std::string TakeBytes();

    /// True if a character had to be replaced.
    bool HasReplaced() const { return m_bReplaced; }

private:
    enum class Escape { None, Text, Attribute };

    struct Attribute
    {
        int m_iRank = 0;
        QString m_sName;
        QString m_sValue;
    };

    bool WriteTree(const QDomNode &first);
    bool WriteNode(const QDomNode &node, bool nextIsText);
    bool EnterElement(const QDomNode &node, bool childIsText);
    bool OpenElement(const QDomElement &element);
    void CloseElement(const QDomNode &element, bool nextIsText);
    bool WriteAttributes(const QDomElement &element);
    void EndLine(bool nextIsText);

    void Indent();
    void AppendMarkup(std::string_view markup);
    void Append(const QString &text, Escape escape);
    char *AppendCharacter(char *out, const QString &text, int &index, Escape escape);
    char *AppendNonAscii(char *out, const QString &text, int &index);
    char *Reserve(std::size_t length);

    std::string m_sBytes;
    std::size_t m_iUsed = 0;
    bool m_bReplaced = false;
    bool m_bAtRoot = true;
    bool m_bPreviousIsText = false;
    std::vector<QDomNode> m_lOpen;
    std::vector<Attribute> m_lAttributes; // of the element being written
};

} // namespace dom

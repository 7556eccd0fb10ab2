#pragma once

#include <QDomDocument>
#include <QString>

#include <string>
#include <vector>

namespace dom {

/// Writes a document of plain elements, attributes, texts, sections, comments and instructions as the very bytes of
/// QDomNode::save with indentation 4 and UTF-8, with two differences, which make the same document the same file in
/// every process and readable for every parser: attributes stand in the order of their names (the root's two schema
/// attributes last), and each character that XML 1.0 can't hold is written as U+FFFD. Any depth can be written.
class DocumentWriter
{
public:
    /// The blanks for each level.
    static constexpr int kIndent = 4;

    /// False, and nothing of use in TakeBytes, if the document holds any other kind of node, a namespace, or another
    /// declared encoding than UTF-8. Called once.
    [[nodiscard]] bool Write(const QDomDocument &document);

    /// The file's content, handed over.
    std::string TakeBytes() { return std::move(m_sBytes); }

    /// True if a character had to be replaced.
    bool HasReplaced() const { return m_bReplaced; }

private:
    /// What goes before the next node: nothing, as it would become part of a text; an end of line, unless that node is
    /// a text; or none, since the line has ended.
    enum class Next { Text, Line, Any };
    enum class Escape { None, Text, Attribute };

    bool WriteNode(const QDomNode &node);
    bool WriteElement(const QDomNode &element);
    bool WriteAttributes(const QDomNode &element);
    void CloseDownTo(int depth);
    void BeginLine();
    void Put(const char16_t *before, const QString &text, const char16_t *after, Next next = Next::Line);
    void Append(const QString &text, Escape escape);
    const char16_t *Escaped(const QString &text, int at, Escape escape);
    void Flush();

    /// A string of Qt's would not hold more than 1 GB, which the indentation of 12,000 levels comes to.
    std::string m_sBytes;
    /// The end of the content, not yet encoded.
    std::u16string m_sText;
    bool m_bReplaced = false;
    Next m_eNext = Next::Any;
    /// The names of the elements that are open.
    std::vector<QString> m_lOpen;
};

} // namespace dom

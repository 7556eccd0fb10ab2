#include "dom/documentwriter.h"

#include <QDomNamedNodeMap>

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

namespace dom {

namespace {

constexpr std::size_t kIndentation = 4;
/// The longest that one UTF-16 unit becomes: "&quot;".
constexpr std::size_t kLongestUnit = 6;
constexpr std::size_t kFirstSize = 1 << 16;
constexpr ushort kReplacement = 0xFFFD;

/// The root's schema attributes come last, in the order in which the driver sets them.
int SchemaAttributeRank(const QString &name)
{
    if (name == QLatin1String("xsi:noNamespaceSchemaLocation")) {
        return 1;
    }
    return name == QLatin1String("xmlns:xsi") ? 2 : 0;
}

bool IsPlain(const QDomNode &node)
{
    return node.namespaceURI().isNull() && node.prefix().isNull();
}

/// The declaration is an instruction to Qt; another encoding in it would make Qt write in that encoding.
bool DeclaresOtherEncoding(const QDomNode &node)
{
    const QString data = node.nodeValue();
    return node.isProcessingInstruction() && node.nodeName() == QLatin1String("xml")
        && data.contains(QLatin1String("encoding")) && !data.contains(QLatin1String("UTF-8"), Qt::CaseInsensitive);
}

/// Which of the ASCII characters can't simply be copied, in any of the three ways of escaping.
std::array<bool, 128> MakeSpecialTable()
{
    std::array<bool, 128> special {};
    std::fill_n(special.begin(), 0x20, true);
    for (const char character : { '<', '>', '&', '"' }) {
        special.at(static_cast<std::size_t>(character)) = true;
    }
    return special;
}

char *Copy(char *out, std::string_view text)
{
    return std::copy(text.begin(), text.end(), out);
}

char *AppendUtf8(char *out, uint codePoint)
{
    if (codePoint < 0x800) {
        *out++ = static_cast<char>(0xC0 | (codePoint >> 6));
    } else {
        if (codePoint < 0x10000) {
            *out++ = static_cast<char>(0xE0 | (codePoint >> 12));
        } else {
            *out++ = static_cast<char>(0xF0 | (codePoint >> 18));
            *out++ = static_cast<char>(0x80 | ((codePoint >> 12) & 0x3F));
        }
        *out++ = static_cast<char>(0x80 | ((codePoint >> 6) & 0x3F));
    }
    *out++ = static_cast<char>(0x80 | (codePoint & 0x3F));
    return out;
}

} // namespace

bool DocumentWriter::Write(const QDomDocument &document)
{
    const QDomNode first = document.firstChild();
    if (!document.doctype().name().isEmpty() || DeclaresOtherEncoding(first)) {
        return false;
    }
    m_sBytes.resize(kFirstSize);
    return WriteTree(first);
}

std::string DocumentWriter::TakeBytes()
{
    m_sBytes.resize(m_iUsed);
    return std::move(m_sBytes);
}

bool DocumentWriter::WriteTree(const QDomNode &first)
{
    QDomNode node = first;
    while (!node.isNull()) {
        const QDomNode child = node.firstChild();
        QDomNode next = child.isNull() ? node.nextSibling() : child;
        const bool written = child.isNull() ? WriteNode(node, next.isText()) : EnterElement(node, child.isText());
        if (!written) {
            return false;
        }
        while (next.isNull() && !m_lOpen.empty()) {
            const QDomNode element = m_lOpen.back();
            m_lOpen.pop_back();
            next = element.nextSibling();
            CloseElement(element, next.isText());
        }
        node = next;
    }
    return true;
}

/// A node with children: only an element may have them.
bool DocumentWriter::EnterElement(const QDomNode &node, bool childIsText)
{
    if (!node.isElement() || !OpenElement(node.toElement())) {
        return false;
    }
    AppendMarkup(childIsText ? ">" : ">\n");
    m_lOpen.push_back(node);
    m_bPreviousIsText = false;
    return true;
}

/// A node without children.
bool DocumentWriter::WriteNode(const QDomNode &node, bool nextIsText)
{
    switch (node.nodeType()) {
    case QDomNode::TextNode:
        Append(node.nodeValue(), Escape::Text);
        m_bPreviousIsText = true;
        return true;
    case QDomNode::ProcessingInstructionNode:
        AppendMarkup("<?");
        Append(node.nodeName(), Escape::None);
        AppendMarkup(" ");
        Append(node.nodeValue(), Escape::None);
        AppendMarkup("?>\n");
        m_bPreviousIsText = false;
        return true;
    case QDomNode::ElementNode:
        if (!OpenElement(node.toElement())) {
            return false;
        }
        AppendMarkup("/>");
        EndLine(nextIsText);
        return true;
    default:
        return false;
    }
}

bool DocumentWriter::OpenElement(const QDomElement &element)
{
    if (!IsPlain(element)) {
        return false;
    }
    if (!m_bPreviousIsText) {
        Indent();
    }
    AppendMarkup("<");
    Append(element.nodeName(), Escape::None);
    const bool plain = !element.hasAttributes() || WriteAttributes(element);
    m_bAtRoot = false;
    return plain;
}

void DocumentWriter::CloseElement(const QDomNode &element, bool nextIsText)
{
    if (!m_bPreviousIsText) {
        Indent();
    }
    AppendMarkup("</");
    Append(element.nodeName(), Escape::None);
    AppendMarkup(">");
    EndLine(nextIsText);
}

bool DocumentWriter::WriteAttributes(const QDomElement &element)
{
    const QDomNamedNodeMap map = element.attributes();
    m_lAttributes.clear();
    for (int i = 0; i < map.count(); ++i) {
        const QDomNode attribute = map.item(i);
        if (!IsPlain(attribute)) {
            return false;
        }
        const QString name = attribute.nodeName();
        m_lAttributes.push_back({ m_bAtRoot ? SchemaAttributeRank(name) : 0, name, attribute.nodeValue() });
    }
    std::sort(m_lAttributes.begin(), m_lAttributes.end(), [](const Attribute &left, const Attribute &right) {
        return left.m_iRank != right.m_iRank ? left.m_iRank < right.m_iRank : left.m_sName < right.m_sName;
    });
    for (const Attribute &attribute : m_lAttributes) {
        AppendMarkup(" ");
        Append(attribute.m_sName, Escape::None);
        AppendMarkup("=\"");
        Append(attribute.m_sValue, Escape::Attribute);
        AppendMarkup("\"");
    }
    return true;
}

void DocumentWriter::EndLine(bool nextIsText)
{
    if (!nextIsText) {
        AppendMarkup("\n");
    }
    m_bPreviousIsText = false;
}

void DocumentWriter::Indent()
{
    const std::size_t length = kIndentation * m_lOpen.size();
    std::fill_n(Reserve(length), length, ' ');
    m_iUsed += length;
}

void DocumentWriter::AppendMarkup(std::string_view markup)
{
    Copy(Reserve(markup.size()), markup);
    m_iUsed += markup.size();
}

void DocumentWriter::Append(const QString &text, Escape escape)
{
    static const std::array<bool, 128> special = MakeSpecialTable();
    char *const begin = Reserve(kLongestUnit * static_cast<std::size_t>(text.size()));
    char *out = begin;
    for (int i = 0; i < text.size(); ++i) {
        const ushort unit = text.at(i).unicode();
        if (unit < 0x80 && !special[unit]) {
            *out++ = static_cast<char>(unit);
        } else {
            out = AppendCharacter(out, text, i, escape);
        }
    }
    m_iUsed += static_cast<std::size_t>(out - begin);
}

char *DocumentWriter::AppendCharacter(char *out, const QString &text, int &index, Escape escape)
{
    const ushort unit = text.at(index).unicode();
    if (unit >= 0x80) {
        return AppendNonAscii(out, text, index);
    }
    if (unit < 0x20 && unit != '\t' && unit != '\n' && unit != '\r') {
        m_bReplaced = true;
        return AppendUtf8(out, kReplacement);
    }
    const bool attribute = escape == Escape::Attribute;
    if (escape != Escape::None) {
        if (unit == '<') {
            return Copy(out, "&lt;");
        }
        if (unit == '&') {
            return Copy(out, "&amp;");
        }
        if (unit == '>' && index >= 2 && text.midRef(index - 2, 2) == QLatin1String("]]")) {
            return Copy(out, "&gt;");
        }
        if (unit == '\r') {
            return Copy(out, "&#xd;");
        }
        if (attribute && unit == '"') {
            return Copy(out, "&quot;");
        }
        if (attribute && unit < 0x20) {
            return Copy(out, unit == '\n' ? "&#xa;" : "&#x9;");
        }
    }
    *out++ = static_cast<char>(unit);
    return out;
}

char *DocumentWriter::AppendNonAscii(char *out, const QString &text, int &index)
{
    const QChar unit = text.at(index);
    uint codePoint = unit.unicode();
    if (unit.isHighSurrogate() && index + 1 < text.size() && text.at(index + 1).isLowSurrogate()) {
        codePoint = QChar::surrogateToUcs4(unit, text.at(++index));
    } else if (unit.isSurrogate() || codePoint >= 0xFFFE) {
        m_bReplaced = true;
        codePoint = kReplacement;
    }
    return AppendUtf8(out, codePoint);
}

char *DocumentWriter::Reserve(std::size_t length)
{
    if (m_sBytes.size() - m_iUsed < length) {
        m_sBytes.resize(std::max(2 * m_sBytes.size(), m_iUsed + length));
    }
    return m_sBytes.data() + m_iUsed;
}

} // namespace dom

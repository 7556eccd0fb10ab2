#include "dom/documentwriter.h"

#include "dom/nodewalk.h"

#include <QDomNamedNodeMap>

#include <map>
#include <utility>

namespace dom {

namespace {

constexpr std::size_t kPiece = 1 << 15;

/// The root's schema attributes come last, in the order in which the driver sets them.
int SchemaAttributeRank(const QString &name)
{
    const int otherRank = name == QLatin1String("xmlns:xsi") ? 2 : 0;
    return name == QLatin1String("xsi:noNamespaceSchemaLocation") ? 1 : otherRank;
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

/// True for what is the same in each of the three ways of escaping.
bool IsOrdinary(ushort unit)
{
    return unit > '>' ? unit < 0xD800 : unit >= ' ' && unit != '<' && unit != '>' && unit != '&' && unit != '"';
}

bool IsNoXmlCharacter(const QString &text, int at)
{
    const QChar unit = text.at(at);
    if (unit.isHighSurrogate()) {
        return at + 1 == text.size() || !text.at(at + 1).isLowSurrogate();
    }
    if (unit.isLowSurrogate()) {
        return at == 0 || !text.at(at - 1).isHighSurrogate();
    }
    const bool isBlank = unit == QLatin1Char('\t') || unit == QLatin1Char('\n') || unit == QLatin1Char('\r');
    return unit >= QChar(0xFFFE) || (unit < QLatin1Char(' ') && !isBlank);
}

} // namespace

bool DocumentWriter::Write(const QDomDocument &document)
{
    if (!document.doctype().name().isEmpty() || DeclaresOtherEncoding(document.firstChild())) {
        return false;
    }
    m_sText.reserve(2 * kPiece);
    NodeWalk walk(document);
    // A receiver can hang nodes below a text, which Qt takes and never writes.
    for (walk.Next(); !walk.AtEnd(); walk.Next(!walk.Node().isElement())) {
        CloseDownTo(walk.Depth() - 1);
        if (!WriteNode(walk.Node())) {
            return false;
        }
    }
    CloseDownTo(0);
    m_sText += m_eNext == Next::Line ? u"\n" : u"";
    Flush();
    return true;
}

bool DocumentWriter::WriteNode(const QDomNode &node)
{
    switch (node.nodeType()) {
    case QDomNode::ElementNode:
        return WriteElement(node);
    case QDomNode::TextNode:
        Append(node.nodeValue(), Escape::Text);
        m_eNext = Next::Text;
        return true;
    case QDomNode::CDATASectionNode:
        Put(u"<![CDATA[", node.nodeValue(), u"]]>", Next::Text);
        return true;
    case QDomNode::CommentNode:
        BeginLine();
        // A hyphen at its end would make "--->".
        Put(u"<!--", node.nodeValue(), node.nodeValue().endsWith(QLatin1Char('-')) ? u" -->" : u"-->");
        return true;
    case QDomNode::ProcessingInstructionNode:
        m_sText += m_eNext == Next::Line ? u"\n" : u"";
        Put(u"<?", node.nodeName() + QLatin1Char(' ') + node.nodeValue(), u"?>\n", Next::Any);
        return true;
    default:
        return false;
    }
}

bool DocumentWriter::WriteElement(const QDomNode &element)
{
    const QString name = element.nodeName();
    BeginLine();
    m_sText += u'<';
    Append(name, Escape::None);
    if (!IsPlain(element) || (element.hasAttributes() && !WriteAttributes(element))) {
        return false;
    }
    if (element.hasChildNodes()) {
        m_lOpen.push_back(name);
    } else {
        m_sText += u'/';
    }
    m_sText += u'>';
    m_eNext = Next::Line;
    return true;
}

bool DocumentWriter::WriteAttributes(const QDomNode &element)
{
    const QDomNamedNodeMap map = element.attributes();
    std::map<std::pair<int, QString>, QString> sorted;
    for (int i = 0; i < map.count(); ++i) {
        const QDomNode attribute = map.item(i);
        if (!IsPlain(attribute)) {
            return false;
        }
        const QString name = attribute.nodeName();
        sorted[{ m_lOpen.empty() ? SchemaAttributeRank(name) : 0, name }] = attribute.nodeValue();
    }
    for (const auto &[place, value] : sorted) {
        Put(u" ", place.second, u"=\"");
        Append(value, Escape::Attribute);
        m_sText += u'"';
    }
    return true;
}

void DocumentWriter::CloseDownTo(int depth)
{
    while (m_lOpen.size() > static_cast<std::size_t>(depth)) {
        const QString name = std::move(m_lOpen.back());
        m_lOpen.pop_back();
        BeginLine();
        Put(u"</", name, u">");
    }
}

void DocumentWriter::BeginLine()
{
    if (m_sText.size() > kPiece) {
        Flush();
    }
    if (m_eNext == Next::Line) {
        m_sText += u'\n';
    }
    m_sText.append(m_eNext == Next::Text ? 0 : m_lOpen.size() * kIndent, u' ');
}

void DocumentWriter::Put(const char16_t *before, const QString &text, const char16_t *after, Next next)
{
    m_sText += before;
    Append(text, Escape::None);
    m_sText += after;
    m_eNext = next;
}

void DocumentWriter::Append(const QString &text, Escape escape)
{
    const auto *const units = reinterpret_cast<const char16_t *>(text.constData());
    int done = 0;
    for (int at = 0; at < text.size(); ++at) {
        const char16_t *escaped = IsOrdinary(units[at]) ? nullptr : Escaped(text, at, escape);
        if (escaped != nullptr) {
            m_sText.append(units + done, at - done).append(escaped);
            done = at + 1;
        }
    }
    m_sText.append(units + done, text.size() - done);
}

void DocumentWriter::Flush()
{
    m_sBytes += QStringView(m_sText).toUtf8().toStdString();
    m_sText.clear();
}

/// Null where the character stays.
const char16_t *DocumentWriter::Escaped(const QString &text, int at, Escape escape)
{
    if (IsNoXmlCharacter(text, at)) {
        m_bReplaced = true;
        return u"\uFFFD";
    }
    const bool isAttribute = escape == Escape::Attribute;
    switch (escape == Escape::None ? 0 : text.at(at).unicode()) {
    case '<':
        return u"&lt;";
    case '&':
        return u"&amp;";
    case '>':
        return QStringView(text).left(at).endsWith(QLatin1String("]]")) ? u"&gt;" : nullptr;
    case '\r':
        return u"&#xd;";
    case '"':
        return isAttribute ? u"&quot;" : nullptr;
    case '\n':
        return isAttribute ? u"&#xa;" : nullptr;
    case '\t':
        return isAttribute ? u"&#x9;" : nullptr;
    default:
        return nullptr;
    }
}

} // namespace dom

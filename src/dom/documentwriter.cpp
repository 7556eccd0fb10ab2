#include "dom/documentwriter.h"

#include "dom/nodewalk.h"

#include <QDomNamedNodeMap>

#include <algorithm>

namespace dom {

namespace {

constexpr int kIndentation = 4;
constexpr int kPiece = 1 << 15;

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
    m_sText += QLatin1String(m_eNext == Next::Line ? "\n" : "");
    Flush();
    return true;
}

void DocumentWriter::Flush()
{
    const QByteArray bytes = m_sText.toUtf8();
    m_sBytes.append(bytes.constData(), static_cast<std::size_t>(bytes.size()));
    m_sText.resize(0);
}

bool DocumentWriter::WriteNode(const QDomNode &node)
{
    switch (node.nodeType()) {
    case QDomNode::ElementNode:
        return OpenElement(node.toElement());
    case QDomNode::TextNode:
        Append(node.nodeValue(), Escape::Text);
        End("", Next::Text);
        return true;
    case QDomNode::CDATASectionNode:
        m_sText += QLatin1String("<![CDATA[");
        Append(node.nodeValue(), Escape::None);
        End("]]>", Next::Text);
        return true;
    case QDomNode::CommentNode:
        BeginLine();
        m_sText += QLatin1String("<!--");
        Append(node.nodeValue(), Escape::None);
        // A hyphen at its end would make "--->".
        End(node.nodeValue().endsWith(QLatin1Char('-')) ? " -->" : "-->", Next::Line);
        return true;
    case QDomNode::ProcessingInstructionNode:
        m_sText += QLatin1String(m_eNext == Next::Line ? "\n<?" : "<?");
        Append(node.nodeName() + QLatin1Char(' ') + node.nodeValue(), Escape::None);
        End("?>\n", Next::Any);
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
    BeginLine();
    m_sText += QLatin1Char('<');
    const QString name = element.nodeName();
    Append(name, Escape::None);
    if (element.hasAttributes() && !WriteAttributes(element)) {
        return false;
    }
    if (element.hasChildNodes()) {
        m_lOpen.push_back(name);
    }
    End(element.hasChildNodes() ? ">" : "/>", Next::Line);
    return true;
}

void DocumentWriter::CloseDownTo(int depth)
{
    while (m_lOpen.size() > static_cast<std::size_t>(depth)) {
        const QString name = m_lOpen.back();
        m_lOpen.pop_back();
        BeginLine();
        m_sText += QLatin1String("</");
        Append(name, Escape::None);
        End(">", Next::Line);
    }
}

bool DocumentWriter::WriteAttributes(const QDomElement &element)
{
    const bool isRoot = m_lOpen.empty();
    const QDomNamedNodeMap map = element.attributes();
    m_lAttributes.clear();
    for (int i = 0; i < map.count(); ++i) {
        const QDomNode attribute = map.item(i);
        if (!IsPlain(attribute)) {
            return false;
        }
        const QString name = attribute.nodeName();
        m_lAttributes.emplace_back(isRoot ? SchemaAttributeRank(name) : 0, name, attribute.nodeValue());
    }
    std::sort(m_lAttributes.begin(), m_lAttributes.end());
    for (const auto &[rank, name, value] : m_lAttributes) {
        m_sText += QLatin1Char(' ');
        Append(name, Escape::None);
        m_sText += QLatin1String("=\"");
        Append(value, Escape::Attribute);
        m_sText += QLatin1Char('"');
    }
    return true;
}

void DocumentWriter::BeginLine()
{
    if (m_sText.size() > kPiece) {
        Flush();
    }
    if (m_eNext == Next::Line) {
        m_sText += QLatin1Char('\n');
    }
    if (m_eNext != Next::Text) {
        m_sText.resize(m_sText.size() + kIndentation * static_cast<int>(m_lOpen.size()), QLatin1Char(' '));
    }
}

void DocumentWriter::End(const char *mark, Next next)
{
    m_sText += QLatin1String(mark);
    m_eNext = next;
}

void DocumentWriter::Append(const QString &text, Escape escape)
{
    const QChar *const begin = text.constData();
    int done = 0;
    for (int at = 0; at < text.size(); ++at) {
        if (IsOrdinary(begin[at].unicode())) {
            continue;
        }
        const QString escaped = Escaped(text, at, escape);
        if (!escaped.isEmpty()) {
            m_sText.append(begin + done, at - done);
            m_sText += escaped;
            done = at + 1;
        }
    }
    m_sText.append(begin + done, text.size() - done);
}

/// Empty where the character stays.
QString DocumentWriter::Escaped(const QString &text, int at, Escape escape)
{
    if (IsNoXmlCharacter(text, at)) {
        m_bReplaced = true;
        return QString(QChar(QChar::ReplacementCharacter));
    }
    const bool isAttribute = escape == Escape::Attribute;
    switch (escape == Escape::None ? 0 : text.at(at).unicode()) {
    case '<':
        return QStringLiteral("&lt;");
    case '&':
        return QStringLiteral("&amp;");
    case '>':
        return at >= 2 && QStringView(text).mid(at - 2, 2) == QLatin1String("]]") ? QStringLiteral("&gt;") : QString();
    case '\r':
        return QStringLiteral("&#xd;");
    case '"':
        return isAttribute ? QStringLiteral("&quot;") : QString();
    case '\n':
        return isAttribute ? QStringLiteral("&#xa;") : QString();
    case '\t':
        return isAttribute ? QStringLiteral("&#x9;") : QString();
    default:
        return QString();
    }
}

} // namespace dom

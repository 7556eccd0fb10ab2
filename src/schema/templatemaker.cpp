#include "schema/templatemaker.h"

#include "dom/limits.h"

namespace {

constexpr QLatin1String kPlaceholderName("dummy", 5);
// Elements that a schema declares are made without a namespace.
constexpr QLatin1String kPlaceholderMark("placeholder", 11);

// The number of elements around the node, itself included.
int LevelOf(const QDomNode &node)
{
    int level = 0;
    for (QDomNode current = node; current.isElement(); current = current.parentNode()) {
        ++level;
    }
    return level;
}

// Of a schema attribute's facets only bounds and enumerations can be checked, so only these travel.
bool IsChecked(const QString &facet)
{
    return facet.contains(QLatin1String("enumeration")) || facet.contains(QLatin1String("clusive"));
}

} // namespace

// Qt finds an attribute by its index only by counting up to it: many are listed by removing the first of a copy, over
// and over.
TemplateMaker::AttributeList TemplateMaker::ListAttributes(const QDomNode &node)
{
    constexpr int kMany = 50;
    const bool areMany = node.attributes().count() > kMany;
    const QDomNode holder = areMany ? node.cloneNode(false) : node;
    QDomNamedNodeMap map = holder.attributes();
    AttributeList list(static_cast<std::size_t>(map.count()));
    int index = 0;
    for (auto &[name, value] : list) {
        const QDomNode attribute = map.item(index);
        name = attribute.nodeName();
        value = attribute.nodeValue();
        if (areMany) {
            map.removeNamedItem(name);
        } else {
            ++index;
        }
    }
    return list;
}

QDomElement TemplateMaker::NewPlaceholder(QDomDocument &document)
{
    return document.createElementNS(kPlaceholderMark, kPlaceholderName);
}

bool TemplateMaker::IsPlaceholder(const QDomNode &node)
{
    return !node.namespaceURI().isNull();
}

bool TemplateMaker::HasCarrier(const QDomDocumentFragment &source)
{
    return source.firstChild().nodeName() == kPlaceholderName;
}

bool TemplateMaker::HasContent(const QDomDocumentFragment &source)
{
    return !HasCarrier(source) || IsPlaceholder(source.firstChild());
}

void TemplateMaker::Append(QDomNode parent, const QDomElement &element)
{
    if (Count(LevelOf(parent) + 1, 0)) {
        parent.appendChild(element);
    }
}

void TemplateMaker::SetAttribute(QDomElement target, const QString &name, const QString &value)
{
    if (IsExceeded() || target.isNull()) {
        return;
    }
    if (target.attributes().count() >= limits::kMaxElementAttributes && !target.hasAttribute(name)) {
        Refuse(QStringLiteral("an element holds at most %1 attributes").arg(limits::kMaxElementAttributes));
    } else if (m_iAttributes >= limits::kMaxRunAttributes) {
        Refuse(QStringLiteral("all declarations hold at most %1 attributes").arg(limits::kMaxRunAttributes));
    } else {
        ++m_iAttributes;
        target.setAttribute(name, value);
    }
}

void TemplateMaker::CopyAttributes(const QDomDocumentFragment &source, const QDomElement &target, Existing existing)
{
    for (const auto &[name, value] : ListAttributes(source.firstChild())) {
        if (existing == Existing::Replace || !target.hasAttribute(name)) {
            SetAttribute(target, name, value);
        }
    }
}

void TemplateMaker::SetSchemaAttribute(const QDomDocumentFragment &source, const QDomElement &target)
{
    const QDomElement carrier = source.firstChild().toElement();
    if (carrier.isNull()) {
        return;
    }
    const QString name = carrier.tagName();
    SetAttribute(target, name, carrier.attribute(QStringLiteral("type")));
    for (const auto &[facet, value] : ListAttributes(carrier)) {
        if (IsChecked(facet)) {
            SetAttribute(target, facet + name, value);
        }
    }
}

QDomDocumentFragment TemplateMaker::CloneContent(const QDomDocumentFragment &source, const QDomNode &parent)
{
    const int level = LevelOf(parent) + 1;
    QDomDocumentFragment clone = source.cloneNode(false).toDocumentFragment();
    for (QDomNode node = source.firstChild(); !node.isNull() && !IsExceeded(); node = node.nextSibling()) {
        if (!IsPlaceholder(node)) {
            CloneBelow(clone, node, level);
        } else if (!node.previousSibling().isNull()) {
            // Passing over thousands of placeholders takes time as well. A first one is free: simple types consist of
            // nothing else.
            Count(level, 0);
        }
    }
    return clone;
}

bool TemplateMaker::IsExceeded() const
{
    return !m_sReason.isEmpty();
}

QString TemplateMaker::GetReason() const
{
    return m_sReason;
}

// Counts one element that is about to be made on this level with so many attributes.
bool TemplateMaker::Count(int level, int attributes)
{
    if (IsExceeded()) {
        return false;
    }
    if (level > limits::kMaxTemplateDepth) {
        Refuse(QStringLiteral("a template nests at most %1 elements").arg(limits::kMaxTemplateDepth));
    } else if (m_iElements >= limits::kMaxRunElements) {
        Refuse(QStringLiteral("all declarations hold at most %1 elements").arg(limits::kMaxRunElements));
    } else if (m_iAttributes > limits::kMaxRunAttributes - attributes) {
        Refuse(QStringLiteral("all declarations hold at most %1 attributes").arg(limits::kMaxRunAttributes));
    } else {
        ++m_iElements;
        m_iAttributes += attributes;
    }
    return !IsExceeded();
}

// The recursion ends at the greatest depth of a template.
void TemplateMaker::CloneBelow(QDomNode parent, const QDomNode &node, int level)
{
    if (!Count(level, node.attributes().count())) {
        return;
    }
    const QDomNode clone = parent.appendChild(node.cloneNode(false));
    for (QDomNode child = node.firstChild(); !child.isNull() && !IsExceeded(); child = child.nextSibling()) {
        CloneBelow(clone, child, level + 1);
    }
}

void TemplateMaker::Refuse(const QString &reason)
{
    m_sReason = reason;
}

#include "schema/templatemaker.h"

#include "dom/attributelist.h"
#include "dom/limits.h"
#include "schema/declarations.h"

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

// Marks are no attributes of the template.
int CountOf(const QDomNode &node)
{
    return node.attributes().count() - Declarations::CountMarks(node);
}

} // namespace

QDomElement TemplateMaker::NewPlaceholder(QDomDocument &document)
{
    return document.createElementNS(kPlaceholderMark, kPlaceholderName);
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
    // An element's attributes, and the marks among them, are counted only where that may matter.
    if (m_iAttributes >= limits::kMaxElementAttributes && target.attributes().count() >= limits::kMaxElementAttributes
        && CountOf(target) >= limits::kMaxElementAttributes && !target.hasAttribute(name)) {
        m_sReason = QStringLiteral("an element holds at most %1 attributes").arg(limits::kMaxElementAttributes);
    } else if (CountAttributes(1)) {
        target.setAttribute(name, value);
    }
}

void TemplateMaker::CopyAttributes(const QDomDocumentFragment &source, const QDomElement &target, Existing existing)
{
    const QDomNode carrier = source.firstChild();
    for (const auto &[name, value] : dom::ListAttributes(carrier)) {
        if (existing == Existing::Keep && target.hasAttribute(name)) {
            continue;
        }
        if (!Declarations::IsMark(name)) {
            SetAttribute(target, name, value);
        } else if (IsPlaceholder(carrier)) {
            Declarations::SetMark(target, name, value); // an element's own marks say nothing of the target
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
    for (const auto &[facet, value] : dom::ListAttributes(carrier)) {
        // Other facets than bounds and enumerations can't be checked.
        if (facet.contains(QLatin1String("enumeration")) || facet.contains(QLatin1String("clusive"))) {
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

// Counts one element that is about to be made on this level with so many attributes.
bool TemplateMaker::Count(int level, int attributes)
{
    if (IsExceeded()) {
        return false;
    }
    if (level > limits::kMaxTemplateDepth) {
        m_sReason = QStringLiteral("a template nests at most %1 elements").arg(limits::kMaxTemplateDepth);
    } else if (m_iElements >= limits::kMaxRunElements) {
        m_sReason = QStringLiteral("all declarations hold at most %1 elements").arg(limits::kMaxRunElements);
    } else if (CountAttributes(attributes)) {
        ++m_iElements;
    }
    return !IsExceeded();
}

bool TemplateMaker::CountAttributes(int attributes)
{
    if (m_iAttributes > limits::kMaxRunAttributes - attributes) {
        m_sReason = QStringLiteral("all declarations hold at most %1 attributes").arg(limits::kMaxRunAttributes);
        return false;
    }
    m_iAttributes += attributes;
    return true;
}

// The recursion ends at the greatest depth of a template.
void TemplateMaker::CloneBelow(QDomNode parent, const QDomNode &node, int level)
{
    if (!Count(level, CountOf(node))) {
        return;
    }
    const QDomNode clone = parent.appendChild(node.cloneNode(false));
    for (QDomNode child = node.firstChild(); !child.isNull() && !IsExceeded(); child = child.nextSibling()) {
        CloneBelow(clone, child, level + 1);
    }
}

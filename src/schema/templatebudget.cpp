#include "schema/templatebudget.h"

#include "dom/limits.h"
#include "schema/templatecontent.h"

#include <QDomDocumentFragment>

#include <algorithm>

namespace {

// The node behind this one in document order, and the level that it lies on.
QDomNode NextNode(const QDomNode &node, int &level)
{
    if (node.hasChildNodes()) {
        ++level;
        return node.firstChild();
    }
    QDomNode current = node;
    while (level > 0 && current.nextSibling().isNull()) {
        current = current.parentNode();
        --level;
    }
    return level > 0 ? current.nextSibling() : QDomNode();
}

Extent Measure(const QDomDocumentFragment &fragment)
{
    Extent extent;
    int level = 0;
    for (QDomNode node = NextNode(fragment, level); !node.isNull(); node = NextNode(node, level)) {
        const bool isCarrier = level == 1 && node.previousSibling().isNull() && content::IsPlaceholder(node);
        extent.m_iElements += isCarrier ? 0 : 1;
        extent.m_iAttributes += node.attributes().count();
        extent.m_iHeight = std::max(extent.m_iHeight, level);
    }
    return extent;
}

} // namespace

bool TemplateBudget::Allows(const QDomDocumentFragment *fragment, const Extent &piece, qint64 count, int level)
{
    if (IsExceeded()) {
        return false;
    }
    if (level - 1 + piece.m_iHeight > limits::kMaxTemplateDepth) {
        return Refuse(QStringLiteral("a template nests at most %1 elements").arg(limits::kMaxTemplateDepth));
    }
    const qint64 held = fragment == nullptr ? 0 : Of(fragment).m_iElements;
    if (held + piece.m_iElements * count > limits::kMaxTemplateElements) {
        return Refuse(QStringLiteral("a template holds at most %1 elements").arg(limits::kMaxTemplateElements));
    }
    if (m_oTotal.m_iElements + piece.m_iElements * count > limits::kMaxRunElements) {
        return Refuse(QStringLiteral("all declarations hold at most %1 elements").arg(limits::kMaxRunElements));
    }
    if (m_oTotal.m_iAttributes + piece.m_iAttributes * count > limits::kMaxRunAttributes) {
        return Refuse(QStringLiteral("all declarations hold at most %1 attributes").arg(limits::kMaxRunAttributes));
    }
    return true;
}

bool TemplateBudget::Take(const QDomDocumentFragment *fragment, const Extent &piece, int level)
{
    // Measured by Allows at the latest, so that what follows doesn't count twice.
    if (!Allows(fragment, piece, 1, level)) {
        return false;
    }
    m_oTotal.m_iElements += piece.m_iElements;
    m_oTotal.m_iAttributes += piece.m_iAttributes;
    if (fragment != nullptr) {
        // A copy: the piece may be the very extent that grows here.
        const Extent added = piece;
        Extent &extent = m_hExtents[fragment];
        extent.m_iElements += added.m_iElements;
        extent.m_iAttributes += added.m_iAttributes;
        extent.m_iHeight = std::max(extent.m_iHeight, level - 1 + added.m_iHeight);
    }
    return true;
}

bool TemplateBudget::TakeAttributes(const QDomDocumentFragment *fragment, const QDomElement &element, qint64 count)
{
    if (!Allows(fragment, { 0, count, 0 }, 1, 1)) {
        return false;
    }
    if (element.attributes().count() + count > limits::kMaxElementAttributes) {
        return Refuse(QStringLiteral("an element holds at most %1 attributes").arg(limits::kMaxElementAttributes));
    }
    return Take(fragment, { 0, count, 0 }, 1);
}

void TemplateBudget::GiveBackElement(const QDomDocumentFragment *fragment)
{
    const auto entry = m_hExtents.find(fragment);
    if (entry != m_hExtents.end() && entry->second.m_iElements > 0) {
        --entry->second.m_iElements;
        --m_oTotal.m_iElements;
    }
}

bool TemplateBudget::TakeListing(qint64 attributes)
{
    if (IsExceeded()) {
        return false;
    }
    m_iListingSteps += attributes * attributes / 2;
    return m_iListingSteps <= limits::kMaxListingSteps
        || Refuse(
               QStringLiteral("the attributes of types are listed in at most %1 steps").arg(limits::kMaxListingSteps));
}

const Extent &TemplateBudget::Of(const QDomDocumentFragment *fragment)
{
    const auto [entry, isNew] = m_hExtents.try_emplace(fragment);
    if (isNew && fragment != nullptr) {
        entry->second = Measure(*fragment);
    }
    return entry->second;
}

bool TemplateBudget::IsExceeded() const
{
    return !m_sReason.isEmpty();
}

QString TemplateBudget::GetReason() const
{
    return m_sReason;
}

bool TemplateBudget::Refuse(const QString &reason)
{
    m_sReason = reason;
    return false;
}

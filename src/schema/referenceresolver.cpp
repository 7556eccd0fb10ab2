#include "schema/referenceresolver.h"

#include "host/trace.h"
#include "schema/schemarun.h"
#include "schema/schematags.h"

#include <algorithm>

using schematags::UnitName;

namespace {

bool HasWaiting(const std::map<int, std::list<MissingElement>> &counts)
{
    return std::any_of(counts.begin(), counts.end(), [](const auto &count) {
        return std::any_of(count.second.begin(), count.second.end(),
                           [](const MissingElement &record) { return !record.m_bApplied; });
    });
}

} // namespace

ReferenceResolver::ReferenceResolver(MissingMap &missing, TypeMap &types, SchemaRun &run)
    : m_MissingMap(missing)
    , m_TypeMap(types)
    , m_oRun(run)
{
}

// Takes away the waiting records of declarations that another file has replaced.
void ReferenceResolver::DropReplaced()
{
    for (auto name = m_MissingMap.begin(); name != m_MissingMap.end() && !m_oRun.m_lReplaced.empty();) {
        DropReplacedOf(name->second);
        name = name->second.empty() ? m_MissingMap.erase(name) : std::next(name);
    }
    m_oRun.m_lReplaced.clear();
}

void ReferenceResolver::DropReplacedOf(MissingMap::mapped_type &counts)
{
    for (auto count = counts.begin(); count != counts.end();) {
        count->second.remove_if([this](const MissingElement &record) { return IsReplaced(record); });
        count = count->second.empty() ? counts.erase(count) : std::next(count);
    }
}

bool ReferenceResolver::IsReplaced(const MissingElement &record) const
{
    if (record.m_bApplied || record.m_pParent == nullptr || m_oRun.m_lReplaced.count(record.m_sOwner) == 0) {
        return false;
    }
    const auto owner = m_TypeMap.find(record.m_sOwner);
    return owner != m_TypeMap.end() && record.m_pParent->ownerDocument() != owner->second.m_pFragment->ownerDocument();
}

bool ReferenceResolver::Resolve(bool reopen)
{
    // 1. Sweep until no declaration becomes complete any more.
    DropReplaced();
    CollectComplete(reopen);
    RunSweeps();
    if (m_oRun.m_oMaker.IsExceeded()) {
        return false;
    }
    if (!m_sUndeclared.isEmpty()) {
        TraceUndeclared();
        return false;
    }
    // 2. Take up declarations of an earlier pass again, if records have been filed for them since.
    QStringList open = OpenNames();
    while (!open.isEmpty() && !m_oRun.m_oMaker.IsExceeded() && ReopenWaiting()) {
        RunSweeps();
        open = OpenNames();
    }
    // 3. Declarations that are still open wait for each other.
    if (!open.isEmpty()) {
        trace::Write(UnitName(), __LINE__, [&open] {
            return QLatin1String("Missing Elements refer to each other! XmlSchemaHandler terminates... ")
                + open.join(QLatin1String(", "));
        });
    }
    return open.isEmpty() && !m_oRun.m_oMaker.IsExceeded();
}

// Null for a name that is declared nowhere, and for the empty one, which nothing can declare.
TypeEntry *ReferenceResolver::DeclarationOf(const QString &name) const
{
    const auto entry = m_TypeMap.find(name);
    return name.isEmpty() || entry == m_TypeMap.end() ? nullptr : &entry->second;
}

void ReferenceResolver::CollectComplete(bool reopen)
{
    for (const auto &[name, counts] : m_MissingMap) {
        TypeEntry *entry = DeclarationOf(name);
        if (entry == nullptr) {
            m_sUndeclared = m_sUndeclared.isEmpty() ? name : m_sUndeclared;
            continue;
        }
        if (reopen && entry->m_iOpenRefs == -1) {
            entry->m_iOpenRefs = 0;
        }
        if (entry->m_iOpenRefs == 0 && m_sUndeclared.isEmpty()) {
            m_lComplete.insert(m_lComplete.end(), name);
        }
    }
}

void ReferenceResolver::RunSweeps()
{
    // A declaration that becomes complete is taken in the same sweep if its name is still ahead, else in the next one.
    // The sweep that meets a name without declaration is the last.
    auto next = m_lComplete.begin();
    while (next != m_lComplete.end() && !m_oRun.m_oMaker.IsExceeded()) {
        const QString name = *next;
        m_lComplete.erase(next);
        Process(name);
        next = m_lComplete.upper_bound(name);
        if (next == m_lComplete.end() && m_sUndeclared.isEmpty()) {
            next = m_lComplete.begin();
        }
    }
}

bool ReferenceResolver::ReopenWaiting()
{
    for (const auto &[name, counts] : m_MissingMap) {
        TypeEntry *entry = DeclarationOf(name);
        if (entry != nullptr && entry->m_iOpenRefs == -1 && HasWaiting(counts)) {
            entry->m_iOpenRefs = 0;
            m_lComplete.insert(name);
        }
    }
    return !m_lComplete.empty();
}

void ReferenceResolver::Process(const QString &name)
{
    TypeEntry &entry = m_TypeMap[name];
    entry.m_iOpenRefs = -1;
    m_pSource = entry.m_pFragment;
    for (auto &[count, records] : m_MissingMap[name]) {
        for (MissingElement &record : records) {
            ApplyOnce(record, count, entry);
        }
    }
    if (m_oRun.m_oMaker.IsExceeded()) {
        m_oRun.TraceLimit(QStringLiteral("\"%1\" in %2").arg(name, m_oRun.m_oFiles.GetCurrent()));
    }
}

void ReferenceResolver::ApplyOnce(MissingElement &record, int count, TypeEntry &entry)
{
    // A count below 0 asks for no application at all.
    if (!record.m_bApplied && count >= 0) {
        entry.m_bUsed = true;
        Apply(record, std::max(count, 1));
    }
    record.m_bApplied = true;
}

void ReferenceResolver::Apply(const MissingElement &record, int times)
{
    const bool hasParent = record.m_pParent != nullptr && m_pSource != nullptr;
    const bool isPlace = hasParent && !record.m_bAttribute && TemplateMaker::IsPlaceholder(*record.m_pParent);
    if (hasParent && record.m_bBase) {
        m_oRun.m_oMaker.CopyAttributes(*m_pSource, *record.m_pParent, TemplateMaker::Existing::Keep);
    } else if (hasParent && record.m_bAttribute) {
        m_oRun.m_oMaker.SetSchemaAttribute(*m_pSource, *record.m_pParent);
        m_oRun.m_pDeclarations->MarkReference(*m_pSource, *record.m_pParent, record.m_iNote);
    } else if (isPlace) {
        InsertContent(record, times);
        record.m_pParent->parentNode().removeChild(*record.m_pParent);
    } else if (hasParent) {
        ApplyContent(record, times);
    }
    // A record of a named type has raised the open references by one, whatever its count, and lowers them by one. In a
    // global declaration each application lowers.
    Lower(record.m_sOwner, isPlace ? 1 : times);
}

void ReferenceResolver::ApplyContent(const MissingElement &record, int times)
{
    if (TemplateMaker::HasCarrier(*m_pSource)) {
        m_oRun.m_oMaker.CopyAttributes(*m_pSource, *record.m_pParent, TemplateMaker::Existing::Replace);
    }
    if (TemplateMaker::HasContent(*m_pSource)) {
        InsertContent(record, times);
    }
}

void ReferenceResolver::InsertContent(const MissingElement &record, int times)
{
    QDomElement &parent = *record.m_pParent;
    const bool isPlace = TemplateMaker::IsPlaceholder(parent);
    for (int copy = 0; copy < times; ++copy) {
        const QDomNode target = isPlace ? parent.parentNode() : parent;
        const QDomDocumentFragment clone = m_oRun.m_oMaker.CloneContent(*m_pSource, target);
        if (!clone.hasChildNodes()) {
            // An empty declaration never reaches a limit: don't loop over its copies.
            return;
        }
        Declarations::MarkParticle(clone.firstChildElement(), record.m_iNote);
        if (isPlace) {
            parent.parentNode().insertBefore(clone, parent);
        } else if (record.m_pAfter != nullptr) {
            parent.insertAfter(clone, *record.m_pAfter);
        } else {
            parent.appendChild(clone);
        }
    }
}

void ReferenceResolver::Lower(const QString &owner, int times)
{
    const auto entry = m_TypeMap.find(owner);
    if (entry == m_TypeMap.end() || entry->second.m_iOpenRefs <= 0) {
        return;
    }
    entry->second.m_iOpenRefs = std::max(0, entry->second.m_iOpenRefs - times);
    // A sweep doesn't come to a name behind one without declaration.
    const bool isSwept = DeclarationOf(owner) != nullptr && (m_sUndeclared.isEmpty() || owner < m_sUndeclared);
    if (entry->second.m_iOpenRefs == 0 && isSwept && m_MissingMap.count(owner) > 0) {
        m_lComplete.insert(owner);
    }
}

QStringList ReferenceResolver::OpenNames() const
{
    QStringList names;
    for (const auto &[name, counts] : m_MissingMap) {
        const TypeEntry *entry = DeclarationOf(name);
        if (entry != nullptr && entry->m_iOpenRefs > 0) {
            names << name;
        }
    }
    return names;
}

void ReferenceResolver::TraceUndeclared() const
{
    trace::Write(UnitName(), __LINE__,
                 [] { return QStringLiteral("Missing Element was not found! XmlSchemaHandler terminates..."); });
    trace::Write(UnitName(), __LINE__, [this] {
        return QStringLiteral("The schema refers to \"%1\", which is declared nowhere.").arg(m_sUndeclared);
    });
}

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
    CollectKeys(reopen);
    RunSweeps();
    if (m_oRun.m_oMaker.IsExceeded()) {
        return false;
    }
    if (m_pUndeclared != nullptr) {
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

void ReferenceResolver::CollectKeys(bool reopen)
{
    for (auto &[name, counts] : m_MissingMap) {
        const auto entry = m_TypeMap.find(name);
        const bool isDeclared = entry != m_TypeMap.end();
        if (reopen && isDeclared && !name.isEmpty() && entry->second.m_iOpenRefs == -1) {
            entry->second.m_iOpenRefs = 0;
        }
        if (name.isEmpty() || m_pUndeclared != nullptr) {
            continue;
        }
        if (!isDeclared) {
            m_pUndeclared = &name;
            continue;
        }
        if (entry->second.m_iOpenRefs == 0) {
            m_lComplete.insert(m_lComplete.end(), m_lKeys.size());
        }
        m_lKeys.push_back({ &name, &counts, &entry->second });
    }
}

void ReferenceResolver::RunSweeps()
{
    // A declaration that becomes complete is taken in the same sweep if its name is still ahead, else in the next one.
    // The sweep that meets a name without declaration is the last.
    auto next = m_lComplete.begin();
    while (next != m_lComplete.end() && !m_oRun.m_oMaker.IsExceeded()) {
        const std::size_t place = *next;
        m_lComplete.erase(next);
        Process(m_lKeys[place]);
        next = m_lComplete.upper_bound(place);
        if (next == m_lComplete.end() && m_pUndeclared == nullptr) {
            next = m_lComplete.begin();
        }
    }
}

bool ReferenceResolver::ReopenWaiting()
{
    for (std::size_t place = 0; place < m_lKeys.size(); ++place) {
        const Key &key = m_lKeys[place];
        if (key.m_pEntry->m_iOpenRefs == -1 && HasWaiting(*key.m_pCounts)) {
            key.m_pEntry->m_iOpenRefs = 0;
            m_lComplete.insert(place);
        }
    }
    return !m_lComplete.empty();
}

void ReferenceResolver::Process(const Key &key)
{
    key.m_pEntry->m_iOpenRefs = -1;
    m_pSource = key.m_pEntry->m_pFragment;
    for (auto &[count, records] : *key.m_pCounts) {
        for (MissingElement &record : records) {
            ApplyOnce(record, count, *key.m_pEntry);
        }
    }
    if (m_oRun.m_oMaker.IsExceeded()) {
        m_oRun.TraceLimit(QStringLiteral("\"%1\" in %2").arg(*key.m_pName, m_oRun.m_oFiles.GetCurrent()));
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
    const auto key = std::lower_bound(m_lKeys.begin(), m_lKeys.end(), owner,
                                      [](const Key &other, const QString &name) { return *other.m_pName < name; });
    if (entry->second.m_iOpenRefs == 0 && key != m_lKeys.end() && *key->m_pName == owner) {
        m_lComplete.insert(static_cast<std::size_t>(key - m_lKeys.begin()));
    }
}

QStringList ReferenceResolver::OpenNames() const
{
    QStringList names;
    for (const Key &key : m_lKeys) {
        if (key.m_pEntry->m_iOpenRefs > 0) {
            names << *key.m_pName;
        }
    }
    return names;
}

void ReferenceResolver::TraceUndeclared() const
{
    trace::Write(UnitName(), __LINE__,
                 [] { return QStringLiteral("Missing Element was not found! XmlSchemaHandler terminates..."); });
    trace::Write(UnitName(), __LINE__, [this] {
        return QStringLiteral("The schema refers to \"%1\", which is declared nowhere.").arg(*m_pUndeclared);
    });
}

#include "schema/referenceresolver.h"

#include "host/trace.h"
#include "schema/schemarun.h"
#include "schema/schematags.h"

#include <algorithm>

using schematags::UnitName;

namespace {

int LevelOf(const QDomNode &node)
{
    int level = 0;
    for (QDomNode current = node; current.isElement(); current = current.parentNode()) {
        ++level;
    }
    return level;
}

void AddOwners(const std::map<int, std::list<MissingElement>> &counts, const QString &name,
               QHash<QString, QString> &waits)
{
    for (const auto &[count, records] : counts) {
        for (const MissingElement &record : records) {
            waits.insert(record.m_sOwner, name);
        }
    }
}

} // namespace

ReferenceResolver::ReferenceResolver(MissingMap &missing, TypeMap &types, SchemaRun &run)
    : m_MissingMap(missing)
    , m_TypeMap(types)
    , m_oRun(run)
{
}

void ReferenceResolver::DropReplaced()
{
    if (m_oRun.m_lReplaced.empty()) {
        return;
    }
    for (auto name = m_MissingMap.begin(); name != m_MissingMap.end();) {
        DropReplaced(name->second);
        name = name->second.empty() ? m_MissingMap.erase(name) : std::next(name);
    }
    m_oRun.m_lReplaced.clear();
}

void ReferenceResolver::DropReplaced(Counts &counts)
{
    for (auto count = counts.begin(); count != counts.end();) {
        count->second.remove_if([this](const MissingElement &record) {
            const bool replaced = IsReplaced(record);
            // Another record may come to stand at its address.
            m_oRun.m_hNotes.erase(replaced ? &record : nullptr);
            return replaced;
        });
        count = count->second.empty() ? counts.erase(count) : std::next(count);
    }
}

bool ReferenceResolver::IsReplaced(const MissingElement &record) const
{
    if (m_oRun.m_lReplaced.count(record.m_sOwner) == 0) {
        return false;
    }
    const auto note = m_oRun.m_hNotes.find(&record);
    const auto owner = m_TypeMap.find(record.m_sOwner);
    if (note == m_oRun.m_hNotes.end() || note->second.m_bApplied || note->second.m_pFragment == nullptr
        || owner == m_TypeMap.end()) {
        return false;
    }
    return note->second.m_pFragment->ownerDocument() != owner->second.m_pFragment->ownerDocument();
}

void ReferenceResolver::Reopen()
{
    for (const auto &[name, counts] : m_MissingMap) {
        const auto entry = m_TypeMap.find(name);
        if (!name.isEmpty() && entry != m_TypeMap.end() && entry->second.m_iOpenRefs == -1) {
            entry->second.m_iOpenRefs = 0;
        }
    }
}

bool ReferenceResolver::Resolve()
{
    CollectKeys();
    RunSweeps();
    while (m_iOpenKeys > 0 && m_pUndeclared == nullptr && !m_oRun.m_oBudget.IsExceeded() && ReopenWaiting()) {
        RunSweeps();
    }
    if (m_oRun.m_oBudget.IsExceeded()) {
        TraceLimit();
    } else if (m_pUndeclared != nullptr) {
        TraceUndeclared();
    } else if (m_iOpenKeys > 0) {
        TraceCircle();
    } else {
        return true;
    }
    return false;
}

void ReferenceResolver::CollectKeys()
{
    m_lKeys.reserve(m_MissingMap.size());
    auto entry = m_TypeMap.begin();
    for (auto &[name, counts] : m_MissingMap) {
        if (name.isEmpty()) {
            continue;
        }
        // Both tables are in the order of the names.
        while (entry != m_TypeMap.end() && entry->first < name) {
            ++entry;
        }
        if (entry == m_TypeMap.end() || entry->first != name) {
            m_pUndeclared = &name;
            return;
        }
        const std::size_t place = m_lKeys.size();
        m_lKeys.push_back({ &name, &counts, &entry->second });
        if (entry->second.m_iOpenRefs == 0) {
            m_oTurns.push({ 1, place });
        } else if (entry->second.m_iOpenRefs > 0) {
            ++m_iOpenKeys;
        }
    }
}

void ReferenceResolver::IndexKeys()
{
    m_hPlaces.reserve(static_cast<int>(m_lKeys.size()));
    for (std::size_t place = 0; place < m_lKeys.size(); ++place) {
        m_hPlaces.insert(*m_lKeys[place].m_pName, place);
    }
}

void ReferenceResolver::RunSweeps()
{
    // The pass of an include often finds many names and nothing to do.
    if (!m_oTurns.empty() && m_hPlaces.isEmpty()) {
        IndexKeys();
    }
    // The first sweep already ends at a name that is declared nowhere.
    while (!m_oTurns.empty() && (m_pUndeclared == nullptr || m_oTurns.top().first == 1)
           && !m_oRun.m_oBudget.IsExceeded()) {
        m_oTurn = m_oTurns.top();
        m_oTurns.pop();
        Process(m_lKeys[m_oTurn.second]);
    }
}

bool ReferenceResolver::ReopenWaiting()
{
    bool found = false;
    for (std::size_t place = 0; place < m_lKeys.size(); ++place) {
        const Key &key = m_lKeys[place];
        if (key.m_pEntry->m_iOpenRefs == -1 && HasWaiting(*key.m_pCounts)) {
            key.m_pEntry->m_iOpenRefs = 0;
            m_oTurns.push({ m_oTurn.first + 1, place });
            found = true;
        }
    }
    return found;
}

bool ReferenceResolver::HasWaiting(const Counts &counts) const
{
    const auto isWaiting = [this](const MissingElement &record) {
        const auto note = m_oRun.m_hNotes.find(&record);
        return note == m_oRun.m_hNotes.end() || !note->second.m_bApplied;
    };
    return std::any_of(counts.begin(), counts.end(), [&isWaiting](const auto &count) {
        return std::any_of(count.second.begin(), count.second.end(), isWaiting);
    });
}

void ReferenceResolver::Process(const Key &key)
{
    key.m_pEntry->m_iOpenRefs = -1;
    m_pSource = key.m_pEntry->m_pFragment;
    m_oSourceAttributes.reset();
    for (const auto &[count, records] : *key.m_pCounts) {
        for (const MissingElement &record : records) {
            ProcessRecord(*key.m_pEntry, record, count);
        }
    }
}

void ReferenceResolver::ProcessRecord(TypeEntry &entry, const MissingElement &record, int count)
{
    RecordNote &note = m_oRun.m_hNotes[&record];
    // A count below 0 asks for no application at all.
    if (!note.m_bApplied && count >= 0) {
        entry.m_bUsed = true;
        Apply(record, count, note);
    }
    note.m_bApplied = true;
}

void ReferenceResolver::Apply(const MissingElement &record, int count, RecordNote &note)
{
    const int times = std::max(count, 1);
    if (record.m_pParent != nullptr && m_pSource != nullptr) {
        if (note.m_iLevel == 0) {
            note.m_iLevel = LevelOf(*record.m_pParent) + 1;
        }
        if (record.m_bAttribute) {
            ApplyAttributes(record, note);
        } else {
            ApplyContent(record, note, times);
        }
    }
    // In a named type a record lowers what it has raised. In a global declaration each application lowers.
    Lower(record.m_sOwner, note.m_eKind == RecordKind::Place ? 1 : times);
}

void ReferenceResolver::ApplyAttributes(const MissingElement &record, const RecordNote &note)
{
    const QDomElement carrier = m_pSource->firstChild().toElement();
    const content::AttributeList &attributes = SourceAttributes();
    if (carrier.isNull()
        || !m_oRun.m_oBudget.TakeAttributes(note.m_pFragment, *record.m_pParent,
                                            static_cast<qint64>(attributes.size()))) {
        return;
    }
    if (note.m_eKind == RecordKind::Base) {
        content::AddAttributes(attributes, *record.m_pParent);
    } else {
        content::SetSchemaAttribute(carrier.tagName(), attributes, *record.m_pParent);
    }
}

void ReferenceResolver::ApplyContent(const MissingElement &record, const RecordNote &note, int times)
{
    const bool hasCarrier = content::HasCarrier(*m_pSource);
    if (hasCarrier && note.m_eKind == RecordKind::Plain) {
        const content::AttributeList &attributes = SourceAttributes();
        if (!m_oRun.m_oBudget.TakeAttributes(note.m_pFragment, *record.m_pParent,
                                             static_cast<qint64>(attributes.size()))) {
            return;
        }
        content::SetAttributes(attributes, *record.m_pParent);
    }
    if (InsertContent(record, note, times) && note.m_eKind == RecordKind::Place) {
        record.m_pParent->parentNode().removeChild(*record.m_pParent);
    }
}

bool ReferenceResolver::InsertContent(const MissingElement &record, const RecordNote &note, int times)
{
    const Extent piece = m_oRun.m_oBudget.Of(m_pSource);
    if (piece.m_iElements == 0) {
        return true;
    }
    if (!m_oRun.m_oBudget.Allows(note.m_pFragment, piece, times, note.m_iLevel)) {
        return false;
    }
    QDomElement &parent = *record.m_pParent;
    for (int copy = 0; copy < times && m_oRun.m_oBudget.Take(note.m_pFragment, piece, note.m_iLevel); ++copy) {
        const QDomDocumentFragment clone = content::CloneContent(*m_pSource);
        if (note.m_eKind == RecordKind::Place) {
            parent.parentNode().insertBefore(clone, parent);
        } else if (record.m_pAfter != nullptr) {
            parent.insertAfter(clone, *record.m_pAfter);
        } else {
            parent.appendChild(clone);
        }
    }
    return !m_oRun.m_oBudget.IsExceeded();
}

const content::AttributeList &ReferenceResolver::SourceAttributes()
{
    if (!m_oSourceAttributes) {
        const QDomElement first = m_pSource->firstChild().toElement();
        m_oSourceAttributes = m_oRun.m_oBudget.TakeListing(first.attributes().count()) ? content::ListAttributes(first)
                                                                                       : content::AttributeList();
    }
    return *m_oSourceAttributes;
}

void ReferenceResolver::Lower(const QString &owner, int times)
{
    const auto place = m_hPlaces.constFind(owner);
    const bool isKey = place != m_hPlaces.constEnd();
    const auto found = isKey ? m_TypeMap.end() : m_TypeMap.find(owner);
    if (!isKey && found == m_TypeMap.end()) {
        return;
    }
    TypeEntry &entry = isKey ? *m_lKeys[*place].m_pEntry : found->second;
    if (entry.m_iOpenRefs <= 0) {
        return;
    }
    entry.m_iOpenRefs = std::max(0, entry.m_iOpenRefs - times);
    if (isKey && entry.m_iOpenRefs == 0) {
        --m_iOpenKeys;
        // A sweep that is past the name comes to it in the next one.
        m_oTurns.push({ *place > m_oTurn.second ? m_oTurn.first : m_oTurn.first + 1, *place });
    }
}

void ReferenceResolver::TraceUndeclared() const
{
    trace::Write(UnitName(), __LINE__,
                 [] { return QStringLiteral("Missing Element was not found! XmlSchemaHandler terminates..."); });
    trace::Write(UnitName(), __LINE__, [this] {
        return QStringLiteral("The schema refers to \"%1\", which is declared nowhere.").arg(*m_pUndeclared);
    });
}

void ReferenceResolver::TraceCircle() const
{
    trace::Write(UnitName(), __LINE__, [this] {
        return QStringLiteral("Missing Elements refer to each other! XmlSchemaHandler terminates... ")
            + CircleNames().join(QLatin1String(", "));
    });
}

void ReferenceResolver::TraceLimit() const
{
    trace::Write(UnitName(), __LINE__, [this] {
        return QStringLiteral("%1, and \"%2\" in %3 would break this: nothing more is built.")
            .arg(m_oRun.m_oBudget.GetReason(), *m_lKeys[m_oTurn.second].m_pName, m_oRun.m_oFiles.GetCurrent());
    });
}

QStringList ReferenceResolver::CircleNames() const
{
    // For each name that waits one open name that it waits for.
    QHash<QString, QString> waits;
    QStringList names;
    for (const Key &key : m_lKeys) {
        if (key.m_pEntry->m_iOpenRefs > 0) {
            names << *key.m_pName;
            AddOwners(*key.m_pCounts, *key.m_pName, waits);
        }
    }
    QStringList path;
    QHash<QString, int> steps;
    QString name = names.value(0);
    while (!steps.contains(name) && waits.contains(name)) {
        steps.insert(name, path.size());
        path << name;
        name = waits.value(name);
    }
    return steps.contains(name) ? path.mid(steps.value(name)) : names;
}

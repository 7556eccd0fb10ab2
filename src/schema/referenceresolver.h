#pragma once

#include "schema/schematables.h"
#include "schema/templatecontent.h"

#include <QHash>
#include <QStringList>
#include <queue>

#include <optional>
#include <utility>
#include <vector>

struct RecordNote;
struct SchemaRun;

/// The pass that fills in the references that wait, inner declarations first. It goes over the names in sweeps, each in
/// the order of the names, and takes in each sweep those that are complete; but it visits only names that have become
/// complete, so that long chains of types cost no more than their content.
class ReferenceResolver
{
public:
    ReferenceResolver(MissingMap &missing, TypeMap &types, SchemaRun &run);
    Q_DISABLE_COPY(ReferenceResolver)

    /// Takes away the waiting records of declarations that another file has replaced.
    void DropReplaced();

    /// Makes what an earlier pass has resolved complete again, for the references that were added since.
    void Reopen();

    /// Runs the pass. False, traced, if a name is declared nowhere, if names wait for each other, or if a limit of the
    /// template is broken. What was applied up to then stays.
    [[nodiscard]] bool Resolve();

private:
    using Counts = std::map<int, std::list<MissingElement>>;
    // A sweep, and in it the place of a name.
    using Turn = std::pair<int, std::size_t>;

    struct Key
    {
        const QString *m_pName = nullptr;
        Counts *m_pCounts = nullptr;
        TypeEntry *m_pEntry = nullptr;
    };

    void CollectKeys();
    void IndexKeys();
    void RunSweeps();
    bool ReopenWaiting();
    bool HasWaiting(const Counts &counts) const;
    void Process(const Key &key);
    void ProcessRecord(TypeEntry &entry, const MissingElement &record, int count);
    void Apply(const MissingElement &record, int count, RecordNote &note);
    void ApplyAttributes(const MissingElement &record, const RecordNote &note);
    void ApplyContent(const MissingElement &record, const RecordNote &note, int times);
    bool InsertContent(const MissingElement &record, const RecordNote &note, int times);
    const content::AttributeList &SourceAttributes();
    void Lower(const QString &owner, int times);

    bool IsReplaced(const MissingElement &record) const;
    void DropReplaced(Counts &counts);

    void TraceUndeclared() const;
    void TraceCircle() const;
    void TraceLimit() const;
    QStringList CircleNames() const;

    MissingMap &m_MissingMap;
    TypeMap &m_TypeMap;
    SchemaRun &m_oRun;

    // The names in their order, up to the first that is declared nowhere.
    std::vector<Key> m_lKeys;
    QHash<QString, std::size_t> m_hPlaces;
    const QString *m_pUndeclared = nullptr;
    std::priority_queue<Turn, std::vector<Turn>, std::greater<Turn>> m_oTurns;
    Turn m_oTurn = { 1, 0 };
    std::size_t m_iOpenKeys = 0;
    // The declaration that is being applied.
    QDomDocumentFragment *m_pSource = nullptr;
    std::optional<content::AttributeList> m_oSourceAttributes;
};

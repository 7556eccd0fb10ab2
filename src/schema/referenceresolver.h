#pragma once

#include "schema/schematables.h"

#include <QStringList>

#include <set>
#include <vector>

class SchemaRun;

/// The pass that fills in waiting references, inner declarations first. It sweeps over the referred names, in their
/// order, again and again, and applies in each sweep the declarations that are complete.
class ReferenceResolver
{
public:
    ReferenceResolver(MissingMap &missing, TypeMap &types, SchemaRun &run);
    Q_DISABLE_COPY(ReferenceResolver)

    /// Runs the pass. With `reopen`, declarations that an earlier pass has applied count as complete again, for the
    /// references that were added since. False, traced, if a name is declared nowhere, if names wait for each other, or
    /// if a limit of the template is broken. What was applied up to then stays.
    [[nodiscard]] bool Resolve(bool reopen);

private:
    // A name that something waits for and that is declared.
    struct Key
    {
        const QString *m_pName = nullptr;
        std::map<int, std::list<MissingElement>> *m_pCounts = nullptr;
        TypeEntry *m_pEntry = nullptr;
    };

    void DropReplaced();
    void DropReplacedOf(MissingMap::mapped_type &counts);
    bool IsReplaced(const MissingElement &record) const;
    void CollectKeys(bool reopen);
    void RunSweeps();
    bool ReopenWaiting();
    void Process(const Key &key);
    void ApplyOnce(MissingElement &record, int count, TypeEntry &entry);
    void Apply(const MissingElement &record, int times);
    void ApplyContent(const MissingElement &record, int times);
    void InsertContent(const MissingElement &record, int times);
    void Lower(const QString &owner, int times);
    QStringList OpenNames() const;
    void TraceUndeclared() const;

    MissingMap &m_MissingMap;
    TypeMap &m_TypeMap;
    SchemaRun &m_oRun;

    // In the order of the names, up to the first name that is declared nowhere.
    std::vector<Key> m_lKeys;
    const QString *m_pUndeclared = nullptr;
    // The places of those keys that are to be applied.
    std::set<std::size_t> m_lComplete;
    // The declaration that is being applied.
    QDomDocumentFragment *m_pSource = nullptr;
};

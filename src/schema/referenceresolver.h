#pragma once

#include "schema/schematables.h"

#include <QStringList>

#include <set>

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
    void DropReplaced();
    void DropReplacedOf(MissingMap::mapped_type &counts);
    bool IsReplaced(const MissingElement &record) const;
    TypeEntry *DeclarationOf(const QString &name) const;
    void CollectComplete(bool reopen);
    void RunSweeps();
    bool ReopenWaiting();
    void Process(const QString &name);
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

    // The first name that is declared nowhere; empty if there is none.
    QString m_sUndeclared;
    // The names that something waits for and whose declarations are to be applied.
    std::set<QString> m_lComplete;
    // The declaration that is being applied.
    QDomDocumentFragment *m_pSource = nullptr;
};

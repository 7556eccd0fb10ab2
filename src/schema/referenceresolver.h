#pragma once

#include "schema/schematables.h"

#include <QStringList>

#include <set>

class SchemaRun;

/// The pass that fills in the references that wait, inner declarations first. It goes over the names that something
/// waits for in sweeps, each in the order of the names, and applies in each sweep the declarations that are complete.
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
    using Names = std::set<QString>;

    void DropReplaced();
    bool IsReplaced(const MissingElement &record) const;
    void Reopen();
    void CollectComplete();
    void RunSweeps();
    bool IsAhead(Names::const_iterator next) const;
    bool ReopenWaiting();
    void Process(const QString &name);
    void Apply(const MissingElement &record, int times);
    void ApplyContent(const MissingElement &record, int times);
    void InsertContent(const MissingElement &record, int times);
    void Lower(const QString &owner, int times);

    QStringList OpenNames() const;
    void TraceUndeclared() const;
    static void TraceCircle(const QStringList &names);

    MissingMap &m_MissingMap;
    TypeMap &m_TypeMap;
    SchemaRun &m_oRun;

    // The names that are to be applied: complete, and waited for.
    Names m_lComplete;
    // The first name that is declared nowhere; the first sweep ends there.
    const QString *m_pUndeclared = nullptr;
    // The declaration that is being applied.
    QDomDocumentFragment *m_pSource = nullptr;
};

#pragma once

#include "schema/openfiles.h"
#include "schema/schemaarena.h"
#include "schema/templatemaker.h"

#include <set>

/// Shared by the handlers of a run: the top one, which owns it, and those of its includes.
struct SchemaRun
{
    explicit SchemaRun(const QString &schemaPath)
        : m_oFiles(schemaPath)
    {
    }

    /// Traces a broken limit, once in a run. `where` names the tag or the name that broke it.
    void TraceLimit(const QString &where);

    SchemaArena m_oArena;
    TemplateMaker m_oMaker;
    bool m_bLimitTraced = false;
    OpenFiles m_oFiles;
    /// Declarations that another file has replaced since the latest pass.
    std::set<QString> m_lReplaced;
};

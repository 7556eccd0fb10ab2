#pragma once

#include "schema/attributecache.h"
#include "schema/openfiles.h"
#include "schema/schemaarena.h"
#include "schema/schematables.h"
#include "schema/templatebudget.h"

#include <set>
#include <unordered_map>

/// How a waiting reference is applied once its target is there.
enum class RecordKind {
    /// As the record says.
    Plain,
    /// The parent is a placeholder in a named type: the content takes its place.
    Place,
    /// The attributes of an extension's base go to the parent under their own names.
    Base
};

/// What a run knows of a waiting reference beyond the record itself.
struct RecordNote
{
    RecordKind m_eKind = RecordKind::Plain;
    /// The fragment that the parent stands in, and the level on which content goes; null and 0 if unknown.
    QDomDocumentFragment *m_pFragment = nullptr;
    int m_iLevel = 0;
    /// Applied by a pass: content must not be applied twice.
    bool m_bApplied = false;
};

/// What the handlers of a run share: the top one, which owns it, and those of its includes.
struct SchemaRun
{
    explicit SchemaRun(const QString &schemaPath)
        : m_oFiles(schemaPath)
    {
    }

    SchemaArena m_oArena;
    TemplateBudget m_oBudget;
    bool m_bLimitTraced = false;
    OpenFiles m_oFiles;
    AttributeCache m_oAttributes { m_oBudget };
    /// By the record's place in the table, which it keeps when the tables move from handler to handler.
    std::unordered_map<const MissingElement *, RecordNote> m_hNotes;
    /// Declarations that another file has replaced since the latest pass.
    std::set<QString> m_lReplaced;
};

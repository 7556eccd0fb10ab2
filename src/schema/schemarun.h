#pragma once

#include "schema/declarations.h"
#include "schema/openfiles.h"
#include "schema/templatemaker.h"

#include <deque>
#include <memory>
#include <set>

/// Shared by the handlers of a run: the top one, which outlives the others, and those of its includes. It owns the
/// documents, fragments and handles on elements that the tables of the run borrow; these stay valid, and at their
/// addresses, until the run ends.
class SchemaRun
{
public:
    explicit SchemaRun(const QString &schemaPath)
        : m_oFiles(schemaPath)
    {
    }
    Q_DISABLE_COPY(SchemaRun)

    /// A new empty fragment, made by `document`.
    QDomDocumentFragment *NewFragment(QDomDocument &document)
    {
        return &m_lFragments.emplace_back(document.createDocumentFragment());
    }
    /// A handle of the run's own on the element.
    QDomElement *Keep(const QDomElement &element) { return &m_lElements.emplace_back(element); }
    /// Keeps a document alive: its fragments look it up when they are changed or cloned.
    void Keep(const QDomDocument &document) { m_lDocuments.push_back(document); }

    /// Keeps what has broken a limit, once in a run, and traces it. `where` names the tag or the name that broke it.
    void TraceLimit(const QString &where);
    /// The limit that was broken, and where, as a sentence without its end; empty if none was.
    const QString &GetBrokenLimit() const { return m_sBrokenLimit; }

private:
    // The order of the members is that of their life: a fragment must not outlive its document.
    std::deque<QDomDocument> m_lDocuments;
    std::deque<QDomDocumentFragment> m_lFragments;
    std::deque<QDomElement> m_lElements;
    QString m_sBrokenLimit;

public:
    TemplateMaker m_oMaker;
    OpenFiles m_oFiles;
    const std::shared_ptr<Declarations> m_pDeclarations { std::make_shared<Declarations>() };
    /// Declarations that another file has replaced since the latest pass.
    std::set<QString> m_lReplaced;
};

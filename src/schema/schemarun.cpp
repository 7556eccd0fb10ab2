#include "schema/schemarun.h"

#include "host/trace.h"
#include "schema/schematags.h"

QDomDocumentFragment *SchemaRun::NewFragment(QDomDocument &document)
{
    return &m_lFragments.emplace_back(document.createDocumentFragment());
}

QDomElement *SchemaRun::Keep(const QDomElement &element)
{
    return &m_lElements.emplace_back(element);
}

void SchemaRun::Keep(const QDomDocument &document)
{
    m_lDocuments.push_back(document);
}

void SchemaRun::TraceLimit(const QString &where)
{
    if (m_bLimitTraced) {
        return;
    }
    m_bLimitTraced = true;
    trace::Write(schematags::UnitName(), __LINE__, [this, &where] {
        return QStringLiteral("%1, and %2 would break this: nothing more is built.").arg(m_oMaker.GetReason(), where);
    });
}

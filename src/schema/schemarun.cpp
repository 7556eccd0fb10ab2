#include "schema/schemarun.h"

#include "host/trace.h"
#include "schema/schematags.h"

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

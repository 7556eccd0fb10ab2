#include "schema/schemarun.h"

#include "host/trace.h"
#include "schema/schematags.h"

void SchemaRun::TraceLimit(const QString &where)
{
    if (!m_sBrokenLimit.isEmpty()) {
        return;
    }
    m_sBrokenLimit = QStringLiteral("%1, and %2 would break this").arg(m_oMaker.GetReason(), where);
    trace::Write(schematags::UnitName(), __LINE__,
                 [this] { return m_sBrokenLimit + QLatin1String(": nothing more is built."); });
}

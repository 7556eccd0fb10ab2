#include "report/reportsaver.h"

#include "dom/documentsaver.h"
#include "host/trace.h"

bool SaveReport(const QDomDocument &document, const QString &path)
{
    const QString unit = QStringLiteral("reportsaver");
    const dom::SaveResult result = dom::SaveDocument(document, path);
    if (!result.m_sFailure.isEmpty()) {
        trace::Write(unit, __LINE__, [&] {
            return QLatin1String("The report \"") + path + QLatin1String("\" could not be saved: ") + result.m_sFailure;
        });
    }
    if (result.m_bReplaced) {
        trace::Write(unit, __LINE__, [&] {
            return QLatin1String("The report \"") + path
                + QLatin1String("\" holds a character that XML can't hold; U+FFFD stands in its place.");
        });
    }
    return result.m_sFailure.isEmpty();
}

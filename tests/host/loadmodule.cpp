// Stands for a host's plug-in: uses the library, and leaves one comment dialog open past its control.

#include "control/vcreporting.h"
#include "report/reportoutcome.h"

#include <QDir>
#include <QTemporaryDir>

extern "C" Q_DECL_EXPORT bool ShowDialogs()
{
    const QTemporaryDir folder;
    QFile schema(folder.filePath(QStringLiteral("s.xsd")));
    if (!schema.open(QIODevice::WriteOnly)) {
        return false;
    }
    schema.close();
    VCReporting control(schema.fileName(), folder.path(), nullptr, true, nullptr, false, QPixmap());
    bool isTold = false;
    QObject::connect(&control, &VCReporting::ReportFinished,
                     [&isTold](const ReportOutcome &outcome) { isTold = !outcome.IsSchemaRead(); });
    control.AddReportSource(
        QStringLiteral("A"), [](const ReportPlace &place) { return place.GetText(); }, 1, QString(), 0, QString());
    control.SlotToReport();
    if (!isTold) {
        return false;
    }
    control.SetShowCommentDialog(true);
    control.SlotToReport();
    control.SlotToReport();
    return true;
}

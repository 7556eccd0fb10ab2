// Stands for a host's plug-in: uses the library, and leaves one comment dialog open past its control, and a button that
// was at work when its control ended.

#include "control/vcreporting.h"
#include "report/reportoutcome.h"

#include <QApplication>
#include <QKeyEvent>
#include <QTemporaryDir>
#include <QToolButton>

#include <memory>

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
    auto pressed =
        std::make_unique<VCReporting>(schema.fileName(), folder.path(), nullptr, true, nullptr, false, QPixmap());
    QToolButton *button = pressed->GetReportButton();
    QObject::connect(button, &QToolButton::pressed, pressed.get(), [&pressed] { pressed.reset(); });
    QKeyEvent key(QEvent::KeyPress, Qt::Key_Space, Qt::NoModifier);
    QApplication::sendEvent(button, &key);
    return pressed == nullptr;
}

#include "pictures.h"

#include "mainwindow.h"
#include "measurement.h"

#include "control/vcreporting.h"
#include "host/veldra.h"

#include <QApplication>
#include <QDateTime>
#include <QDir>
#include <QTemporaryDir>
#include <QTextEdit>
#include <QToolBar>
#include <QToolButton>

namespace {

/// A time that doesn't change from one drawing to the next, a minute later at each look.
class DrawnClock : public IOrvoOS
{
public:
    DrawnClock() { OrvoOS::SetClock(this); }
    ~DrawnClock() override { OrvoOS::SetClock(nullptr); }
    Q_DISABLE_COPY(DrawnClock)

    quint64 GetTime() override
    {
        m_tNow = m_tNow.addSecs(60);
        return static_cast<quint64>(m_tNow.toMSecsSinceEpoch());
    }

private:
    QDateTime m_tNow = QDateTime(QDate(2024, 5, 17), QTime(9, 27, 30));
};

bool Draw(QWidget *widget, const QString &folder, const char *name)
{
    if (widget == nullptr) {
        return false;
    }
    QCoreApplication::processEvents();
    return widget->grab().save(QDir(folder).filePath(QLatin1String(name)));
}

QWidget *FindCommentDialog()
{
    for (QWidget *widget : QApplication::topLevelWidgets()) {
        if (widget->isVisible() && widget->objectName() == QLatin1String("ToReportCommentDialog")) {
            return widget;
        }
    }
    return nullptr;
}

bool DrawDialog(VCReporting &control, const QString &folder)
{
    control.SetShowCommentDialog(true);
    control.SlotToReport();
    QWidget *dialog = FindCommentDialog();
    if (dialog == nullptr) {
        return false;
    }
    dialog->findChild<QTextEdit *>()->setPlainText(
        QApplication::translate("Pictures", "Carrier drifts by some 200 Hz within a minute."));
    return Draw(dialog, folder, "comment-dialog.png");
}

} // namespace

int DrawPictures(Measurement &measurement, const QString &schema, const QString &pictureFolder)
{
    QDir().mkpath(pictureFolder);
    const DrawnClock clock;
    const QTemporaryDir reports;
    MainWindow window(measurement, schema, reports.path(), QString());
    VCReporting &control = window.GetControl();
    window.show();
    for (const double frequency : { 89.3e6, 94.7e6, 98.1e6 }) {
        measurement.SetNumber(QStringLiteral("Measurement/Frequency"), frequency);
        control.SlotToReport();
    }
    auto *toolBar = window.findChild<QToolBar *>();
    bool isDrawn = Draw(&window, pictureFolder, "main-window.png");
    isDrawn = Draw(toolBar, pictureFolder, "button-enabled.png") && isDrawn;
    isDrawn = DrawDialog(control, pictureFolder) && isDrawn;
    control.SetSchema(QStringLiteral("schemas/removed.xsd"));
    control.EnableReportButton(true);
    isDrawn = Draw(toolBar, pictureFolder, "button-disabled.png") && isDrawn;
    return isDrawn ? 0 : 1;
}

#include "pictures.h"

#include "commentplacer.h"
#include "mainwindow.h"
#include "measurement.h"
#include "signaltable.h"

#include "control/vcreporting.h"
#include "host/veldra.h"

#include <QApplication>
#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QPainter>
#include <QStatusBar>
#include <QTemporaryDir>
#include <QTextEdit>
#include <QToolBar>

namespace {

constexpr int kButtonWidth = 700;

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

/// Dots for each dot of the window, so that dense screens show the pictures sharp.
constexpr int kDensity = 2;

QPixmap Grab(QWidget &widget)
{
    QCoreApplication::processEvents();
    QPixmap picture(widget.size() * kDensity);
    picture.setDevicePixelRatio(kDensity);
    widget.render(&picture);
    return picture;
}

bool Draw(QWidget &widget, const QString &folder, const char *name)
{
    return Grab(widget).save(QDir(folder).filePath(QLatin1String(name)));
}

/// The tool bar, and below it the line that says why the button is as it is.
bool DrawButton(MainWindow &window, const QString &folder, const char *name)
{
    window.statusBar()->clearMessage();
    const QPixmap tools = Grab(*window.findChild<QToolBar *>());
    const QPixmap status = Grab(*window.statusBar());
    QPixmap both(kButtonWidth * kDensity, tools.height() + status.height());
    QPainter painter(&both);
    painter.drawPixmap(tools.rect(), tools);
    painter.drawPixmap(status.rect().translated(0, tools.height()), status);
    painter.end();
    return both.save(QDir(folder).filePath(QLatin1String(name)));
}

bool DrawDialog(VCReporting &control, const QString &folder)
{
    control.SetShowCommentDialog(true);
    control.SlotToReport();
    QWidget *dialog = CommentPlacer::FindDialogs().value(0);
    if (dialog == nullptr) {
        return false;
    }
    dialog->findChild<QTextEdit *>()->setPlainText(
        QApplication::translate("Pictures", "Carrier drifts by some 200 Hz within a minute."));
    return Draw(*dialog, folder, "comment-dialog.png");
}

} // namespace

int DrawPictures(Measurement &measurement, const QString &schema, const QString &pictureFolder)
{
    const QString schemaPath = QFileInfo(schema).absoluteFilePath();
    const QString folder = QFileInfo(pictureFolder).absoluteFilePath();
    QDir().mkpath(folder);
    QApplication::setStyle(QStringLiteral("Fusion"));
    QApplication::setFont(QFont(QStringLiteral("DejaVu Sans"), 9));
    const DrawnClock clock;
    // What the window shows of paths is the same wherever the pictures are drawn.
    const QTemporaryDir place;
    QDir::setCurrent(place.path());
    QDir().mkdir(QStringLiteral("reports"));
    MainWindow window(measurement, schemaPath, QStringLiteral("reports"), QString());
    VCReporting &control = window.GetControl();
    window.show();
    for (const double frequency : { 89.3e6, 94.7e6, 98.1e6 }) {
        measurement.SetNumber(QStringLiteral("Measurement/Frequency"), frequency);
        window.GetSignals().AddPresent();
        control.SlotToReport();
    }
    bool isDrawn = Draw(window, folder, "main-window.png");
    isDrawn = DrawButton(window, folder, "button-enabled.png") && isDrawn;
    isDrawn = DrawDialog(control, folder) && isDrawn;
    window.SetSchema(QStringLiteral("schemas/removed.xsd"));
    isDrawn = DrawButton(window, folder, "button-disabled.png") && isDrawn;
    return isDrawn ? 0 : 1;
}

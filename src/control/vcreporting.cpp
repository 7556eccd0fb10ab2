#include "control/vcreporting.h"

#include "control/commentdialogimpl.h"
#include "control/itemlist.h"
#include "control/notepad.xpm"
#include "control/reportdata.h"
#include "control/sourceitem.h"
#include "host/tessaly.h"
#include "host/veldra.h"
#include "report/reportoutcome.h"
#include "report/xmlcreatereport.h"

#include <QCoreApplication>
#include <QDir>
#include <QHBoxLayout>
#include <QMetaMethod>
#include <QScopeGuard>
#include <QTimer>
#include <QToolBar>

#include <utility>

namespace {

const QLatin1Char kSlash('/');
const QLatin1Char kBackslash('\\');

bool Exists(QString path)
{
    if (path.endsWith(kBackslash)) {
        path.chop(1);
    }
    path.replace(kBackslash, kSlash);
    // Qt warns of an empty name, and the poll comes every ten seconds.
    return !path.isEmpty() && QDir(QString()).exists(path);
}

/// Takes the events at which a button may send signals, behind all other filters, and hands them on itself: Qt goes on
/// with the button behind the signals, whose slots may end the control.
///
/// Shared by the control and by all that is at work on the button: the last of them ends the button, if the control's
/// end has left it. It doesn't belong to the button, before whose end the library may be unloaded.
class ButtonFilter : public QObject, public std::enable_shared_from_this<ButtonFilter>
{
public:
    explicit ButtonFilter(QObject *button)
        : m_pButton(button)
    {
        button->installEventFilter(this);
    }
    ~ButtonFilter() override
    {
        if (m_pButton != nullptr) {
            m_pButton->deleteLater();
        }
    }
    Q_DISABLE_COPY(ButtonFilter)

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (!MaySend(event->type())) {
            return false;
        }
        const std::shared_ptr<QObject> use = shared_from_this();
        if (!watched->event(event)) {
            event->ignore();
        }
        return true;
    }

private:
    static bool MaySend(QEvent::Type type)
    {
        return type == QEvent::MouseButtonPress || type == QEvent::MouseButtonRelease || type == QEvent::MouseMove
            || type == QEvent::MouseButtonDblClick || type == QEvent::KeyPress || type == QEvent::KeyRelease
            || type == QEvent::Shortcut || type == QEvent::FocusOut || type == QEvent::EnabledChange;
    }

    QPointer<QObject> m_pButton;
};

/// Ends an object ahead of its parent.
template <typename Object>
void End(const QPointer<Object> &object)
{
    const std::unique_ptr<Object> ended(object.data());
}

/// Ends a builder that the control needs no longer, or leaves it to its comment dialog while that is open.
void Release(std::shared_ptr<XmlCreateReport> report)
{
    // A builder serves one run, and a run opens one dialog at most.
    const std::list<QDialog *> dialogs = report == nullptr ? std::list<QDialog *>() : report->GetCommentDialogs();
    if (!dialogs.empty() && !dialogs.front()->isHidden()) {
        qobject_cast<CommentDialogImpl *>(dialogs.front())->Keep(std::move(report));
    }
}

void TellFate(const QPointer<VCReporting> &control, const ReportOutcome &outcome)
{
    if (control != nullptr) {
        Q_EMIT control->ReportFinished(outcome);
    }
}

} // namespace

VCReporting::VCReporting(QString schema, QString reportDirectory, QToolBar *toolBar, bool showButton,
                         const char *objectName, bool deleteAfterUse, QPixmap icon)
    : QWidget(toolBar)
    , m_Pixmap(icon)
    , m_bDeleteAfterUse(deleteAfterUse)
    , m_Items(std::make_unique<ItemList>())
{
    setObjectName(QLatin1String(objectName));
    SetInputPathToSchema(schema);
    SetReportDirectory(reportDirectory);
    if (showButton) {
        MakeReportButton();
    } else {
        hide();
    }
    SlotCheckFileAndDirectory();
    m_pCheckTimer = new QTimer(this);
    connect(m_pCheckTimer, &QTimer::timeout, this, &VCReporting::SlotCheckFileAndDirectory);
    m_pCheckTimer->start(m_iCheckInterval);
}

VCReporting::~VCReporting()
{
    ClearReportData();
    if (m_pButtonFilter.use_count() > 1 && m_pReportButton != nullptr) {
        m_pReportButton->hide();
        m_pReportButton->setParent(nullptr);
    } else {
        End(m_pReportButton);
    }
    End(m_pCheckTimer);
    Release(std::move(m_pReport));
}

bool VCReporting::SetSchema(QString schema)
{
    SetInputPathToSchema(schema);
    return true;
}

void VCReporting::SetReportDirectory(QString reportDirectory)
{
    m_sReportDirectory = reportDirectory.replace(kSlash, kBackslash);
}

void VCReporting::EnableReportButton(bool enable)
{
    if (m_pReportButton == nullptr) {
        return;
    }
    const QPointer<QTimer> timer = m_pCheckTimer;
    if (!enable) {
        if (timer != nullptr) {
            timer->stop();
        }
        // Also where it is disabled by its tool bar, with which it must not come back.
        SetButtonEnabled(false);
        return;
    }
    // The host may delete the control in a slot of the poll's signal, and the timer goes with it.
    const int interval = m_iCheckInterval;
    SlotCheckFileAndDirectory();
    if (timer != nullptr && !timer->isActive()) {
        timer->start(interval);
    }
}

void VCReporting::SetShowCommentDialog(bool show)
{
    m_bShowCommentDialog = show;
}

QToolButton *VCReporting::GetReportButton()
{
    return m_pReportButton;
}

bool VCReporting::SlotToReport()
{
    if (m_bReporting) {
        return false;
    }
    // The host may delete the control in a slot of each signal, and its values may throw.
    const QPointer<VCReporting> guard(this);
    const auto end = qScopeGuard([&guard] {
        if (guard != nullptr) {
            guard->m_bReporting = false;
            guard->m_bValueWritten = false;
            guard->PutAtRest();
        }
    });
    m_bReporting = true;
    Q_EMIT PrepareToReport();
    return guard != nullptr && RunReport();
}

bool VCReporting::RunReport()
{
    if (m_sSchemaPath.right(4) != QLatin1String(".xsd")) {
        return false;
    }
    const QString reportPath = MakeReportPath();
    // The host may delete the control when the last dialog goes, or the next comes.
    const QPointer<VCReporting> guard(this);
    Release(std::move(m_pReport));
    if (guard == nullptr) {
        return false;
    }
    // The control may end while the dialog opens, and must not take the running report with it.
    const auto report = std::make_shared<XmlCreateReport>(this);
    m_pReport = report;
    bool isSuccessful = false;
    try {
        isSuccessful = CreateReport(*report, reportPath);
    } catch (...) {
        ReportOutcome outcome = report->GetOutcome();
        outcome.SetSaveResult(QStringLiteral("An exception has ended the report."));
        TellFate(guard, outcome);
        throw;
    }
    if (guard == nullptr) {
        Release(report);
        return isSuccessful;
    }
    if (isSuccessful) {
        Q_EMIT ReportSuccessful();
    } else {
        Q_EMIT ReportNotSuccessful();
    }
    // Only now: a dialog may have ended while the signals above were due.
    report->SetFateHandler([guard](const ReportOutcome &outcome) { TellFate(guard, outcome); });
    return isSuccessful;
}

bool VCReporting::CreateReport(XmlCreateReport &report, const QString &reportPath)
{
    const QPointer<VCReporting> guard(this);
    const auto letGo = qScopeGuard([&guard] {
        if (guard != nullptr) {
            guard->EndSources();
        }
    });
    report.SetValidOutput(m_bValidOutput);
    report.SetKeepUnsavedDialog(m_bKeepUnsavedDialog);
    report.SetCollectOutcome(isSignalConnected(QMetaMethod::fromSignal(&VCReporting::ReportFinished)));
    return report.CreateXmlFromSchema(m_sSchemaPath, reportPath, m_bShowCommentDialog);
}

void VCReporting::SlotCheckFileAndDirectory()
{
    const bool isAvailable = Exists(m_sSchemaPath) && Exists(m_sReportDirectory);
    const QPointer<VCReporting> guard(this);
    if (m_pReportButton != nullptr && m_pReportButton->isEnabled() != isAvailable) {
        SetButtonEnabled(isAvailable);
    }
    if (guard != nullptr) {
        Q_EMIT ReportDirAndSchemaAvailable(isAvailable);
    }
}

void VCReporting::SetInputPathToSchema(QString path)
{
    const QString directory = QCoreApplication::applicationDirPath();
    const bool isBareName = !path.contains(kSlash) && !path.contains(kBackslash);
    m_sSchemaPath = isBareName && !directory.isEmpty() ? directory + kSlash + path : path;
}

void VCReporting::MakeReportButton()
{
    m_pReportButton = new VCButton(this, tr("To Report (Shift+F10)"), false);
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_pReportButton);
    if (m_Pixmap.isNull()) {
        m_pReportButton->SetDefaultPicture(notepad);
    } else {
        m_pReportButton->setIcon(QIcon(m_Pixmap));
    }
    m_pReportButton->setEnabled(true);
    connect(m_pReportButton, &VCButton::clicked, this, &VCReporting::SlotToReport);
    m_pButtonFilter = std::make_shared<ButtonFilter>(m_pReportButton);
    // Before a host hears of its end, which is before the pointer would be cleared.
    connect(m_pReportButton, &QObject::destroyed, this, [this] { m_pReportButton.clear(); });
}

// A button that is disabled loses the focus, and a host may follow that.
void VCReporting::SetButtonEnabled(bool enable)
{
    const std::shared_ptr<QObject> use = m_pButtonFilter;
    m_pReportButton->setEnabled(enable);
}

// The host's clock and no other names the file, so that a report can be found by the time that the host shows.
QString VCReporting::MakeReportPath() const
{
    const Orvo::DateTime now(OrvoOS::Create().GetTime());
    const QString fileName = now.toString(QLatin1String("yyyy-MM-dd_hh-mm-ss-z")) + QLatin1String(".xml");
    return m_sReportDirectory.endsWith(kBackslash) ? m_sReportDirectory + fileName
                                                   : m_sReportDirectory + kBackslash + fileName;
}

#include "control/reportkeeper.h"

#include "report/xmlcreatereport.h"

#include <QCoreApplication>
#include <QDialog>
#include <QEvent>

#include <algorithm>

namespace {

bool HasOpenDialog(const XmlCreateReport &report)
{
    const std::list<QDialog *> dialogs = report.GetCommentDialogs();
    return std::any_of(dialogs.cbegin(), dialogs.cend(), [](const QDialog *dialog) { return !dialog->isHidden(); });
}

} // namespace

ReportKeeper::ReportKeeper()
{
    m_oEndTimer.setSingleShot(true);
    connect(&m_oEndTimer, &QTimer::timeout, this, &ReportKeeper::ReleaseEnded);
    qAddPostRoutine(&ReportKeeper::EndWithApplication);
}

ReportKeeper::~ReportKeeper()
{
    qRemovePostRoutine(&ReportKeeper::EndWithApplication);
    // Their dialogs hide while they go, which this object still hears of.
    m_lReports.clear();
}

void ReportKeeper::Release(std::unique_ptr<XmlCreateReport> report)
{
    if (report != nullptr && HasOpenDialog(*report)) {
        std::unique_ptr<ReportKeeper> &keeper = Instance();
        if (keeper == nullptr) {
            keeper = std::make_unique<ReportKeeper>();
        }
        keeper->Keep(std::move(report));
    }
}

bool ReportKeeper::eventFilter(QObject *watched, QEvent *event)
{
    // Every end of a dialog hides it: its buttons, its frame, Escape. It is still busy with that, so it goes later.
    if (event->type() == QEvent::Hide && !event->spontaneous()) {
        m_oEndTimer.start();
    }
    return QObject::eventFilter(watched, event);
}

std::unique_ptr<ReportKeeper> &ReportKeeper::Instance()
{
    static std::unique_ptr<ReportKeeper> keeper;
    return keeper;
}

// Widgets can't outlive the application.
void ReportKeeper::EndWithApplication()
{
    Instance().reset();
}

void ReportKeeper::Keep(std::unique_ptr<XmlCreateReport> report)
{
    for (QDialog *dialog : report->GetCommentDialogs()) {
        dialog->installEventFilter(this);
    }
    m_lReports.push_back(std::move(report));
}

void ReportKeeper::ReleaseEnded()
{
    std::list<std::unique_ptr<XmlCreateReport>> ended;
    for (auto report = m_lReports.begin(); report != m_lReports.end();) {
        const auto current = report++;
        if (!HasOpenDialog(**current)) {
            ended.splice(ended.end(), m_lReports, current);
        }
    }
}

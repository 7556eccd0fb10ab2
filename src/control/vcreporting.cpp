#include "control/vcreporting.h"

#include "control/itemindex.h"
#include "control/notepadpicture.h"
#include "control/reportdata.h"
#include "control/reportkeeper.h"
#include "host/tessaly.h"
#include "host/veldra.h"
#include "report/xmlcreatereport.h"

#include <QCoreApplication>
#include <QDir>
#include <QHBoxLayout>
#include <QTimer>
#include <QToolBar>

#include <utility>

namespace {

const QLatin1Char kSlash('/');
const QLatin1Char kBackslash('\\');

/// A path as the file system is asked for it.
QString ToPollPath(QString path)
{
    if (path.contains(kBackslash)) {
        if (path.endsWith(kBackslash)) {
            path.chop(1);
        }
        path.replace(kBackslash, kSlash);
    }
    return path;
}

bool Exists(const QString &path)
{
    const QString pollPath = ToPollPath(path);
    // Qt warns of an empty name, and the poll comes every ten seconds.
    return !pollPath.isEmpty() && QDir(QString()).exists(pollPath);
}

/// Ends an object ahead of its parent.
template <typename Object>
void End(const QPointer<Object> &object)
{
    const std::unique_ptr<Object> ended(object.data());
}

} // namespace

VCReporting::VCReporting(QString schema, QString reportDirectory, QToolBar *toolBar, bool showButton,
                         const char *objectName, bool deleteAfterUse, QPixmap icon)
    : QWidget(toolBar)
    , m_Pixmap(icon)
    , m_bDeleteAfterUse(deleteAfterUse)
    , m_sReportDirectory(reportDirectory.replace(kSlash, kBackslash))
    , m_pItemIndex(std::make_unique<ItemIndex>())
{
    setObjectName(QLatin1String(objectName));
    SetInputPathToSchema(schema);
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
    End(m_pReportButton);
    if (m_pCheckTimer != nullptr) {
        m_pCheckTimer->stop();
    }
    End(m_pCheckTimer);
    ReportKeeper::Release(std::move(m_pReport));
}

bool VCReporting::SetSchema(QString schema)
{
    SetInputPathToSchema(schema);
    return true;
}

void VCReporting::EnableReportButton(bool enable)
{
    if (m_pReportButton == nullptr) {
        return;
    }
    if (!enable) {
        m_pCheckTimer->stop();
        m_pReportButton->setEnabled(false);
        return;
    }
    const QPointer<VCReporting> guard(this);
    SlotCheckFileAndDirectory();
    if (guard != nullptr && !m_pCheckTimer->isActive()) {
        m_pCheckTimer->start(m_iCheckInterval);
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
    // Whoever hears one of the signals may delete the control.
    const QPointer<VCReporting> guard(this);
    m_bReporting = true;
    Q_EMIT PrepareToReport();
    if (guard == nullptr) {
        return false;
    }
    const bool isSuccessful = RunReport();
    if (guard != nullptr) {
        m_bReporting = false;
        m_lRetiredItems.clear();
    }
    return isSuccessful;
}

bool VCReporting::RunReport()
{
    if (m_sSchemaPath.right(4) != QLatin1String(".xsd")) {
        return false;
    }
    const QString reportPath = MakeReportPath();
    ReportKeeper::Release(std::move(m_pReport));
    m_pReport = std::make_unique<XmlCreateReport>(this);
    const bool isSuccessful = m_pReport->CreateXmlFromSchema(m_sSchemaPath, reportPath, m_bShowCommentDialog);
    if (isSuccessful) {
        Q_EMIT ReportSuccessful();
    } else {
        Q_EMIT ReportNotSuccessful();
    }
    return isSuccessful;
}

void VCReporting::SlotCheckFileAndDirectory()
{
    const bool isAvailable = Exists(m_sSchemaPath) && Exists(m_sReportDirectory);
    SetButtonEnabled(isAvailable);
    Q_EMIT ReportDirAndSchemaAvailable(isAvailable);
}

void VCReporting::SetInputPathToSchema(QString path)
{
    m_sSchemaPath = path;
    if (!path.contains(kSlash) && !path.contains(kBackslash)) {
        const QString directory = QCoreApplication::applicationDirPath();
        if (!directory.isEmpty()) {
            m_sSchemaPath = directory + kSlash + path;
        }
    }
}

void VCReporting::MakeReportButton()
{
    m_pReportButton = new VCButton(this, tr("To Report (Shift+F10)"), false);
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_pReportButton);
    if (m_Pixmap.isNull()) {
        m_pReportButton->SetDefaultPicture(kNotePadPicture);
    } else {
        m_pReportButton->setIcon(QIcon(m_Pixmap));
    }
    m_pReportButton->setEnabled(true);
    connect(m_pReportButton, &VCButton::clicked, this, &VCReporting::SlotToReport);
}

void VCReporting::SetButtonEnabled(bool enable)
{
    if (m_pReportButton != nullptr && m_pReportButton->isEnabled() != enable) {
        m_pReportButton->setEnabled(enable);
    }
}

// The host's clock and no other names the file, so that a report can be found by the time that the host shows.
QString VCReporting::MakeReportPath() const
{
    const Orvo::DateTime now(OrvoOS::Create().GetTime());
    const QString fileName = now.toString(QStringLiteral("yyyy-MM-dd_hh-mm-ss-z")) + QLatin1String(".xml");
    return m_sReportDirectory.endsWith(kBackslash) ? m_sReportDirectory + fileName
                                                   : m_sReportDirectory + kBackslash + fileName;
}

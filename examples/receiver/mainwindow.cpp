#include "mainwindow.h"

#include "measurement.h"
#include "panel.h"
#include "panelfile.h"
#include "reportlist.h"
#include "reportview.h"

#include "control/vcreporting.h"

#include <QCheckBox>
#include <QDir>
#include <QFileInfo>
#include <QGroupBox>
#include <QLabel>
#include <QShortcut>
#include <QSplitter>
#include <QStatusBar>
#include <QToolBar>
#include <QToolButton>
#include <QVBoxLayout>

MainWindow::MainWindow(Measurement &measurement, const QString &schema, const QString &reportFolder,
                       const QString &panelPath)
    : m_oMeasurement(measurement)
    , m_sSchema(schema)
    , m_sReportFolder(reportFolder)
    , m_sPanelPath(panelPath)
    , m_pAvailability(new QLabel(this))
{
    setWindowTitle(tr("Monitoring receiver"));
    m_pAvailability->setObjectName(QStringLiteral("availability"));
    MakeToolBar();
    MakeCentre();
    statusBar()->addWidget(m_pAvailability, 1);
    ConnectControl();
    resize(980, 660);
}

VCReporting &MainWindow::GetControl()
{
    return *m_pControl;
}

void MainWindow::closeEvent(QCloseEvent *event)
{
    if (!m_sPanelPath.isEmpty()) {
        panelfile::Save(m_oMeasurement, m_sPanelPath);
    }
    QMainWindow::closeEvent(event);
}

void MainWindow::MakeToolBar()
{
    QToolBar *toolBar = addToolBar(tr("Report"));
    toolBar->setMovable(false);
    m_pControl = new VCReporting(m_sSchema, m_sReportFolder, toolBar, true, "reporting", false, QPixmap());
    m_oMeasurement.FillControl(*m_pControl);
    toolBar->addWidget(m_pControl);
    QToolButton *button = m_pControl->GetReportButton();
    button->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    setWindowIcon(button->icon());
    // The control brings the text only: the key is the host's.
    auto *shortcut = new QShortcut(QKeySequence(Qt::SHIFT + Qt::Key_F10), this);
    connect(shortcut, &QShortcut::activated, button, &QToolButton::click);

    auto *comment = new QCheckBox(tr("As&k for a comment"), toolBar);
    comment->setObjectName(QStringLiteral("comment"));
    connect(comment, &QCheckBox::toggled, m_pControl, &VCReporting::SetShowCommentDialog);
    toolBar->addSeparator();
    toolBar->addWidget(comment);
}

void MainWindow::MakeCentre()
{
    auto *splitter = new QSplitter(Qt::Horizontal, this);
    splitter->addWidget(new Panel(m_oMeasurement, splitter));
    auto *right = new QSplitter(Qt::Vertical, splitter);
    auto *reports = new QGroupBox(tr("Reports"), right);
    auto *layout = new QVBoxLayout(reports);
    m_pReports = new ReportList(m_sReportFolder, reports);
    layout->addWidget(m_pReports);
    auto *view = new ReportView(right);
    right->addWidget(reports);
    right->addWidget(view);
    right->setSizes({ 160, 420 });
    splitter->setStretchFactor(1, 1);
    setCentralWidget(splitter);
    connect(m_pReports, &ReportList::ReportChosen, view, &ReportView::ShowReport);
}

void MainWindow::ConnectControl()
{
    connect(m_pControl, &VCReporting::ReportDirAndSchemaAvailable, this, &MainWindow::ShowAvailability);
    connect(m_pControl, &VCReporting::ReportSuccessful, this, [this] {
        m_pReports->Refresh();
        statusBar()->showMessage(tr("The report has been made."), 4000);
    });
    connect(m_pControl, &VCReporting::ReportNotSuccessful, this, [this] {
        m_pReports->Refresh();
        statusBar()->showMessage(tr("The schema can't be read: the report is empty."), 8000);
    });
    // The control has polled while it was built, when nobody could hear it.
    m_pControl->EnableReportButton(true);
}

void MainWindow::ShowAvailability(bool isAvailable)
{
    if (isAvailable) {
        m_pAvailability->setText(tr("Ready. Reports go to %1").arg(QDir::toNativeSeparators(m_sReportFolder)));
    } else if (!QFileInfo::exists(m_sSchema)) {
        m_pAvailability->setText(
            tr("No reports: the schema %1 does not exist.").arg(QDir::toNativeSeparators(m_sSchema)));
    } else {
        m_pAvailability->setText(
            tr("No reports: the folder %1 does not exist.").arg(QDir::toNativeSeparators(m_sReportFolder)));
    }
}

#include "mainwindow.h"

#include "commentplacer.h"
#include "measurement.h"
#include "panel.h"
#include "panelfile.h"
#include "reporticon.h"
#include "reportlist.h"
#include "reportview.h"
#include "signaltable.h"

#include "control/vcreporting.h"
#include "events/itagwright.h"
#include "report/reportoutcome.h"

#include <QCheckBox>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLocale>
#include <QPushButton>
#include <QShortcut>
#include <QSplitter>
#include <QStatusBar>
#include <QToolBar>
#include <QToolButton>
#include <QVBoxLayout>

namespace {

bool SpeaksEnglish()
{
    const QLocale::Language language = QLocale().language();
    return language == QLocale::English || language == QLocale::C;
}

/// The system's own dialogs for files speak its language and no other.
QFileDialog::Options DialogOptions()
{
    const bool isOfSystem = QLocale().language() == QLocale::system().language();
    return isOfSystem ? QFileDialog::Options() : QFileDialog::DontUseNativeDialog;
}

/// The library says it in English. Other languages have a sentence for each kind of refusal.
QString ToReason(const ReportOutcome::RefusedValue &refused)
{
    if (SpeaksEnglish()) {
        return refused.m_sReason;
    }
    if (refused.m_iError == ITagwright::CURRENT_VALUE_IS_NOT_VALID) {
        return MainWindow::tr("the schema doesn't allow this value");
    }
    if (refused.m_iError == ITagwright::CURRENT_OCCURRENCE_IS_NOT_VALID) {
        return MainWindow::tr("it may not occur there that often");
    }
    return MainWindow::tr("a value of another kind is expected");
}

} // namespace

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
    m_pAvailability->setIndent(4); // where the messages begin, too
    // A long path doesn't widen the window.
    m_pAvailability->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    new CommentPlacer(this);
    MakeToolBar();
    MakeCentre();
    statusBar()->addWidget(m_pAvailability, 1);
    ConnectControl();
    resize(960, 700);
}

/// What became of a report, in a line for the operator.
QString MainWindow::ToText(const ReportOutcome &outcome)
{
    if (outcome.GetState() == ReportOutcome::State::Dropped) {
        return tr("The report was dropped.");
    }
    if (!outcome.IsSaved()) {
        return tr("The report was not saved: %1").arg(outcome.GetSaveError());
    }
    if (!outcome.IsSchemaRead()) {
        return SpeaksEnglish() ? outcome.GetSchemaError() : tr("The schema can't be read.");
    }
    QStringList parts { tr("Saved as %1.").arg(QFileInfo(outcome.GetPath()).fileName()) };
    for (const ReportOutcome::RefusedValue &refused : outcome.GetRefusedValues()) {
        parts << tr("%1: \"%2\" was not written: %3.").arg(refused.m_sPlace, refused.m_sValue, ToReason(refused));
    }
    for (const QString &place : outcome.GetMissing()) {
        parts << tr("%1 has no value.").arg(place);
    }
    return parts.join(QLatin1Char(' '));
}

VCReporting &MainWindow::GetControl()
{
    return *m_pControl;
}

void MainWindow::SetSchema(const QString &schema)
{
    m_sSchema = schema;
    m_pControl->SetSchema(schema);
    statusBar()->clearMessage(); // it may blame the schema that was
    // The next poll would do it, too, but the operator is looking now.
    m_pControl->EnableReportButton(true);
}

void MainWindow::SetReportFolder(const QString &folder)
{
    m_sReportFolder = folder;
    m_pReports->SetFolder(folder);
    m_pControl->SetReportDirectory(folder);
    m_pControl->EnableReportButton(true);
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
    button->setIcon(MakeReportIcon(button->icon()));
    setWindowIcon(button->icon());
    // The control brings the text only: the key is the host's.
    auto *shortcut = new QShortcut(QKeySequence(Qt::SHIFT + Qt::Key_F10), this);
    connect(shortcut, &QShortcut::activated, button, &QToolButton::click);

    AddToolWidgets(*toolBar);
}

// Buttons of their own, since those that a tool bar makes for its actions can't be reached by the tab key.
void MainWindow::AddToolWidgets(QToolBar &toolBar)
{
    auto *comment = new QCheckBox(tr("As&k for a comment"), &toolBar);
    comment->setObjectName(QStringLiteral("comment"));
    connect(comment, &QCheckBox::toggled, m_pControl, &VCReporting::SetShowCommentDialog);
    auto *schema = new QPushButton(tr("S&chema..."), &toolBar);
    schema->setObjectName(QStringLiteral("schema"));
    connect(schema, &QPushButton::clicked, this, &MainWindow::ChooseSchema);
    auto *folder = new QPushButton(tr("C&hange folder..."), &toolBar);
    folder->setObjectName(QStringLiteral("folder"));
    connect(folder, &QPushButton::clicked, this, &MainWindow::ChooseFolder);
    for (QWidget *widget : std::initializer_list<QWidget *> { comment, schema, folder }) {
        toolBar.addSeparator();
        toolBar.addWidget(widget);
    }
}

void MainWindow::ChooseSchema()
{
    const QString path = QFileDialog::getOpenFileName(this, tr("Choose the schema of the reports"), m_sSchema,
                                                      tr("XML schemas (*.xsd)"), nullptr, DialogOptions());
    if (!path.isEmpty()) {
        SetSchema(path);
    }
}

void MainWindow::ChooseFolder()
{
    const QString folder = QFileDialog::getExistingDirectory(this, tr("Choose the report folder"), m_sReportFolder,
                                                             QFileDialog::ShowDirsOnly | DialogOptions());
    if (!folder.isEmpty()) {
        SetReportFolder(folder);
        panelfile::SaveReportFolder(folder);
    }
}

void MainWindow::MakeCentre()
{
    auto *centre = new QWidget(this);
    auto *row = new QHBoxLayout(centre);
    row->addWidget(new Panel(m_oMeasurement, centre));
    auto *right = new QSplitter(Qt::Vertical, centre);
    auto *noted = new QGroupBox(tr("Si&gnals in the report"), right);
    auto *notedLayout = new QVBoxLayout(noted);
    m_pSignals = new SignalTable(m_oMeasurement, noted);
    notedLayout->addWidget(m_pSignals);
    auto *reports = new QGroupBox(tr("&Reports"), right);
    auto *layout = new QVBoxLayout(reports);
    m_pReports = new ReportList(m_sReportFolder, reports);
    layout->addWidget(m_pReports);
    auto *view = new ReportView(right);
    right->addWidget(noted);
    right->addWidget(reports);
    right->addWidget(view);
    right->setSizes({ 190, 110, 380 });
    row->addWidget(right, 1);
    setCentralWidget(centre);
    connect(m_pReports, &ReportList::ReportChosen, view, &ReportView::ShowReport);
}

void MainWindow::ConnectControl()
{
    connect(m_pControl, &VCReporting::ReportDirAndSchemaAvailable, this, &MainWindow::ShowAvailability);
    connect(m_pControl, &VCReporting::ReportSuccessful, this,
            [this] { statusBar()->showMessage(tr("The report is waiting for its comment.")); });
    connect(m_pControl, &VCReporting::ReportNotSuccessful, this,
            [this] { statusBar()->showMessage(tr("The schema can't be read.")); });
    connect(m_pControl, &VCReporting::ReportFinished, this, [this](const ReportOutcome &outcome) {
        m_pReports->Refresh();
        statusBar()->showMessage(ToText(outcome));
    });
    // The control has polled while it was built, when nobody could hear it. The list shows the newest report then.
    m_pControl->EnableReportButton(true);
}

void MainWindow::ShowAvailability(bool isAvailable)
{
    // The folder may have been away, which nobody tells the list.
    m_pReports->Refresh();
    QString text = tr("Ready. Report folder: %1").arg(QDir::toNativeSeparators(m_sReportFolder));
    if (!QFileInfo::exists(m_sSchema)) {
        text = tr("No reports: the schema %1 does not exist.").arg(QDir::toNativeSeparators(m_sSchema));
    } else if (!m_sSchema.endsWith(QLatin1String(".xsd"))) {
        text = tr("No reports: the name of the schema %1 does not end in \".xsd\".")
                   .arg(QDir::toNativeSeparators(m_sSchema));
    } else if (!isAvailable) {
        text = tr("No reports: the folder %1 does not exist.").arg(QDir::toNativeSeparators(m_sReportFolder));
    }
    if (m_pAvailability->text() != text) {
        // The message about the last report would hide what has changed since.
        statusBar()->clearMessage();
        m_pAvailability->setText(text);
    }
}

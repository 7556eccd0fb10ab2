#include "support/controlrun.h"

#include "host/quilmar.h"

#include <QMainWindow>
#include <QToolButton>
#include <QtTest>

namespace {

// The poll, without the ten seconds of waiting for it.
void Poll(VCReporting &control)
{
    QMetaObject::invokeMethod(control.findChild<QTimer *>(), "timeout");
}

// A control on the tool bar of a window, as a host has it, and what its signals say.
struct Desk
{
    explicit Desk(const ControlRun &run)
        : m_pToolBar(m_oWindow.addToolBar(QStringLiteral("Reports")))
        , m_pControl(run.MakeControl(false, m_pToolBar).release())
    {
        m_pToolBar->addWidget(m_pControl);
        const auto note = [this](const char *name) { return [this, name] { m_lHeard << QLatin1String(name); }; };
        QObject::connect(m_pControl, &VCReporting::PrepareToReport, note("prepare"));
        QObject::connect(m_pControl, &VCReporting::ReportSuccessful, note("good"));
        QObject::connect(m_pControl, &VCReporting::ReportNotSuccessful, note("bad"));
        QObject::connect(m_pControl, &VCReporting::ReportDirAndSchemaAvailable,
                         [this](bool available) { m_lHeard << QLatin1String(available ? "there" : "missing"); });
        m_oWindow.show();
    }

    void Press() { QTest::mouseClick(m_pControl->GetReportButton(), Qt::LeftButton); }
    QString Heard()
    {
        QString heard = m_lHeard.join(QLatin1Char(' '));
        m_lHeard.clear();
        return heard;
    }

    QStringList m_lHeard;
    QMainWindow m_oWindow;
    QToolBar *m_pToolBar;
    QPointer<VCReporting> m_pControl;
};

} // namespace

class TestVcReporting : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void PressMakesAReport();
    void PollFollowsFileAndDirectory();
    void HostSwitchesTheButton();
    void RunsWithoutButton();
    void NamesPaths();
    void RefusesOtherSuffixes();
    void RefusesASecondReportInside();
    void SurvivesItsEndInASlot();
    void TakesChangesWhilePreparing();
    void AddsWholeNodes();
    void TracesWhatIsAdded();
    void LastsForThousandsOfReports();
};

void TestVcReporting::PressMakesAReport()
{
    const ControlRun run;
    Desk desk(run);
    desk.m_pControl->AddExplicitReportData(QStringLiteral("A"), "text", 1, QString(), 0, QString());
    desk.Press();
    desk.Press();
    QCOMPARE(desk.Heard(), QStringLiteral("prepare good prepare good"));
    QCOMPARE(run.Reports(), Texts({ "2024-05-06_07-08-09-0.xml", "2024-05-06_07-08-09-001.xml" }));
    QCOMPARE(run.LatestReport(), QStringLiteral("<R><A>text</A></R>"));

    run.WriteSchema(QStringLiteral("garbage"));
    desk.Press();
    QCOMPARE(desk.Heard(), QStringLiteral("prepare bad"));
    QVERIFY(run.LatestReport().isEmpty());
}

void TestVcReporting::PollFollowsFileAndDirectory()
{
    const ControlRun run;
    Desk desk(run);
    QCOMPARE(desk.m_pControl->findChild<QTimer *>()->interval(), 10000);
    const auto poll = [&] {
        Poll(*desk.m_pControl);
        return desk.Heard() + QLatin1String(desk.m_pControl->GetReportButton()->isEnabled() ? " on" : " off");
    };
    QCOMPARE(poll(), QStringLiteral("there on"));
    QCOMPARE(poll(), QStringLiteral("there on"));
    QVERIFY(QFile::rename(run.SchemaPath(), run.SchemaPath() + QStringLiteral("~")));
    QCOMPARE(poll(), QStringLiteral("missing off"));
    desk.Press();
    QCOMPARE(poll(), QStringLiteral("missing off"));
    QVERIFY(QFile::rename(run.SchemaPath() + QStringLiteral("~"), run.SchemaPath()));
    QCOMPARE(poll(), QStringLiteral("there on"));
    QVERIFY(QDir().rmdir(run.ReportFolder()));
    QCOMPARE(poll(), QStringLiteral("missing off"));
    // Asked directly, the control runs all the same, and says what it read.
    QVERIFY(desk.m_pControl->SlotToReport());
    QVERIFY(!QDir(run.ReportFolder()).exists());
}

void TestVcReporting::HostSwitchesTheButton()
{
    const ControlRun run;
    Desk desk(run);
    const QTimer *timer = desk.m_pControl->findChild<QTimer *>();
    const QToolButton *button = desk.m_pControl->GetReportButton();
    desk.m_pControl->EnableReportButton(false);
    QVERIFY(!button->isEnabled() && !timer->isActive());
    desk.m_pControl->SetSchema(run.ReportFolder() + QStringLiteral("/none.xsd"));
    desk.m_pControl->EnableReportButton(true);
    QVERIFY(!button->isEnabled() && timer->isActive());
    desk.m_pControl->SetSchema(run.SchemaPath());
    QVERIFY(!button->isEnabled());
    desk.m_pControl->EnableReportButton(true);
    QVERIFY(button->isEnabled() && timer->isActive());
    QCOMPARE(desk.Heard(), QStringLiteral("missing there"));
}

void TestVcReporting::RunsWithoutButton()
{
    const ControlRun run;
    VCReporting control(run.SchemaPath(), run.ReportFolder(), nullptr, false, nullptr, false, QPixmap());
    QSignalSpy available(&control, &VCReporting::ReportDirAndSchemaAvailable);
    QVERIFY(control.isHidden() && control.GetReportButton() == nullptr);
    control.EnableReportButton(false);
    QVERIFY(control.findChild<QTimer *>()->isActive());
    control.EnableReportButton(true);
    QVERIFY(available.isEmpty());
    Poll(control);
    QCOMPARE(available.size(), 1);
    QVERIFY(control.SlotToReport());
    QCOMPARE(run.Reports().size(), 1);
}

void TestVcReporting::NamesPaths()
{
    const ControlRun run;
    const QString folder = QFileInfo(run.SchemaPath()).path();
    VCReporting control(folder + QStringLiteral("\\schema.xsd"), folder + QStringLiteral("/reports/"), nullptr, true,
                        nullptr, false, QPixmap());
    QVERIFY(control.GetReportButton()->isEnabled());
    QVERIFY(control.SlotToReport());
    QCOMPARE(run.Reports().size(), 1);

    // A bare name is looked for beside the program.
    const QString bare = QCoreApplication::applicationDirPath() + QStringLiteral("/tst_vcreporting_bare.xsd");
    QFile::remove(bare);
    QVERIFY(QFile::copy(run.SchemaPath(), bare));
    control.SetSchema(QStringLiteral("tst_vcreporting_bare.xsd"));
    QVERIFY(control.SlotToReport());
    QVERIFY(QFile::remove(bare));
}

void TestVcReporting::RefusesOtherSuffixes()
{
    const ControlRun run;
    Desk desk(run);
    const QString capitals = QFileInfo(run.SchemaPath()).path() + QStringLiteral("/schema.XSD");
    QVERIFY(QFile::copy(run.SchemaPath(), capitals));
    desk.m_pControl->SetSchema(capitals);
    Poll(*desk.m_pControl);
    QVERIFY(desk.m_pControl->GetReportButton()->isEnabled());
    desk.Press();
    QCOMPARE(desk.Heard(), QStringLiteral("there prepare"));
    QVERIFY(run.Reports().isEmpty());
    // The refusal doesn't stick.
    desk.m_pControl->SetSchema(run.SchemaPath());
    QVERIFY(desk.m_pControl->SlotToReport());
}

void TestVcReporting::RefusesASecondReportInside()
{
    const ControlRun run;
    Desk desk(run);
    QList<bool> results;
    const auto again = [&] { results << desk.m_pControl->SlotToReport(); };
    connect(desk.m_pControl, &VCReporting::PrepareToReport, again);
    connect(desk.m_pControl, &VCReporting::ReportSuccessful, again);
    QVERIFY(desk.m_pControl->SlotToReport());
    QCOMPARE(results, QList<bool>({ false, false }));
    QCOMPARE(desk.Heard(), QStringLiteral("prepare good"));
    QCOMPARE(run.Reports().size(), 1);
}

void TestVcReporting::SurvivesItsEndInASlot()
{
    for (int signal = 0; signal < 4; ++signal) {
        const ControlRun run;
        Desk desk(run);
        const auto end = [&desk] { delete desk.m_pControl; };
        if (signal == 0) {
            connect(desk.m_pControl, &VCReporting::PrepareToReport, end);
        } else if (signal == 1) {
            connect(desk.m_pControl, &VCReporting::ReportSuccessful, end);
        } else if (signal == 2) {
            run.WriteSchema(QString());
            connect(desk.m_pControl, &VCReporting::ReportNotSuccessful, end);
        } else {
            connect(desk.m_pControl, &VCReporting::ReportDirAndSchemaAvailable, end);
            desk.m_pControl->EnableReportButton(true);
        }
        if (desk.m_pControl != nullptr) {
            desk.Press();
        }
        QVERIFY(desk.m_pControl.isNull());
        QCOMPARE(run.Reports().size(), signal == 1 || signal == 2 ? 1 : 0);
    }
}

void TestVcReporting::TakesChangesWhilePreparing()
{
    const ControlRun run(QStringLiteral("<xs:element name='A' type='xs:string'/><xs:element name='B' "
                                        "type='xs:string'/><xs:element name='C' type='xs:string'/>"));
    Desk desk(run);
    VCReporting &control = *desk.m_pControl;
    for (const char *name : { "A", "B", "A", "C" }) {
        control.AddExplicitReportData(QString::fromLatin1(name), "old", 1, QString(), 0, QString());
    }
    connect(&control, &VCReporting::PrepareToReport, [&control] {
        control.DeleteReportData(QStringLiteral("A"));
        control.DeleteReportData(QStringLiteral("unknown"));
        control.DeleteReportData(QStringLiteral("C"));
        control.AddExplicitReportData(QStringLiteral("C"), "new", 1, QString(), 0, QString());
    });
    desk.Press();
    QCOMPARE(run.LatestReport(), QStringLiteral("<R><A type='string'/><B>old</B><C>new</C></R>"));
    disconnect(&control, &VCReporting::PrepareToReport, nullptr, nullptr);
    control.ClearReportData();
    control.ClearReportData();
    control.AddExplicitReportData(QStringLiteral("A"), "again", 1, QString(), 0, QString());
    desk.Press();
    QCOMPARE(run.LatestReport(), QStringLiteral("<R><A>again</A><B type='string'/><C type='string'/></R>"));
}

void TestVcReporting::AddsWholeNodes()
{
    values::MemoryTree tree;
    values::Tree::Install(&tree);
    tree.SetText(QStringLiteral("Station/A"), QStringLiteral("one"));
    tree.SetText(QStringLiteral("Station/Deep/B"), QStringLiteral("two"));
    tree.SetText(QStringLiteral("Station/C"), QStringLiteral("three"));
    {
        const ControlRun run;
        const auto control = run.MakeControl();
        const TraceCapture log;
        control->AddReportData(nullptr);
        control->AddReportData(tree.AddNode(QStringLiteral("Station")));
        QCOMPARE(TraceCapture::Lines(),
                 Texts({ "VCReporting::AddReportData(A, Station/A, , , 0, )",
                         "VCReporting::AddReportData(B, Station/Deep/B, , , 0, )",
                         "VCReporting::AddReportData(C, Station/C, , , 0, )" }));
        tree.SetText(QStringLiteral("Station/A"), QStringLiteral("four"));
        QVERIFY(control->SlotToReport());
        QCOMPARE(run.LatestReport(), QStringLiteral("<R><A>four</A></R>"));
    }
    values::Tree::Install(nullptr);
}

void TestVcReporting::TracesWhatIsAdded()
{
    const ControlRun run;
    const auto control = run.MakeControl();
    const auto add = [&](auto value) {
        control->AddExplicitReportData(QStringLiteral("Ä"), value, 2, QStringLiteral("note"), 1, QStringLiteral("µV"));
    };
    const TraceCapture log;
    add("text");
    add(2.5);
    add(true);
    add(-7);
    add(5000000000L);
    QCOMPARE(TraceCapture::Lines(),
             Texts({ "VCReporting::AddExplicitReportData(Ä, text, note, 1, µV)",
                     "VCReporting::AddExplicitReportData(Ä, 2.50, note, 1, µV)",
                     "VCReporting::AddExplicitReportData(Ä, true, note, 1, µV)",
                     "VCReporting::AddExplicitReportData(Ä, -7, note, 1, µV)",
                     "VCReporting::AddExplicitReportData(Ä, 5000000000, note, 1, µV)" }));
}

void TestVcReporting::LastsForThousandsOfReports()
{
    const ControlRun run;
    const auto control = run.MakeControl(true);
    for (int i = 0; i < 2000; ++i) {
        control->AddExplicitReportData(QStringLiteral("A"), i % 2 == 0 ? "even" : "odd", 1, QString(), 0, QString());
        QVERIFY(control->SlotToReport());
    }
    QCOMPARE(run.Reports().size(), 2000);
    QCOMPARE(run.LatestReport(), QStringLiteral("<R><A>odd</A></R>"));
}

QTEST_MAIN(TestVcReporting)
#include "tst_vcreporting.moc"

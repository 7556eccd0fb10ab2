#include "support/controlrun.h"

#include "host/quilmar.h"

#include <QToolButton>
#include <QtTest>

namespace {

/// The poll, without the ten seconds of waiting for it.
void Poll(VCReporting &control)
{
    QMetaObject::invokeMethod(control.findChild<QTimer *>(), "timeout");
}

void AddText(VCReporting &control, const char *name, const char *text)
{
    control.AddExplicitReportData(QLatin1String(name), text, 1, QString(), 0, QString());
}

/// A control on the tool bar of a window, as a host has it, and what its signals say.
struct Desk
{
    explicit Desk(const ControlRun &run)
        : m_pControl(run.MakeControl(false, &m_oToolBar).release())
    {
        const auto note = [this](const char *name) { return [this, name] { m_lHeard << QLatin1String(name); }; };
        QObject::connect(m_pControl, &VCReporting::PrepareToReport, note("prepare"));
        QObject::connect(m_pControl, &VCReporting::ReportSuccessful, note("good"));
        QObject::connect(m_pControl, &VCReporting::ReportNotSuccessful, note("bad"));
        QObject::connect(m_pControl, &VCReporting::ReportDirAndSchemaAvailable,
                         [this](bool available) { m_lHeard << QLatin1String(available ? "there" : "missing"); });
        m_oToolBar.addWidget(m_pControl);
        m_oToolBar.show();
    }

    void Press() { QTest::mouseClick(m_pControl->GetReportButton(), Qt::LeftButton); }

    /// What has been heard since the last look, and what the button is now.
    QString Heard()
    {
        m_lHeard << QLatin1String(m_pControl->GetReportButton()->isEnabled() ? "on" : "off");
        const QString heard = m_lHeard.join(QLatin1Char(' '));
        m_lHeard.clear();
        return heard;
    }

    QStringList m_lHeard;
    QToolBar m_oToolBar;
    QPointer<VCReporting> m_pControl;
};

} // namespace

class TestVcReporting : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void PressMakesAReport()
    {
        const ControlRun run;
        Desk desk(run);
        QList<bool> inside;
        const auto again = [&] { inside << desk.m_pControl->SlotToReport(); };
        connect(desk.m_pControl, &VCReporting::PrepareToReport, again);
        connect(desk.m_pControl, &VCReporting::ReportSuccessful, again);
        AddText(*desk.m_pControl, "A", "µ");
        desk.Press();
        desk.Press();
        QCOMPARE(desk.Heard(), QStringLiteral("prepare good prepare good on"));
        QCOMPARE(inside, QList<bool>({ false, false, false, false }));
        QCOMPARE(run.Reports(), Texts({ "2024-05-06_07-08-09-0.xml", "2024-05-06_07-08-09-001.xml" }));
        QCOMPARE(run.LatestReport(), QStringLiteral("<R><A>µ</A></R>"));
        run.WriteSchema(QStringLiteral("garbage"));
        desk.Press();
        QCOMPARE(desk.Heard(), QStringLiteral("prepare bad on"));
        QVERIFY(run.LatestReport().isEmpty());
    }

    void PollFollowsFileDirectoryAndHost()
    {
        const ControlRun run;
        const QString away = run.SchemaPath() + QLatin1Char('~');
        Desk desk(run);
        const QTimer *timer = desk.m_pControl->findChild<QTimer *>();
        QCOMPARE(timer->interval(), 10000);
        const auto poll = [&] {
            Poll(*desk.m_pControl);
            return desk.Heard();
        };
        QCOMPARE(poll(), QStringLiteral("there on"));
        QVERIFY(QFile::rename(run.SchemaPath(), away));
        QCOMPARE(poll(), QStringLiteral("missing off"));
        desk.Press();
        desk.m_pControl->SetSchema(away);
        QCOMPARE(desk.Heard(), QStringLiteral("off"));
        QCOMPARE(poll(), QStringLiteral("there on"));
        desk.m_pControl->EnableReportButton(false);
        QVERIFY(!timer->isActive());
        QCOMPARE(desk.Heard(), QStringLiteral("off"));
        desk.m_pControl->EnableReportButton(true);
        QCOMPARE(desk.Heard(), QStringLiteral("there on"));
        QVERIFY(QDir().rmdir(run.ReportFolder()));
        desk.m_pControl->EnableReportButton(true);
        QCOMPARE(desk.Heard(), QStringLiteral("missing off"));
        QVERIFY(timer->isActive());
        // Asked directly, the control runs all the same, and says what it read.
        QVERIFY(QFile::rename(away, run.SchemaPath()) && desk.m_pControl->SetSchema(run.SchemaPath()));
        QVERIFY(desk.m_pControl->SlotToReport());
        QVERIFY(!QDir(run.ReportFolder()).exists());
    }

    void RunsWithoutButton()
    {
        const ControlRun run;
        VCReporting control(run.SchemaPath(), run.ReportFolder(), nullptr, false, nullptr, false, QPixmap());
        QSignalSpy available(&control, &VCReporting::ReportDirAndSchemaAvailable);
        QVERIFY(control.isHidden() && control.GetReportButton() == nullptr);
        control.EnableReportButton(false);
        control.EnableReportButton(true);
        QVERIFY(available.isEmpty() && control.findChild<QTimer *>()->isActive());
        Poll(control);
        QCOMPARE(available.size(), 1);
        QVERIFY(control.SlotToReport());
        QCOMPARE(run.Reports().size(), 1);
    }

    void NamesPaths()
    {
        const ControlRun run;
        const QString folder = QFileInfo(run.SchemaPath()).path();
        VCReporting control(folder + QStringLiteral("\\schema.xsd"), folder + QStringLiteral("/reports/"), nullptr,
                            true, nullptr, false, QPixmap());
        QVERIFY(control.GetReportButton()->isEnabled() && control.SlotToReport());
        QCOMPARE(run.Reports().size(), 1);

        // A bare name is looked for beside the program, and only small letters are a suffix.
        const QString bare = QCoreApplication::applicationDirPath() + QStringLiteral("/tst_vcreporting_bare.xsd");
        const QString capitals = folder + QStringLiteral("/schema.XSD");
        QFile::remove(bare);
        QVERIFY(QFile::copy(run.SchemaPath(), bare) && QFile::copy(run.SchemaPath(), capitals));
        control.SetSchema(capitals);
        QVERIFY(!control.SlotToReport());
        control.SetSchema(QStringLiteral("tst_vcreporting_bare.xsd"));
        QVERIFY(control.SlotToReport());
        QVERIFY(QFile::remove(bare));
        QCOMPARE(run.Reports().size(), 2);
    }

    void SurvivesItsEndInThePoll()
    {
        const ControlRun run;
        QPointer<VCReporting> control = run.MakeControl().release();
        connect(control, &VCReporting::ReportDirAndSchemaAvailable, [&control] { delete control; });
        control->EnableReportButton(true);
        QVERIFY(control.isNull());
    }

    void TakesChangesWhilePreparing()
    {
        const ControlRun run(QStringLiteral("<xs:element name='A' type='xs:string'/><xs:element name='B' "
                                            "type='xs:string'/><xs:element name='C' type='xs:string'/>"));
        const auto control = run.MakeControl();
        for (const char *name : { "A", "B", "A", "C" }) {
            AddText(*control, name, "old");
        }
        connect(control.get(), &VCReporting::PrepareToReport, [&control] {
            control->DeleteReportData(QStringLiteral("A"));
            control->DeleteReportData(QStringLiteral("C"));
            AddText(*control, "C", "new");
        });
        QVERIFY(control->SlotToReport());
        QCOMPARE(run.LatestReport(), QStringLiteral("<R><A type='string'/><B>old</B><C>new</C></R>"));
    }

    void AddsWholeNodes()
    {
        values::MemoryTree tree;
        values::Tree::Install(&tree);
        for (const char *path : { "Station/A", "Station/Deep/B", "Station/C" }) {
            tree.SetText(QLatin1String(path), QStringLiteral("one"));
        }
        const ControlRun run;
        const auto control = run.MakeControl();
        const TraceCapture log;
        control->AddReportData(nullptr);
        control->AddReportData(tree.AddNode(QStringLiteral("Station")));
        control->AddExplicitReportData(QStringLiteral("Ä"), 2.5, 2, QStringLiteral("note"), 1, QStringLiteral("µV"));
        control->AddExplicitReportData(QStringLiteral("Ä"), 5000000000L, 2, QString(), 1, QString());
        QCOMPARE(TraceCapture::Lines(),
                 Texts({ "VCReporting::AddReportData(A, Station/A, , , 0, )",
                         "VCReporting::AddReportData(B, Station/Deep/B, , , 0, )",
                         "VCReporting::AddReportData(C, Station/C, , , 0, )",
                         "VCReporting::AddExplicitReportData(Ä, 2.50, note, 1, µV)",
                         "VCReporting::AddExplicitReportData(Ä, 5000000000, , 1, )" }));
        tree.SetText(QStringLiteral("Station/A"), QStringLiteral("four"));
        QVERIFY(control->SlotToReport());
        QCOMPARE(run.LatestReport(), QStringLiteral("<R><A>four</A></R>"));
    }
};

QTEST_MAIN(TestVcReporting)
#include "tst_vcreporting.moc"

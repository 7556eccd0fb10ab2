#include "support/desk.h"

#include "host/quilmar.h"

#include <QtTest>

namespace {

/// What has been heard, and what the button is now.
QString State(Desk &desk)
{
    return desk.Heard() + QLatin1String(desk.m_pButton->isEnabled() ? " on" : " off");
}

} // namespace

class TestVcReporting : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void PressMakesAReport()
    {
        Desk desk;
        QList<bool> inside;
        const auto again = [&] { inside << desk.m_pControl->SlotToReport(); };
        connect(desk.m_pControl.get(), &VCReporting::PrepareToReport, again);
        connect(desk.m_pControl.get(), &VCReporting::ReportSuccessful, again);
        desk.AddText("A", "µ");
        desk.Press();
        desk.Press();
        QCOMPARE(State(desk), QStringLiteral("prepare good saved prepare good saved on"));
        QCOMPARE(inside, QList<bool>({ false, false, false, false }));
        QCOMPARE(desk.Reports().join(QLatin1Char(' ')),
                 QStringLiteral("2024-05-06_07-08-09-0.xml 2024-05-06_07-08-09-001.xml"));
        QCOMPARE(desk.LatestReport(), QStringLiteral("<R><A>µ</A></R>"));
    }

    void PollFollowsFileDirectoryAndHost()
    {
        Desk desk;
        const QString away = desk.SchemaPath() + QLatin1Char('~');
        const QTimer *timer = desk.m_pControl->findChild<QTimer *>();
        QCOMPARE(timer->interval(), 10000);
        const auto poll = [&] {
            desk.Poll();
            return State(desk);
        };
        QCOMPARE(poll(), QStringLiteral("there on"));
        QVERIFY(QFile::rename(desk.SchemaPath(), away));
        QCOMPARE(poll(), QStringLiteral("missing off"));
        desk.Press();
        desk.m_pControl->SetSchema(away);
        QCOMPARE(State(desk), QStringLiteral(" off"));
        QCOMPARE(poll(), QStringLiteral("there on"));
        desk.m_pControl->EnableReportButton(false);
        QVERIFY(!timer->isActive());
        QCOMPARE(State(desk), QStringLiteral(" off"));
        desk.m_pControl->EnableReportButton(true);
        QCOMPARE(State(desk), QStringLiteral("there on"));
        QVERIFY(QDir().rmdir(desk.ReportFolder()));
        desk.m_pControl->EnableReportButton(true);
        QCOMPARE(State(desk), QStringLiteral("missing off"));
        QVERIFY(timer->isActive());
        // A tool bar doesn't bring back what was disabled meanwhile.
        desk.m_oToolBar.setEnabled(false);
        desk.m_pControl->EnableReportButton(false);
        desk.m_oToolBar.setEnabled(true);
        QCOMPARE(State(desk), QStringLiteral(" off"));
        // Asked directly, the control runs all the same, and says what it read.
        QVERIFY(QFile::rename(away, desk.SchemaPath()) && desk.m_pControl->SetSchema(desk.SchemaPath()));
        QVERIFY(desk.m_pControl->SlotToReport());
        QVERIFY(!QDir(desk.ReportFolder()).exists());
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
        QMetaObject::invokeMethod(control.findChild<QTimer *>(), "timeout");
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

    void TakesChangesWhilePreparing()
    {
        const Desk desk(QStringLiteral("<t A/><t B/><t C/>"));
        for (const char *name : { "A", "B", "A", "C" }) {
            desk.AddText(name, "old");
        }
        connect(desk.m_pControl.get(), &VCReporting::PrepareToReport, [&desk] {
            desk.m_pControl->DeleteReportData(QStringLiteral("A"));
            desk.m_pControl->DeleteReportData(QStringLiteral("C"));
            desk.AddText("C", "new");
        });
        QVERIFY(desk.m_pControl->SlotToReport());
        QCOMPARE(desk.LatestReport(), QStringLiteral("<R><A type='string'/><B>old</B><C>new</C></R>"));
    }

    void AddsWholeNodes()
    {
        values::MemoryTree tree;
        values::Tree::Install(&tree);
        for (const char *path : { "Station/A", "Station/Deep/B", "Station/C" }) {
            tree.SetText(QLatin1String(path), QStringLiteral("one"));
        }
        const ControlRun run(QStringLiteral("<t A/><e L type=xs:string min=0/>"));
        const auto control = run.MakeControl();
        const TraceCapture log;
        control->AddReportData(nullptr);
        control->AddReportData(tree.AddNode(QStringLiteral("Station")));
        control->AddExplicitReportData(QStringLiteral("Ä"), 2.5, 2, QStringLiteral("note"), 1, QStringLiteral("µV"));
        control->AddExplicitReportData(QStringLiteral("L"), 5000000000L, 2, QString(), 1, QString());
        QCOMPARE(TraceCapture::Text(),
                 QStringLiteral("VCReporting::AddReportData(A, Station/A, , , 0, )\n"
                                "VCReporting::AddReportData(B, Station/Deep/B, , , 0, )\n"
                                "VCReporting::AddReportData(C, Station/C, , , 0, )\n"
                                "VCReporting::AddExplicitReportData(Ä, 2.50, note, 1, µV)\n"
                                "VCReporting::AddExplicitReportData(L, 5000000000, , 1, )"));
        tree.SetText(QStringLiteral("Station/A"), QStringLiteral("four"));
        QVERIFY(control->SlotToReport());
        QCOMPARE(run.LatestReport(), QStringLiteral("<R><A>four</A></R>"));
        QVERIFY(TraceCapture::Lines().contains(
            QStringLiteral("/R/L: the value \"5000000000\" was not written: it needs more than 32 bits.")));
    }
};

QTEST_MAIN(TestVcReporting)
#include "tst_vcreporting.moc"

#include "support/controlrun.h"
#include "support/fulldisk.h"
#include "support/reportrun.h"

#include "control/commentdialogimpl.h"

#include <QApplication>
#include <QPushButton>
#include <QTextEdit>
#include <QToolButton>
#include <QtTest>

#include <functional>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

// What can go wrong around the library while a host runs it for years, with the real thing in place of a mock: full and
// read-only directories, broken schemas, odd paths, clocks that go back, hosts and receivers that take away what is in
// use. Each time the fault must end as the interface says, and must cost nobody else a report.

namespace {

/// Does harm and gives what undoes it; nothing where this system doesn't let it happen.
using Undo = std::function<void()>;
using Harm = std::function<Undo(const ControlRun &)>;

QByteArray FileBytes(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("unreadable");
}

void WriteFile(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
}

/// Puts something else into the place of the report folder.
Harm InPlaceOfTheFolder(const std::function<void(const QString &)> &put)
{
    return [put](const ControlRun &run) -> Undo {
        const QString folder = run.ReportFolder();
        const QString aside = folder + QLatin1Char('~');
        QDir().rename(folder, aside);
        put(folder);
        return [folder, aside] {
            QFile::remove(folder);
            QDir().rename(aside, folder);
        };
    };
}

Undo FillDisk(const ControlRun &)
{
    const auto disk = std::make_shared<std::unique_ptr<FullDisk>>(std::make_unique<FullDisk>(16));
    return [disk] { disk->reset(); };
}

Undo MountFullFileSystem(const ControlRun &run)
{
    const QByteArray folder = QFile::encodeName(run.ReportFolder());
    if (mount("tmpfs", folder.constData(), "tmpfs", 0, "size=4k") != 0) {
        return Undo();
    }
    WriteFile(run.ReportFolder() + QLatin1String("/filler"), QByteArray(4096, 'x'));
    return [folder] { umount(folder.constData()); };
}

// The administrator writes everywhere, so the test is somebody else for a while.
Undo TakeRightsAway(const ControlRun &run)
{
    const QByteArray folder = QFile::encodeName(run.ReportFolder());
    const QByteArray top = QFile::encodeName(QFileInfo(run.SchemaPath()).path());
    chmod(top.constData(), 0755);
    chmod(folder.constData(), 0555);
    const bool isAdministrator = geteuid() == 0;
    if (isAdministrator && seteuid(65534) != 0) {
        return Undo();
    }
    Undo undo = [folder, isAdministrator] {
        QVERIFY(!isAdministrator || seteuid(0) == 0);
        chmod(folder.constData(), 0755);
    };
    if (!QFile(run.SchemaPath()).open(QIODevice::ReadOnly)) {
        undo(); // the place for temporary files is the administrator's own
        return Undo();
    }
    return undo;
}

Undo TakeTheName(const ControlRun &run)
{
    QDir(run.ReportFolder()).mkdir(QStringLiteral("2024-05-06_07-08-09-001.xml"));
    return [] {};
}

/// The comment dialogs that are open.
QList<CommentDialogImpl *> Dialogs()
{
    QList<CommentDialogImpl *> dialogs;
    for (QWidget *widget : QApplication::topLevelWidgets()) {
        if (auto *dialog = qobject_cast<CommentDialogImpl *>(widget)) {
            if (dialog->isVisible()) {
                dialogs << dialog;
            }
        }
    }
    return dialogs;
}

/// What a receiver may do to the document behind the back of the walk, when "v" is announced: "remove p", "before v".
void ChangeDocument(const QString &order, QDomElement v)
{
    QDomDocument document = v.ownerDocument();
    const QMap<QString, QDomNode> nodes { { QStringLiteral("u"), v.previousSibling() },
                                          { QStringLiteral("v"), v },
                                          { QStringLiteral("w"), v.nextSibling() },
                                          { QStringLiteral("p"), v.parentNode() },
                                          { QStringLiteral("R"), document.documentElement() },
                                          { QStringLiteral("document"), document } };
    const QString verb = order.section(QLatin1Char(' '), 0, 0);
    QDomNode node = nodes.value(order.section(QLatin1Char(' '), 1));
    QDomNode parent = node.parentNode();
    const QDomNode added = document.createElement(QStringLiteral("new"));
    if (verb == QLatin1String("remove")) {
        parent.removeChild(node);
    } else if (verb == QLatin1String("empty")) {
        while (!node.firstChild().isNull()) {
            node.removeChild(node.firstChild());
        }
    } else if (verb == QLatin1String("replace")) {
        parent.replaceChild(added, node);
    } else if (verb == QLatin1String("before")) {
        parent.insertBefore(added, node);
    } else if (verb == QLatin1String("behind")) {
        parent.insertAfter(added, node);
    } else if (verb == QLatin1String("text-before")) {
        parent.insertBefore(document.createTextNode(QStringLiteral("t")), node);
    } else if (verb == QLatin1String("inside")) {
        node.appendChild(added);
    } else if (verb == QLatin1String("bury")) {
        // Where a parent is destroyed, Qt leaves a child that somebody holds with pointers to its siblings.
        QDomNode grave = document.createElement(QStringLiteral("grave"));
        grave.appendChild(node);
        grave.appendChild(added);
    } else if (verb == QLatin1String("front-of")) {
        node.insertBefore(v, node.firstChild());
    } else {
        QCOMPARE(verb, QStringLiteral("end-of"));
        node.appendChild(v);
    }
}

} // namespace

using Start = void (*)(VCReporting &);
using BreakSchema = void (*)(const QString &);

Q_DECLARE_METATYPE(Harm)
Q_DECLARE_METATYPE(Start)
Q_DECLARE_METATYPE(BreakSchema)

class TestFaults : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void LosesOnlyTheFileThatCannotBeWritten_data();
    void LosesOnlyTheFileThatCannotBeWritten();
    void RecoversFromABrokenSchema_data();
    void RecoversFromABrokenSchema();
    void WorksOnAnyPath_data();
    void WorksOnAnyPath();
    void LastReportOfAStampCounts_data();
    void LastReportOfAStampCounts();
    void WalksADocumentThatChanges_data();
    void WalksADocumentThatChanges();
    void DialogOutlivesAToolBarThatEndsInASlot();
    void MayEndWithItsWindow_data();
    void MayEndWithItsWindow();
};

void TestFaults::LosesOnlyTheFileThatCannotBeWritten_data()
{
    QTest::addColumn<Harm>("harm");
    QTest::addColumn<bool>("dialog");
    for (const bool dialog : { false, true }) {
        const auto row = [dialog](const char *name, const Harm &harm) {
            QTest::addRow("%s%s", name, dialog ? ", with a comment" : "") << harm << dialog;
        };
        row("removed", InPlaceOfTheFolder([](const QString &) {}));
        row("a file in its place", InPlaceOfTheFolder([](const QString &folder) { WriteFile(folder, "file"); }));
        row("nobody's",
            InPlaceOfTheFolder([](const QString &folder) { QFile::link(QStringLiteral("/proc"), folder); }));
        row("read-only", TakeRightsAway);
        row("no room for the whole", FillDisk);
        row("full file system", MountFullFileSystem);
        row("a directory of the report's name", TakeTheName);
    }
}

// Between the poll and the press: the button is still enabled.
void TestFaults::LosesOnlyTheFileThatCannotBeWritten()
{
    QFETCH(Harm, harm);
    QFETCH(bool, dialog);
    const ControlRun run;
    const auto control = run.MakeControl();
    control->AddExplicitReportData(QStringLiteral("A"), "text", 1, QString(), 0, QString());
    QVERIFY(control->SlotToReport());

    control->SetShowCommentDialog(dialog);
    QSignalSpy good(control.get(), &VCReporting::ReportSuccessful);
    const Undo undo = harm(run);
    if (!undo) {
        QSKIP("This needs rights that the test hasn't got.");
    }
    const TraceLog log;
    QTest::mouseClick(control->GetReportButton(), Qt::LeftButton);
    if (dialog) {
        QCOMPARE(Dialogs().size(), 1);
        Dialogs().front()->m_pTextEdit->setPlainText(QStringLiteral("lost"));
        QTest::mouseClick(Dialogs().front()->m_pSaveButton, Qt::LeftButton);
    }
    undo();
    QVERIFY(Dialogs().isEmpty());
    QCOMPARE(good.size(), 1);
    // What the dialog can't save is told to nobody.
    QCOMPARE(TraceLog::Lines().filter(QStringLiteral("could not be saved: ")).size(), dialog ? 0 : 1);
    QCOMPARE(run.Reports(), Texts({ "2024-05-06_07-08-09-0.xml" }));
    QCOMPARE(run.LatestReport(), QStringLiteral("<R><A>text</A></R>"));

    control->SetShowCommentDialog(false);
    QVERIFY(control->SlotToReport());
    QCOMPARE(run.Reports().size(), 2);
    QCOMPARE(run.LatestReport(), QStringLiteral("<R><A>text</A></R>"));
}

void TestFaults::RecoversFromABrokenSchema_data()
{
    QTest::addColumn<BreakSchema>("breakSchema");
    const auto row = [](const char *name, BreakSchema breakSchema) { QTest::newRow(name) << breakSchema; };
    row("empty", [](const QString &path) { WriteFile(path, QByteArray()); });
    row("noise", [](const QString &path) { WriteFile(path, QByteArray("\0\xff\xfe<&%s%n", 9)); });
    row("cut off", [](const QString &path) { WriteFile(path, FileBytes(path).left(150)); });
    row("refers to nothing",
        [](const QString &path) { WriteFile(path, FileBytes(path).replace("xs:string", "Gone")); });
    row("a directory", [](const QString &path) { QVERIFY(QFile::remove(path) && QDir().mkdir(path)); });
    row("gone", [](const QString &path) { QVERIFY(QFile::remove(path)); });
}

// A report that can't be made takes no item with it.
void TestFaults::RecoversFromABrokenSchema()
{
    QFETCH(BreakSchema, breakSchema);
    const ControlRun run;
    const QByteArray schema = FileBytes(run.SchemaPath());
    const auto control = run.MakeControl(true);
    QSignalSpy bad(control.get(), &VCReporting::ReportNotSuccessful);
    control->AddExplicitReportData(QStringLiteral("A"), "first", 1, QString(), 0, QString());
    QVERIFY(control->SlotToReport());
    control->AddExplicitReportData(QStringLiteral("A"), "second", 1, QString(), 0, QString());
    breakSchema(run.SchemaPath());
    QTest::mouseClick(control->GetReportButton(), Qt::LeftButton);
    QCOMPARE(bad.size(), 1);
    QCOMPARE(FileBytes(run.ReportFolder() + QLatin1Char('/') + run.Reports().value(1)), QByteArray());
    QDir().rmdir(run.SchemaPath());
    WriteFile(run.SchemaPath(), schema);
    QVERIFY(control->SlotToReport());
    QCOMPARE(run.Reports().size(), 3);
    QCOMPARE(run.LatestReport(), QStringLiteral("<R><A>second</A></R>"));
}

void TestFaults::WorksOnAnyPath_data()
{
    QTest::addColumn<QString>("folder");
    QTest::newRow("blanks") << QStringLiteral(" two  blanks and one at the end ");
    QTest::newRow("letters") << QStringLiteral("Prüfstand/测量报告/отчёт");
    QTest::newRow("long") << QStringLiteral("%1/%1/%1/%1").arg(QString(50, QLatin1Char('x')));
    QTest::newRow("marks") << QStringLiteral("a&b<c>'d';#%20%1 %2?*");
}

void TestFaults::WorksOnAnyPath()
{
    QFETCH(QString, folder);
    const ControlRun run(QStringLiteral("<xs:element name='A' type='Included'/>"));
    const QString top = QFileInfo(run.SchemaPath()).path() + QLatin1Char('/') + folder;
    if (QFile::decodeName(QFile::encodeName(folder)) != folder) {
        QSKIP("The locale can't name the folder.");
    }
    QVERIFY(QDir().mkpath(top + QLatin1String("/in side")));
    const QString path = top + QLatin1String("/schema.xsd");
    WriteFile(path,
              FileBytes(run.SchemaPath())
                  .replace("<xs:element name='R'", "<xs:include schemaLocation='in side/i.xsd'/>$&")
                  .replace("$&", "<xs:element name='R'"));
    WriteFile(top + QLatin1String("/in side/i.xsd"),
              "<xs:schema xmlns:xs='http://www.w3.org/2001/XMLSchema'><xs:simpleType name='Included'>"
              "<xs:restriction base='xs:string'/></xs:simpleType></xs:schema>");
    for (const QLatin1Char separator : { QLatin1Char('/'), QLatin1Char('\\') }) {
        VCReporting control(QString(path).replace(QLatin1Char('/'), separator),
                            QString(top).replace(QLatin1Char('/'), separator), nullptr, true, nullptr, false,
                            QPixmap());
        control.AddExplicitReportData(QStringLiteral("A"), "text", 1, QString(), 0, QString());
        QVERIFY(control.GetReportButton()->isEnabled());
        QVERIFY(control.SlotToReport());
        const QString report =
            top + QLatin1Char('/') + QDir(top).entryList({ QStringLiteral("*.xml") }, QDir::Files, QDir::Name).last();
        const QDomDocument document = ReadTemplate(QString::fromUtf8(FileBytes(report)));
        QCOMPARE(document.documentElement().text(), QStringLiteral("text"));
        QCOMPARE(document.documentElement().attribute(QStringLiteral("xsi:noNamespaceSchemaLocation")), path);
    }
    WriteFile(path, "<xs:element");
    const TraceLog log;
    XmlCreateReport(run.MakeControl().get()).CreateXmlFromSchema(path, top + QLatin1String("/bad.xml"), false);
    QCOMPARE(TraceLog::Lines().filter(path).size(), TraceLog::Lines().size());
}

void TestFaults::LastReportOfAStampCounts_data()
{
    QTest::addColumn<qint64>("step");
    QTest::newRow("the clock stands") << qint64(0);
    QTest::newRow("the clock was set back") << qint64(-3600000);
}

// The clock alone names the file: a report that finds its name taken replaces the one that bears it.
void TestFaults::LastReportOfAStampCounts()
{
    QFETCH(qint64, step);
    const ControlRun run;
    struct Clock : IOrvoOS
    {
        quint64 GetTime() override { return m_iTime; }
        quint64 m_iTime = 1714979289000;
    } clock;
    OrvoOS::SetClock(&clock);
    const auto control = run.MakeControl(true);
    control->SetShowCommentDialog(true);
    for (const char *text : { "a much longer first text", "second" }) {
        control->AddExplicitReportData(QStringLiteral("A"), text, 1, QString(), 0, QString());
        QVERIFY(control->SlotToReport());
        clock.m_iTime += static_cast<quint64>(step);
    }
    const QList<CommentDialogImpl *> dialogs = Dialogs();
    QCOMPARE(dialogs.size(), 2);
    const bool isFirst = dialogs[0]->windowTitle() < dialogs[1]->windowTitle();
    dialogs[isFirst ? 0 : 1]->close();
    dialogs[isFirst ? 1 : 0]->close();
    QCOMPARE(run.Reports().size(), step == 0 ? 1 : 2);
    OrvoOS::SetClock(nullptr);
}

// R holds p and z; p holds u, v, w. The receiver fills u, v, w and z, and changes the document when v is announced.
void TestFaults::WalksADocumentThatChanges_data()
{
    QTest::addColumn<QString>("heard");
    QTest::addColumn<QString>("report");
    const auto row = [](const char *order, const char *heard, const char *report) {
        QTest::newRow(order) << QStringLiteral("begin R p !15 !16 u v %1end").arg(QLatin1String(heard))
                             << QString::fromLatin1(report);
    };
    row("remove v", "!16 z ", "<R><p><u>u</u><w type='string'/></p><z>z</z></R>");
    row("remove u", "v w z ", "<R><p><v>v</v><v>v</v><w>w</w></p><z>z</z></R>");
    row("remove w", "v z ", "<R><p><u>u</u><v>v</v><v>v</v></p><z>z</z></R>");
    row("remove p", "!16 w ", "<R><z type='string'/></R>");
    row("remove R", "!16 w z ", "");
    row("bury v", "!16 z ", "<R><p><u>u</u><w type='string'/></p><z>z</z></R>");
    row("bury p", "!16 w ", "<R><z type='string'/></R>");
    row("empty p", "!16 z ", "<R><p/><z>z</z></R>");
    row("empty R", "!16 w ", "<R/>");
    row("empty document", "!16 w z ", "");
    row("replace v", "!16 z ", "<R><p><u>u</u><new/><w type='string'/></p><z>z</z></R>");
    row("before v", "v w z ", "<R><p><u>u</u><new/><v>v</v><v>v</v><w>w</w></p><z>z</z></R>");
    row("behind v", "v new !15 !16 w z ", "<R><p><u>u</u><v>v</v><v>v</v><new/><w>w</w></p><z>z</z></R>");
    row("inside v", "v w z ", "<R><p><u>u</u><v><new/>v</v><v><new/>v</v><w>w</w></p><z>z</z></R>");
    row("text-before v", "v w z ", "<R><p><u>u</u>t<v>v</v><v>v</v><w>w</w></p><z>z</z></R>");
    row("front-of p", "v u !15 !16 w z ", "<R><p><v>v</v><v>v</v><u>u</u><w>w</w></p><z>z</z></R>");
    row("end-of p", "v z ", "<R><p><u>u</u><w type='string'/><v>v</v><v>v</v></p><z>z</z></R>");
    row("front-of R", "!16 p !15 !16 u !15 !16 w z z !15 !16 ", "<R><v>v</v><p><u>u</u><w>w</w></p><z>z</z></R>");
    row("end-of R", "!16 z v !16 ", "<R><p><u>u</u><w type='string'/></p><z>z</z><v>v</v></R>");
}

void TestFaults::WalksADocumentThatChanges()
{
    ReportRun run;
    run.m_oReceiver.m_fnElement = [&](ElemBeginEvent &event) {
        const QString name = event.GetElementName();
        if (name == QLatin1String("v") && run.m_oReceiver.m_lHeard.count(name) == 1) {
            ChangeDocument(QString::fromLatin1(QTest::currentDataTag()), event.GetElementNode().toElement());
            run.m_oReport.SetElementMaxOccurs(name, 2);
        }
        if (event.GetElementAttributes().index(QStringLiteral("type")) >= 0) {
            run.m_oReport.SetXmlValue(event.GetElementName());
        }
    };
    QVERIFY(run.Run(RootElement(QStringLiteral(
        "<xs:element name='p'><xs:complexType><xs:sequence><xs:element name='u' type='xs:string'/>"
        "<xs:element name='v' type='xs:string' maxOccurs='2'/><xs:element name='w' type='xs:string'/></xs:sequence>"
        "</xs:complexType></xs:element><xs:element name='z' type='xs:string'/>"))));
    QTEST(run.m_oReceiver.Heard(), "heard");
    QTEST(run.Report(), "report");
}

void TestFaults::DialogOutlivesAToolBarThatEndsInASlot()
{
    const ControlRun run;
    auto toolBar = std::make_unique<QToolBar>();
    const QPointer<VCReporting> control(run.MakeControl(false, toolBar.get()).release());
    control->SetShowCommentDialog(true);
    control->AddExplicitReportData(QStringLiteral("A"), "text", 1, QString(), 0, QString());
    connect(control, &VCReporting::ReportSuccessful, [&toolBar] { toolBar.reset(); });
    QTest::mouseClick(control->GetReportButton(), Qt::LeftButton);
    QVERIFY(control.isNull());
    QCOMPARE(Dialogs().size(), 1);
    const QPointer<CommentDialogImpl> dialog(Dialogs().front());
    QTest::keyClicks(dialog->m_pTextEdit, QStringLiteral("typed"));
    QTest::mouseClick(dialog->m_pSaveButton, Qt::LeftButton);
    QCoreApplication::processEvents();
    QVERIFY(dialog.isNull());
    QCOMPARE(run.LatestReport(), QStringLiteral("<R><A>text</A><Comment>typed</Comment></R>"));
}

void TestFaults::MayEndWithItsWindow_data()
{
    QTest::addColumn<Start>("start");
    QTest::newRow("key") << Start(
        [](VCReporting &control) { QTest::keyClick(control.GetReportButton(), Qt::Key_Space); });
    QTest::newRow("poll") << Start([](VCReporting &control) {
        auto *timer = control.findChild<QTimer *>();
        QTimerEvent event(timer->timerId());
        QCoreApplication::sendEvent(timer, &event);
    });
}

void TestFaults::MayEndWithItsWindow()
{
    QFETCH(Start, start);
    const ControlRun run;
    auto window = std::make_unique<QWidget>();
    const QPointer<VCReporting> control(run.MakeControl(false, new QToolBar(window.get())).release());
    const auto end = [&window] { window.reset(); };
    connect(control, &VCReporting::PrepareToReport, end);
    connect(control, &VCReporting::ReportDirAndSchemaAvailable, end);
    start(*control);
    QVERIFY(control.isNull());
    QVERIFY(run.Reports().isEmpty());
}

QTEST_MAIN(TestFaults)
#include "tst_faults.moc"

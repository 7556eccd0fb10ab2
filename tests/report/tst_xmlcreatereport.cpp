#include "support/reportrun.h"

#include "host/veldra.h"

#include <QtTest>

#include <sys/stat.h>

namespace {

QString Element(const char *name, const char *attributes = "", const QString &children = QString())
{
    const QString content = children.isEmpty()
        ? QString()
        : QStringLiteral("<xs:complexType><xs:sequence>%1</xs:sequence></xs:complexType>").arg(children);
    return QStringLiteral("<xs:element name='%1' %2>%3</xs:element>")
        .arg(QString::fromLatin1(name), QString::fromLatin1(attributes), content);
}

QString Text(const char *name, const char *attributes = "")
{
    return Element(name, (QByteArray("type='xs:string' ") + attributes).constData());
}

QString Choice(const QString &content)
{
    return QStringLiteral("<xs:choice>%1</xs:choice>").arg(content);
}

} // namespace

class TestXmlCreateReport : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void Repeats_data();
    void Repeats();
    void EndsRepeatingAfterManyCopies();
    void GivesUpAlternatives_data();
    void GivesUpAlternatives();
    void DiscardsTheRoot();
    void SavesTheReport();
    void OpensPathsWithBackslashes();
    void RefusesUnreadableSchemas_data();
    void RefusesUnreadableSchemas();
    void LosesOnlyTheFile();
    void ServesOneRun();
    void NeedsACallback();
};

// `counts` asks for copies ("name:count"), at each announcement; whatever is called "v" gets a value.
void TestXmlCreateReport::Repeats_data()
{
    QTest::addColumn<QString>("content");
    QTest::addColumn<QString>("counts");
    QTest::addColumn<QString>("heard");
    QTest::addColumn<QString>("report");
    const auto row = [](const char *name, const QString &content, const char *counts, const char *heard,
                        const char *report) {
        QTest::newRow(name) << content << QString::fromLatin1(counts)
                            << QStringLiteral("begin %1 end").arg(QLatin1String(heard)) << QString::fromLatin1(report);
    };
    row("below the limit", Text("v", "maxOccurs='5'"), "v:3", "R v v v", "<R><v>x</v><v>x</v><v>x</v></R>");
    row("above the limit", Text("v", "maxOccurs='5'"), "v:6", "R v !16", "<R><v>x</v></R>");
    row("optional, limit in hundreds", Text("v", "minOccurs='0' maxOccurs='2'"), "v:3", "R v v v",
        "<R><v>x</v><v>x</v><v>x</v></R>");
    row("optional, above the hundreds", Text("v", "minOccurs='0' maxOccurs='2'"), "v:201", "R v !16",
        "<R><v>x</v></R>");
    row("unbounded", Text("v", "minOccurs='0' maxOccurs='unbounded'"), "v:3", "R v v v",
        "<R><v>x</v><v>x</v><v>x</v></R>");
    row("optional, asked for more", Text("v", "minOccurs='0'"), "v:2", "R v !16", "<R><v>x</v></R>");
    row("optional, asked for none", Text("a", "minOccurs='0'"), "a:0", "R a a", "<R/>");
    row("no row", Text("v"), "v:1", "R v !16 !16", "<R><v>x</v></R>");
    row("once, without a value", Text("a", "maxOccurs='2'"), "a:1", "R a a !16", "<R><a type='string'/></R>");
    row("twice in the template", Text("v", "minOccurs='2' maxOccurs='3'"), "v:3", "R v v v v",
        "<R><v>x</v><v>x</v><v>x</v><v>x</v></R>");
    row("same name elsewhere",
        Element("p", "", Text("v", "maxOccurs='2'")) + Element("q", "", Text("v", "maxOccurs='2'")), "v:2",
        "R p !15 !16 v v q !15 !16 v", "<R><p><v>x</v><v>x</v></p><q><v>x</v></q></R>");
    row("another name between",
        Element("p", "", Text("v", "maxOccurs='2'")) + Element("q", "", Text("v", "maxOccurs='2'")), "v:2 q:1",
        "R p !15 !16 v v q !16 !16 !15 !16 v v", "<R><p><v>x</v><v>x</v></p><q><v>x</v><v>x</v></q></R>");
    row("below the second of two parents", Element("p", "", Text("b")) + Element("p", "", Text("v", "maxOccurs='2'")),
        "v:2", "R p !15 !16 b !15 !16 p !15 !16 v !16", "<R><p><b type='string'/></p><p><v>x</v></p></R>");
    row("nested repetitions end", Element("p", "maxOccurs='2'", Text("v", "maxOccurs='2'")), "p:2 v:2",
        "R p p !16 v v p !16 v !16", "<R><p><v>x</v><v>x</v></p><p><v>x</v></p></R>");
}

void TestXmlCreateReport::Repeats()
{
    QFETCH(QString, content);
    QFETCH(QString, counts);
    ReportRun run;
    run.m_oReceiver.m_fnElement = [&](ElemBeginEvent &event) {
        const QString name = event.GetElementName();
        for (const QString &count : counts.split(QLatin1Char(' '))) {
            if (count.section(QLatin1Char(':'), 0, 0) == name) {
                run.m_oReport.SetElementMaxOccurs(name, count.section(QLatin1Char(':'), 1).toInt());
            }
        }
        if (name == QLatin1String("v")) {
            run.m_oReport.SetXmlValue("x");
        }
    };
    QVERIFY(run.Run(RootElement(content)));
    QTEST(run.m_oReceiver.Heard(), "heard");
    QTEST(run.Report(), "report");
}

// Two names that take turns would multiply each other's copies without end; each copy is known as one.
void TestXmlCreateReport::EndsRepeatingAfterManyCopies()
{
    ReportRun run;
    run.m_oReceiver.m_fnElement = [&](ElemBeginEvent &event) {
        run.m_oReport.SetElementMaxOccurs(event.GetElementName(), 1000);
        run.m_oReport.SetElementMaxOccurs(QStringLiteral("between"), 1);
        if (event.GetElementName() == QLatin1String("v")) {
            run.m_oReport.SetXmlValue("x");
        }
    };
    QVERIFY(run.Run(RootElement(Text("v", "maxOccurs='unbounded'"))));
    QCOMPARE(run.m_oReceiver.m_lHeard.count(QStringLiteral("v")), 1000);
    QCOMPARE(run.Report().count(QStringLiteral("<v>x</v>")), 1000);
}

void TestXmlCreateReport::GivesUpAlternatives_data()
{
    QTest::addColumn<QString>("content");
    QTest::addColumn<QString>("discards");
    QTest::addColumn<QString>("heard");
    QTest::addColumn<QString>("report");
    const auto row = [](const char *name, const QString &content, const char *discards, const char *heard,
                        const char *report) {
        QTest::newRow(name) << content << QString::fromLatin1(discards)
                            << QStringLiteral("begin %1 end").arg(QLatin1String(heard)) << QString::fromLatin1(report);
    };
    const QString abc = Choice(Text("a") + Text("b") + Text("c"));
    row("the first, and the next goes unheard", abc, "a", "R a c !15", "<R><b type='string'/></R>");
    row("one is left", abc + Text("d"), "a c d", "R a c", "<R><b type='string'/><d type='string'/></R>");
    row("no alternative", Text("a"), "a", "R a !-1 !15 !16", "<R><a type='string'/></R>");
    row("the only one", Choice(Text("a")), "a", "R a !-1 !15", "<R/>");
    row("the last with none given up", Choice(Text("a") + Text("b")), "b", "R a !15 b", "<R/>");
    // The count runs over all choices: after two, the third alternative needs one behind it although two stand before.
    row("a later choice is judged more strictly",
        Choice(Text("a") + Text("b") + Text("c") + Text("d")) + Choice(Text("e") + Text("f") + Text("g")), "a c g",
        "R a c e !15 f !15 g !-1 !15", "<R><b type='string'/><d type='string'/></R>");
    row("greatest key of a name in two choices", Choice(Text("a") + Text("b")) + Choice(Text("c") + Text("a")), "a",
        "R a c !15 a !-1 !15", "<R><b type='string'/></R>");
}

void TestXmlCreateReport::GivesUpAlternatives()
{
    QFETCH(QString, content);
    QFETCH(QString, discards);
    ReportRun run;
    run.m_oReceiver.m_fnElement = [&](ElemBeginEvent &event) {
        if (discards.split(QLatin1Char(' ')).contains(event.GetElementName())) {
            run.m_oReport.DiscardChoiceItem();
        }
    };
    QVERIFY(run.Run(RootElement(content)));
    QTEST(run.m_oReceiver.Heard(), "heard");
    QTEST(run.Report(), "report");
}

// What it asks for is taken up at its first child; the report has no root any more, and the walk still stands on it.
void TestXmlCreateReport::DiscardsTheRoot()
{
    ReportRun run;
    run.m_oReceiver.m_fnElement = [&](ElemBeginEvent &) {
        if (run.m_oReceiver.m_lHeard.size() == 2) {
            run.m_oReport.DiscardChoiceItem();
        }
    };
    QVERIFY(run.Run(Element("a", "", Choice(Text("a") + Text("b")))));
    QCOMPARE(run.m_oReceiver.Heard(), QStringLiteral("begin a a end"));
    QCOMPARE(run.Report(), QString());
}

void TestXmlCreateReport::SavesTheReport()
{
    ReportRun run;
    run.m_oReceiver.m_fnElement = [&](ElemBeginEvent &event) {
        QVERIFY(event.GetElementAttributes().index(QStringLiteral("xmlns:xsi")) < 0);
        event.GetElementNode().toElement().setAttribute(QStringLiteral("own"), QStringLiteral("1"));
        run.m_oReport.SetXmlValue(QString(QChar(0x20ac)));
    };
    QVERIFY(run.Run(RootElement(Text("v"))));
    const QByteArray bytes = run.Bytes();
    QVERIFY(bytes.startsWith("<?xml version='1.0' encoding='UTF-8'?>\n<R "));
    QVERIFY(bytes.contains("\n    <v own=\"1\">\xe2\x82\xac</v>\n</R>\n"));
    QVERIFY(bytes.contains(" own=\"1\""));
    QVERIFY(bytes.contains(" xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\""));
    QVERIFY(bytes.contains(" xsi:noNamespaceSchemaLocation=\"" + run.SchemaPath().toUtf8() + "\""));
}

// A backslash is a plain character of a file's name here: a file of that very name comes first.
void TestXmlCreateReport::OpensPathsWithBackslashes()
{
    QTemporaryDir dir;
    QVERIFY(QDir(dir.path()).mkdir(QStringLiteral("s")));
    const QString given = dir.path() + QStringLiteral("\\s\\\\a.xsd");
    for (const QString &path : { QString(given).replace(QLatin1Char('\\'), QLatin1Char('/')), given }) {
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(path == given ? "<xs:element name='Given'/>" : "<xs:element name='Mapped'/>");
        file.close();
        ScriptedReceiver receiver;
        XmlCreateReport report(&receiver);
        QVERIFY(report.CreateXmlFromSchema(given, dir.path() + QStringLiteral("\\r.xml"), false));
        QCOMPARE(receiver.m_lHeard.value(1), path == given ? QStringLiteral("Given") : QStringLiteral("Mapped"));
        QFile saved(dir.filePath(QStringLiteral("r.xml")));
        QVERIFY(saved.open(QIODevice::ReadOnly));
        QVERIFY(saved.readAll().contains("Location=\"" + dir.path().toUtf8() + "/s//a.xsd\""));
    }
}

void TestXmlCreateReport::RefusesUnreadableSchemas_data()
{
    QTest::addColumn<QString>("kind");
    for (const char *kind : { "absent", "directory", "fifo", "broken", "empty" }) {
        QTest::newRow(kind) << QString::fromLatin1(kind);
    }
}

// All further steps run: an empty file says that a report was wanted here.
void TestXmlCreateReport::RefusesUnreadableSchemas()
{
    QFETCH(QString, kind);
    QTemporaryDir dir;
    const QString path = dir.filePath(kind);
    if (kind == QLatin1String("directory")) {
        QVERIFY(QDir(dir.path()).mkdir(kind));
    } else if (kind == QLatin1String("fifo")) {
        QCOMPARE(mkfifo(QFile::encodeName(path).constData(), 0600), 0);
    } else if (kind != QLatin1String("absent")) {
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(kind == QLatin1String("broken") ? "<xs:element name='R'><xs:complexType>" : "");
    }
    ScriptedReceiver receiver;
    XmlCreateReport report(&receiver);
    const QString reportPath = dir.filePath(QStringLiteral("report.xml"));
    ErrorHandler::SetTraceMask(32);
    QTest::ignoreMessage(QtInfoMsg, QRegularExpression(QStringLiteral("schema.*") + kind));
    QVERIFY(!report.CreateXmlFromSchema(path, reportPath, false));
    ErrorHandler::SetTraceMask(0);
    QVERIFY(receiver.m_lHeard.isEmpty());
    QVERIFY(QFile::exists(reportPath));
    QCOMPARE(QFile(reportPath).size(), qint64(0));
}

// The result says that the schema was read, whatever became of a value or of the file.
void TestXmlCreateReport::LosesOnlyTheFile()
{
    ReportRun run;
    run.m_oReceiver.m_fnElement = [&](ElemBeginEvent &event) {
        if (event.GetElementName() == QLatin1String("v")) {
            run.m_oReport.SetXmlValue(1);
            QVERIFY(QFile::remove(run.SchemaPath()));
            QVERIFY(QDir().mkdir(run.ReportPath()));
        }
    };
    ErrorHandler::SetTraceMask(32);
    QTest::ignoreMessage(QtInfoMsg,
                         QRegularExpression(QStringLiteral("The report \".*report.xml\" could not be saved: .")));
    QVERIFY(run.Run(RootElement(Text("v"))));
    ErrorHandler::SetTraceMask(0);
    QCOMPARE(run.m_oReceiver.Heard(), QStringLiteral("begin R v !11 !15 !16 end"));
}

void TestXmlCreateReport::ServesOneRun()
{
    ReportRun run;
    run.m_oReceiver.m_fnElement = [&](ElemBeginEvent &) { QVERIFY(!run.Run(RootElement(Text("inner")))); };
    QVERIFY(run.Run(RootElement(Text("v"))));
    QVERIFY(QFile::remove(run.ReportPath()));
    QVERIFY(!run.Run(RootElement(Text("v"))));
    QVERIFY(!QFile::exists(run.ReportPath()));
    QCOMPARE(run.m_oReceiver.Heard(), QStringLiteral("begin R v !15 !16 end"));
}

void TestXmlCreateReport::NeedsACallback()
{
    QTemporaryDir dir;
    ErrorHandler::SetTraceMask(32);
    QTest::ignoreMessage(QtInfoMsg, "XmlCreateReport: pCallback is NULL!");
    XmlCreateReport report(nullptr);
    QTest::ignoreMessage(QtInfoMsg,
                         "XmlCreateReport: SetXmlValue was called outside a report's walk and does nothing.");
    report.SetXmlValue("a");
    ErrorHandler::SetTraceMask(0);
    report.SetElementMaxOccurs(QStringLiteral("a"), 2);
    QVERIFY(!report.CreateXmlFromSchema(dir.filePath(QStringLiteral("a")), dir.filePath(QStringLiteral("r")), false));
    QVERIFY(QDir(dir.path()).isEmpty());
}

QTEST_GUILESS_MAIN(TestXmlCreateReport)
#include "tst_xmlcreatereport.moc"

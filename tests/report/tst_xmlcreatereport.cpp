#include "support/reportrun.h"
#include "support/rows.h"
#include "support/tracecapture.h"

#include <QtTest>

namespace {

#define TWO_PARENTS "<e p><c><t v max=2/></c></e><e q><c><t v max=2/></c></e>"
#define ABC "<h><t a/><t b/><t c/></h>"

// A root's content, the orders, what is heard of the walk, and what stands in the report.
constexpr const char *kShaped[][5] = {
    { "copies", "<t v max=3/>", "v:3", "v v v", "<v>x</v><v>x</v><v>x</v>" },
    { "too many", "<t v max=3/>", "v:4", "v !16", "<v>x</v>" },
    { "no limit", "<t v min=0 max=unbounded/>", "v:2", "v v", "<v>x</v><v>x</v>" },
    { "optional ones have a limit in hundreds", "<t v min=0 max=2/>", "v:3", "v v v", "<v>x</v><v>x</v><v>x</v>" },
    { "beyond it", "<t v min=0 max=2/>", "v:201", "v !16", "<v>x</v>" },
    { "no limit given", "<t v min=0/>", "v:2", "v !16", "<v>x</v>" },
    { "no copies", "<t b min=0/><t v/>", "b:0", "b b v", "<v>x</v>" },
    { "the least number", "<t b max=2/>", "b:-2147483648", "b b !16", "<b type='string'/>" },
    { "one is in no table", "<t v/>", "v:1", "v !16 !16", "<v>x</v>" },
    { "beside the template's own", "<t v min=2 max=3/>", "v:3", "v v v v", "<v>x</v><v>x</v><v>x</v><v>x</v>" },
    { "below the first parent alone", TWO_PARENTS, "v:2", "p !15 !16 v v q !15 !16 v",
      "<p><v>x</v><v>x</v></p><q><v>x</v></q>" },
    { "another name between", TWO_PARENTS, "v:2 q:1", "p !15 !16 v v q !16 !16 !15 !16 v v",
      "<p><v>x</v><v>x</v></p><q><v>x</v><v>x</v></q>" },
    { "the second of a name", "<e p><c><t b/></c></e><e p><c><t v max=2/></c></e>", "v:2",
      "p !15 !16 b !15 !16 p !15 !16 v !16", "<p><b type='string'/></p><p><v>x</v></p>" },
    // Without an end to repeating, each copy of p would make its v the last name, and p would be multiplied again.
    { "copies of copies", "<e p max=2><c><t v max=2/></c></e>", "p:2 v:2", "p p !16 v v p !16 v !16",
      "<p><v>x</v><v>x</v></p><p><v>x</v></p>" },
    // The copy that is passed over has its attributes kept out of the document.
    { "copies of an alternative", "<h><t x max=3/><t c/></h>", "x:3 x-", "x x",
      "<x type='string'/><c type='string'/>" },
    // Optional containers go with the first value that is missing in them, and stay with the first one that is not.
    { "a container stays", "<e p min=0><c><t v/><t b/></c></e>", "", "p p v b !15 !16",
      "<p><v>x</v><b type='string'/></p>" },
    { "a container goes", "<e a><c><e p min=0><c><e c></e></c></e><t d/><t v/></c></e>", "",
      "a !15 !16 p c d d !15 !16 v", "<a><d type='string'/><v>x</v></a>" },
    { "defaults", "<t b default=d/><e q><c><t c default=d/></c></e>", "", "b !15 !16 q !15 !16 c !15 !16",
      "<b default='d' type='string'/><q><c type='string'>d</c></q>" },
    { "two of three, and what is none", ABC "<t d/>", "a- c- d-", "a c", "<b type='string'/><d type='string'/>" },
    { "no choice", "<t a/>", "a-", "a !-1 !15 !16", "<a type='string'/>" },
    { "the last alternative", "<t b/><h><t v/></h>", "v-", "b !15 !16 v !-1", "<b type='string'/><v>x</v>" },
    // The count runs over all choices: after two, a third alternative needs one behind it although two stand before.
    { "two choices", "<h><t a/><t b/><t c/><t d/></h><h><t e/><t f/><t v/></h>", "a- c- v-", "a c e !15 f !15 v !-1",
      "<b type='string'/><d type='string'/><v>x</v>" },
    { "of a name in two choices the later place counts", "<h><t a/><t b/></h><h><t c/><t a/></h>", "a-",
      "a c !15 a !-1 !15", "<b type='string'/>" },
};

} // namespace

class TestXmlCreateReport : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void ShapesTheReport_data() { AddRows(kShaped); }
    void ShapesTheReport()
    {
        QFETCH(QStringList, row);
        ReportRun run;
        run.Follow(row.at(1) + QLatin1String(" v=s:x"));
        QVERIFY(run.Run(RootElement(row.at(0))));
        QCOMPARE(run.m_oReceiver.Heard(), QStringLiteral("begin R %1 end").arg(row.at(2)));
        QCOMPARE(run.Report(), QStringLiteral("<R>%1</R>").arg(row.at(3)));
    }

    // One sentence for each value that is missing in the end, and no other.
    void TellsWhyAValueIsMissing()
    {
        const TraceCapture traces;
        ReportRun run;
        run.Follow(QStringLiteral("s:2 s@u=i:4 s[1]@u=s:Hz level=s:x level=d:9.5 level=d:10.5 fine=s:x fine=d:5.5 "
                                  "fine=d:6.5 gone:2 gone=s:x kind:2 kind=s:x"));
        run.Run(QStringLiteral("<s D><r xs:double><xs:maxExclusive value=9/></r></s><s E><r xs:string><v k/></r></s>")
                + RootElement(QStringLiteral("<e s max=2><c><e fine type=D/><e level type=D/><a u type=xs:string/></c>"
                                             "</e><e gone type=E min=0 max=2/><e kind type=E/>")));
        QCOMPARE(TraceCapture::Text(),
                 QStringLiteral(
                     "/R/s/@u: the value \"4\" was not written: the type \"xs:string\" takes no integer (error 11).\n"
                     "/R/s/level: the value \"9.5\" was not written: not below maxExclusive 9 (error 15).\n"
                     "/R/s/level stays without a value, though it may not be left out (error 16).\n"
                     "/R/s[2]/level: the value \"9.5\" was not written: not below maxExclusive 9 (error 15).\n"
                     "/R/s[2]/level stays without a value, though it may not be left out (error 16).\n"
                     "/R/gone: the value \"x\" was not written: not among the enumeration values (error 15).\n"
                     "/R/gone[2]: the value \"x\" was not written: not among the enumeration values (error 15).\n"
                     "/R/kind may not stand 2 times here (error 16).\n"
                     "/R/kind: the value \"x\" was not written: not among the enumeration values (error 15).\n"
                     "/R/kind stays without a value, though it may not be left out (error 16)."));
        QCOMPARE(run.Report(),
                 QStringLiteral("<R><s u='xs:string'><fine>5.5</fine><level maxExclusive='9' type='double'/></s>"
                                "<s u='Hz'><fine>5.5</fine><level maxExclusive='9' type='double'/></s>"
                                "<kind enumeration1='k' type='string'/></R>"));
    }

    void NamesAPlaceWhereItHasGoneBack()
    {
        const TraceCapture traces;
        ReportRun run;
        run.Follow(QStringLiteral("x=d:1"));
        run.Run(RootElement(QStringLiteral("<e p min=0><c></c></e><e p min=0><c><t x/></c></e>")));
        const QString refusal = QStringLiteral(
            "/R/p[2]/x: the value \"1\" was not written: the type \"string\" takes no double (error 10).");
        QCOMPARE(TraceCapture::Lines(), QStringList({ refusal, refusal }));
    }

    void SavesTheReport()
    {
        ReportRun run;
        run.m_oReceiver.m_fnElement = [&](ElemBeginEvent &event) {
            QVERIFY(event.GetElementAttributes().index(QStringLiteral("xmlns:xsi")) < 0);
            run.m_oReport.SetXmlValue(QString(QChar(0x20ac)));
        };
        QVERIFY(run.Run(RootElement(QStringLiteral("<t v/>"))));
        const QByteArray bytes = run.Bytes();
        QVERIFY(bytes.startsWith("<?xml version='1.0' encoding='UTF-8'?>\n<R "));
        QVERIFY(bytes.contains("\n    <v>\xe2\x82\xac</v>\n</R>\n"));
        QVERIFY(bytes.contains(" xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\""));
        QVERIFY(bytes.contains(" xsi:noNamespaceSchemaLocation=\"" + run.SchemaPath().toUtf8() + "\""));
    }

    // A backslash is a plain character of a file's name here: a file of that very name comes first.
    void OpensPathsWithBackslashes()
    {
        QTemporaryDir dir;
        QVERIFY(QDir(dir.path()).mkdir(QStringLiteral("s")));
        const QString given = dir.path() + QStringLiteral("\\s\\\\a.xsd");
        for (const QString &path : { QString(given).replace(QLatin1Char('\\'), QLatin1Char('/')), given }) {
            WriteFile(path, path == given ? "<xs:element name='Given'/>" : "<xs:element name='Mapped'/>");
            ScriptedReceiver receiver;
            QVERIFY(
                XmlCreateReport(&receiver).CreateXmlFromSchema(given, dir.path() + QStringLiteral("\\r.xml"), false));
            QCOMPARE(receiver.m_lHeard.value(1), path == given ? QStringLiteral("Given") : QStringLiteral("Mapped"));
            QVERIFY(FileBytes(dir.filePath(QStringLiteral("r.xml")))
                        .contains("Location=\"" + dir.path().toUtf8() + "/s//a.xsd\""));
        }
    }

    // All further steps run: an empty file says that a report was wanted here.
    void RefusesUnreadableSchemas()
    {
        QTemporaryDir dir;
        WriteFile(dir.filePath(QStringLiteral("broken")), "<xs:element name='R'>");
        const TraceCapture traces;
        for (const char *kind : { "absent", "broken" }) {
            const QString schema = dir.filePath(QString::fromLatin1(kind));
            ScriptedReceiver receiver;
            XmlCreateReport report(&receiver);
            QVERIFY(!report.CreateXmlFromSchema(schema, schema + QStringLiteral(".xml"), false));
            QVERIFY(receiver.m_lHeard.isEmpty() && TraceCapture::Text().contains(schema));
            const QFileInfo saved(schema + QStringLiteral(".xml"));
            QVERIFY(saved.exists() && saved.size() == 0);
        }
    }

    // The result says that the schema was read, whatever became of a value or of the file.
    void ServesOneRunAndLosesOnlyTheFile()
    {
        const QString schema = RootElement(QStringLiteral("<t v/>"));
        ReportRun run;
        run.m_oReceiver.m_fnElement = [&](ElemBeginEvent &event) {
            if (event.GetElementName() == QLatin1String("v")) {
                run.m_oReport.SetXmlValue(1);
                QVERIFY(QDir().mkdir(run.ReportPath()) && !run.Run(schema));
            }
        };
        const TraceCapture traces;
        QVERIFY(run.Run(schema));
        QVERIFY(TraceCapture::Text().contains(QStringLiteral("report.xml\" could not be saved: ")));
        QVERIFY(QDir().rmdir(run.ReportPath()) && !run.Run(schema) && !QFile::exists(run.ReportPath()));
        QCOMPARE(run.m_oReceiver.Heard(), QStringLiteral("begin R v !11 !15 !16 end"));
    }

    // Receivers must not throw; one that does it all the same leaves no walk that goes on for ever.
    void EndsTheWalkOfAReceiverThatThrows()
    {
        ReportRun run;
        run.m_oReceiver.m_fnError = [](int id) {
            if (id == ITagwright::CURRENT_OCCURRENCE_IS_NOT_VALID) {
                throw id;
            }
        };
        QVERIFY_EXCEPTION_THROWN(run.Run(RootElement(QStringLiteral("<t v/>"))), int);
        const TraceCapture traces;
        run.m_oReport.SetXmlValue("late");
        QVERIFY(TraceCapture::Text().contains(QStringLiteral("outside a report's walk")));
        QCOMPARE(run.m_oReceiver.Heard(), QStringLiteral("begin R v !15 !16"));
    }

    void NeedsACallback()
    {
        const TraceCapture traces;
        XmlCreateReport report(nullptr);
        QCOMPARE(TraceCapture::Text(), QStringLiteral("XmlCreateReport: pCallback is NULL!"));
        report.SetXmlValue("a");
        QVERIFY(!report.CreateXmlFromSchema(QStringLiteral("a"), QStringLiteral("b"), false));
    }
};

QTEST_GUILESS_MAIN(TestXmlCreateReport)
#include "tst_xmlcreatereport.moc"

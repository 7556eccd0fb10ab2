#include "support/reportrun.h"
#include "support/tracecapture.h"

#include <QtTest>

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
    void ShapesTheReport_data();
    void ShapesTheReport();
    void TellsWhyAValueIsMissing();
    void SavesTheReport();
    void OpensPathsWithBackslashes();
    void RefusesUnreadableSchemas();
    void ServesOneRunAndLosesOnlyTheFile();
    void EndsTheWalkOfAReceiverThatThrows();
    void NeedsACallback();
};

// `asked` is what the receiver asks for at each announcement: "name:count" copies, or "name" to be discarded. Whatever
// is called "v" gets a value.
void TestXmlCreateReport::ShapesTheReport_data()
{
    QTest::addColumn<QString>("content");
    QTest::addColumn<QString>("asked");
    QTest::addColumn<QString>("heard");
    QTest::addColumn<QString>("report");
    const auto row = [](const QString &content, const char *asked, const char *heard, const char *report) {
        QTest::addRow("%s: %s", asked, heard)
            << content << QString::fromLatin1(asked) << QStringLiteral("begin R %1 end").arg(QLatin1String(heard))
            << QStringLiteral("<R>%1</R>").arg(QLatin1String(report));
    };
    row(Text("v", "maxOccurs='3'"), "v:3", "v v v", "<v>x</v><v>x</v><v>x</v>");
    row(Text("v", "maxOccurs='3'"), "v:4", "v !16", "<v>x</v>");
    row(Text("v", "minOccurs='0' maxOccurs='unbounded'"), "v:2", "v v", "<v>x</v><v>x</v>");
    row(Text("v", "minOccurs='0' maxOccurs='2'"), "v:3", "v v v", "<v>x</v><v>x</v><v>x</v>");
    row(Text("v", "minOccurs='0' maxOccurs='2'"), "v:201", "v !16", "<v>x</v>");
    row(Text("v", "minOccurs='0'"), "v:2", "v !16", "<v>x</v>");
    row(Text("b", "minOccurs='0'") + Text("v"), "b:0", "b b v", "<v>x</v>");
    row(Text("b", "maxOccurs='2'"), "b:-2147483648", "b b !16", "<b type='string'/>");
    row(Text("v"), "v:1", "v !16 !16", "<v>x</v>");
    row(Text("v", "minOccurs='2' maxOccurs='3'"), "v:3", "v v v v", "<v>x</v><v>x</v><v>x</v><v>x</v>");
    const QString twoParents =
        Element("p", "", Text("v", "maxOccurs='2'")) + Element("q", "", Text("v", "maxOccurs='2'"));
    row(twoParents, "v:2", "p !15 !16 v v q !15 !16 v", "<p><v>x</v><v>x</v></p><q><v>x</v></q>");
    row(twoParents, "v:2 q:1", "p !15 !16 v v q !16 !16 !15 !16 v v", "<p><v>x</v><v>x</v></p><q><v>x</v><v>x</v></q>");
    row(Element("p", "", Text("b")) + Element("p", "", Text("v", "maxOccurs='2'")), "v:2",
        "p !15 !16 b !15 !16 p !15 !16 v !16", "<p><b type='string'/></p><p><v>x</v></p>");
    // Without an end to repeating, each copy of p would make its v the last name, and p would be multiplied again.
    row(Element("p", "maxOccurs='2'", Text("v", "maxOccurs='2'")), "p:2 v:2", "p p !16 v v p !16 v !16",
        "<p><v>x</v><v>x</v></p><p><v>x</v></p>");
    // The copy that is passed over has its attributes kept out of the document.
    row(Choice(Text("x", "maxOccurs='3'") + Text("c")), "x:3 x", "x x", "<x type='string'/><c type='string'/>");
    // Optional containers go with the first value that is missing in them, and stay with the first one that is not.
    row(Element("p", "minOccurs='0'", Text("v") + Text("b")), "", "p p v b !15 !16",
        "<p><v>x</v><b type='string'/></p>");
    row(Element("a", "", Element("p", "minOccurs='0'", Element("c")) + Text("d") + Text("v")), "",
        "a !15 !16 p c d d !15 !16 v", "<a><d type='string'/><v>x</v></a>");
    row(Text("b", "default='d'") + Element("q", "", Text("c", "default='d'")), "", "b !15 !16 q !15 !16 c !15 !16",
        "<b default='d' type='string'/><q><c type='string'>d</c></q>");
    const QString abc = Choice(Text("a") + Text("b") + Text("c"));
    row(abc, "a", "a c !15", "<b type='string'/>");
    row(abc + Text("d"), "a c d", "a c", "<b type='string'/><d type='string'/>");
    row(Text("a"), "a", "a !-1 !15 !16", "<a type='string'/>");
    row(Text("b") + Choice(Text("v")), "v", "b !15 !16 v !-1", "<b type='string'/><v>x</v>");
    // The count runs over all choices: after two, a third alternative needs one behind it although two stand before.
    row(Choice(Text("a") + Text("b") + Text("c") + Text("d")) + Choice(Text("e") + Text("f") + Text("v")), "a c v",
        "a c e !15 f !15 v !-1", "<b type='string'/><d type='string'/><v>x</v>");
    // Of a name in two choices the later place counts.
    row(Choice(Text("a") + Text("b")) + Choice(Text("c") + Text("a")), "a", "a c !15 a !-1 !15", "<b type='string'/>");
}

void TestXmlCreateReport::ShapesTheReport()
{
    QFETCH(QString, content);
    QFETCH(QString, asked);
    ReportRun run;
    run.m_oReceiver.m_fnElement = [&](ElemBeginEvent &event) {
        const QString name = event.GetElementName();
        for (const QString &wish : asked.split(QLatin1Char(' '))) {
            if (wish == name) {
                run.m_oReport.DiscardChoiceItem();
            } else if (wish.section(QLatin1Char(':'), 0, 0) == name) {
                run.m_oReport.SetElementMaxOccurs(name, wish.section(QLatin1Char(':'), 1).toInt());
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

// One sentence for each value that is missing in the end, and no other.
void TestXmlCreateReport::TellsWhyAValueIsMissing()
{
    const TraceCapture traces;
    ReportRun run;
    XmlCreateReport &report = run.m_oReport;
    int signal = 0;
    run.m_oReceiver.m_fnElement = [&](ElemBeginEvent &event) {
        const QString name = event.GetElementName();
        if (name == QLatin1String("s")) {
            ++signal; // the first is announced twice
            report.SetElementMaxOccurs(name, 2);
            report.SetAttributeValue(QStringLiteral("u"), 4);
            if (signal > 2) {
                report.SetAttributeValue(QStringLiteral("u"), "Hz");
            }
        } else if (name == QLatin1String("level")) {
            report.SetXmlValue("a step of a retry that succeeds");
            report.SetXmlValue(signal > 2 ? 9.5 : 5.5);
            report.SetXmlValue(signal > 2 ? 10.5 : 6.5);
        } else if (name != QLatin1String("R")) {
            report.SetElementMaxOccurs(name, 2);
            report.SetXmlValue(name);
        }
    };
    run.Run(QStringLiteral("<xs:simpleType name='D'><xs:restriction base='xs:double'><xs:maxExclusive value='9'/>"
                           "</xs:restriction></xs:simpleType><xs:simpleType name='E'><xs:restriction base='xs:string'>"
                           "<xs:enumeration value='x'/></xs:restriction></xs:simpleType>")
            + RootElement(QStringLiteral(
                "<xs:element name='s' maxOccurs='2'><xs:complexType><xs:element name='level' type='D'/>"
                "<xs:attribute name='u' type='xs:string'/></xs:complexType></xs:element>"
                "<xs:element name='gone' type='E' minOccurs='0' maxOccurs='2'/><xs:element name='kind' type='E'/>")));
    QCOMPARE(
        TraceCapture::Text(),
        QStringLiteral("/R/s/@u: the value \"4\" was not written: the type \"xs:string\" takes no integer (error 11).\n"
                       "/R/s[2]/level: the value \"9.5\" was not written: not below maxExclusive 9 (error 15).\n"
                       "/R/s[2]/level stays without a value, though it may not be left out (error 16).\n"
                       "/R/gone: the value \"gone\" was not written: not among the enumeration values (error 15).\n"
                       "/R/gone[2]: the value \"gone\" was not written: not among the enumeration values (error 15).\n"
                       "/R/kind may not stand 2 times here (error 16).\n"
                       "/R/kind: the value \"kind\" was not written: not among the enumeration values (error 15).\n"
                       "/R/kind stays without a value, though it may not be left out (error 16)."));
    QCOMPARE(run.Report(),
             QStringLiteral("<R><s u='xs:string'><level>5.5</level></s><s u='Hz'><level maxExclusive='9' "
                            "type='double'/></s><kind enumeration1='x' type='string'/></R>"));
}

void TestXmlCreateReport::SavesTheReport()
{
    ReportRun run;
    run.m_oReceiver.m_fnElement = [&](ElemBeginEvent &event) {
        QVERIFY(event.GetElementAttributes().index(QStringLiteral("xmlns:xsi")) < 0);
        run.m_oReport.SetXmlValue(QString(QChar(0x20ac)));
    };
    QVERIFY(run.Run(RootElement(Text("v"))));
    const QByteArray bytes = run.Bytes();
    QVERIFY(bytes.startsWith("<?xml version='1.0' encoding='UTF-8'?>\n<R "));
    QVERIFY(bytes.contains("\n    <v>\xe2\x82\xac</v>\n</R>\n"));
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
        QVERIFY(file.open(QIODevice::WriteOnly)
                && file.write(path == given ? "<xs:element name='Given'/>" : "<xs:element name='Mapped'/>") > 0
                && file.flush());
        ScriptedReceiver receiver;
        QVERIFY(XmlCreateReport(&receiver).CreateXmlFromSchema(given, dir.path() + QStringLiteral("\\r.xml"), false));
        QCOMPARE(receiver.m_lHeard.value(1), path == given ? QStringLiteral("Given") : QStringLiteral("Mapped"));
        QFile saved(dir.filePath(QStringLiteral("r.xml")));
        QVERIFY(saved.open(QIODevice::ReadOnly));
        QVERIFY(saved.readAll().contains("Location=\"" + dir.path().toUtf8() + "/s//a.xsd\""));
    }
}

// All further steps run: an empty file says that a report was wanted here.
void TestXmlCreateReport::RefusesUnreadableSchemas()
{
    QTemporaryDir dir;
    QFile broken(dir.filePath(QStringLiteral("broken")));
    QVERIFY(broken.open(QIODevice::WriteOnly) && broken.write("<xs:element name='R'>") > 0 && broken.flush());
    const TraceCapture traces;
    for (const char *kind : { "absent", "broken" }) {
        const QString schema = dir.filePath(QString::fromLatin1(kind));
        ScriptedReceiver receiver;
        XmlCreateReport report(&receiver);
        QVERIFY(!report.CreateXmlFromSchema(schema, schema + QStringLiteral(".xml"), false));
        QVERIFY(receiver.m_lHeard.isEmpty() && TraceCapture::Text().contains(schema));
        QFile saved(schema + QStringLiteral(".xml"));
        QVERIFY(saved.exists() && saved.size() == 0);
    }
}

// The result says that the schema was read, whatever became of a value or of the file.
void TestXmlCreateReport::ServesOneRunAndLosesOnlyTheFile()
{
    const QString schema = RootElement(Text("v"));
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
void TestXmlCreateReport::EndsTheWalkOfAReceiverThatThrows()
{
    ReportRun run;
    run.m_oReceiver.m_fnError = [](int id) {
        if (id == ITagwright::CURRENT_OCCURRENCE_IS_NOT_VALID) {
            throw id;
        }
    };
    QVERIFY_EXCEPTION_THROWN(run.Run(RootElement(Text("v"))), int);
    const TraceCapture traces;
    run.m_oReport.SetXmlValue("late");
    QVERIFY(TraceCapture::Text().contains(QStringLiteral("outside a report's walk")));
    QCOMPARE(run.m_oReceiver.Heard(), QStringLiteral("begin R v !15 !16"));
}

void TestXmlCreateReport::NeedsACallback()
{
    const TraceCapture traces;
    XmlCreateReport report(nullptr);
    QCOMPARE(TraceCapture::Text(), QStringLiteral("XmlCreateReport: pCallback is NULL!"));
    report.SetXmlValue("a");
    QVERIFY(!report.CreateXmlFromSchema(QStringLiteral("a"), QStringLiteral("b"), false));
}

QTEST_GUILESS_MAIN(TestXmlCreateReport)
#include "tst_xmlcreatereport.moc"

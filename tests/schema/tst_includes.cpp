#include "support/schemareading.h"
#include "support/tracecapture.h"

#include "dom/limits.h"

#include <QDir>
#include <QTemporaryDir>
#include <QtTest>

/// Schemas that are spread over several files.
class TestIncludes : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readAsOne_data();
    void readAsOne();
    void countsLocationsFromTopSchema();
    void passesOverWhatIsBeingRead();
    void keepsToLimits_data();
    void keepsToLimits();
    void standsAloneWithGivenTables();
};

namespace {

// Files as "name: declarations", one a line; the first is the top schema.
QString WriteFiles(const QTemporaryDir &dir, const QString &files)
{
    QString top;
    const QStringList lines = files.split(QLatin1Char('\n'));
    for (const QString &line : lines) {
        const QString path = dir.filePath(line.section(QLatin1String(": "), 0, 0));
        QDir().mkpath(QFileInfo(path).path());
        QFile file(path);
        if (file.open(QIODevice::WriteOnly)) {
            file.write(QStringLiteral("<xs:schema>%1</xs:schema>")
                           .arg(line.section(QLatin1String(": "), 1))
                           .replace(QRegularExpression(QStringLiteral("include (\\S+);")),
                                    QStringLiteral("<xs:include schemaLocation='\\1'/>"))
                           .toUtf8());
        }
        top = top.isEmpty() ? path : top;
    }
    return top;
}

} // namespace

void TestIncludes::readAsOne_data()
{
    QTest::addColumn<QString>("files");
    QTest::addColumn<QString>("expected");

    QTest::newRow("types, references at once, and no root from the included file")
        << "top.xsd: include t.xsd;<xs:element name='r' type='T'/>\n"
           "t.xsd: <xs:complexType name='T'><xs:element name='x'/></xs:complexType><xs:element name='z'/>"
        << "? r(x)";
    QTest::newRow("behind declarations that the included file completes")
        << "top.xsd: <xs:element name='q' type='T'/>include t.xsd;<xs:element name='r' type='T'/>\n"
           "t.xsd: <xs:complexType name='T'><xs:element name='x'/></xs:complexType>"
        << "? r(x)";
    QTest::newRow("what the included file has resolved is applied once, and open for what follows")
        << "top.xsd: include t.xsd;<xs:element name='r'><xs:complexType><xs:element name='a' type='A'/>"
           "<xs:element name='b' type='B'/></xs:complexType></xs:element>\n"
           "t.xsd: <xs:complexType name='A'><xs:element name='y' type='B'/></xs:complexType>"
           "<xs:complexType name='B'><xs:element name='x'/></xs:complexType>"
        << "? r(a(y(x)) b(x))";
    QTest::newRow("a second included file that uses what the first has resolved")
        << "top.xsd: include s.xsd;include t.xsd;<xs:element name='r' type='T'/>\n"
           "s.xsd: <xs:element name='e' type='S'/><xs:complexType name='S'><xs:element name='x'/></xs:complexType>\n"
           "t.xsd: <xs:complexType name='T'><xs:element name='u' type='U'/></xs:complexType>"
           "<xs:complexType name='U'><xs:element name='s' type='S'/></xs:complexType>"
        << "? r(u(s(x)))";
    QTest::newRow("a file that two files include, with references that wait for the top schema")
        << "top.xsd: include s.xsd;include t.xsd;<xs:element name='r'><xs:complexType><xs:element name='a' type='A'/>"
           "</xs:complexType></xs:element><xs:complexType name='Late'><xs:element name='x'/></xs:complexType>\n"
           "s.xsd: include c.xsd;\n"
           "t.xsd: include c.xsd;\n"
           "c.xsd: <xs:complexType name='A'><xs:element name='b' type='B'/></xs:complexType>"
           "<xs:complexType name='B'><xs:element name='l' type='Late' minOccurs='2'/></xs:complexType>"
        << "? r(a(b(l(x) l(x))))";
    QTest::newRow("a pass that fails in the included file leaves its elements as candidates")
        << "top.xsd: include t.xsd;<xs:complexType name='Late'/><xs:element name='r'/>\n"
           "t.xsd: <xs:element name='z' type='Late'/>"
        << "? z";
    QTest::newRow("a broken file adds what stands before the fault")
        << "top.xsd: include t.xsd;<xs:element name='r' type='T'/>\n"
           "t.xsd: <xs:complexType name='T'><xs:element name='x'/></xs:complexType></a><xs:element name='z'/>"
        << "? r(x)";
    QTest::newRow("includes alone") << "top.xsd: include t.xsd;include none.xsd;\nt.xsd: <xs:element name='a'/>"
                                    << "?";
    QTest::newRow("an include without a location") << "top.xsd: <xs:include/><xs:element name='r'/>"
                                                   << "? r";
    QTest::newRow("inside a declaration")
        << "top.xsd: <xs:element name='r'><xs:complexType>include t.xsd;<xs:element name='a' type='T'/>"
           "<xs:element name='b'/></xs:complexType></xs:element>\n"
           "t.xsd: <xs:complexType name='T'><xs:element name='x'/></xs:complexType>"
        << "? r(a(x) b)";
}

void TestIncludes::readAsOne()
{
    QFETCH(QString, files);
    QFETCH(QString, expected);
    const QTemporaryDir dir;
    const QString top = WriteFiles(dir, files);
    SchemaReading reading(top);
    QVERIFY(reading.ReadFile(top));
    // An include in front of a declaration marks what it has read, so that only the declaration can be the root. One
    // inside it marks that, too; then the fragment created last is all there is.
    QCOMPARE(reading.Template(), expected);
}

void TestIncludes::countsLocationsFromTopSchema()
{
    const QTemporaryDir dir;
    const QString top =
        WriteFiles(dir,
                   QStringLiteral("top.xsd: include sub/t.xsd;<xs:element name='r' type='U'/>\n"
                                  "sub/t.xsd: include u.xsd;<xs:choice><xs:element name='p'/></xs:choice>\n"
                                  "sub/u.xsd: <xs:complexType name='V'/>\n"
                                  "u.xsd: <xs:complexType name='U'><xs:choice><xs:element name='x'/>"
                                  "<xs:element name='y'/></xs:choice></xs:complexType>"));
    SchemaReading reading(top);
    QVERIFY(reading.ReadFile(top));
    QCOMPARE(reading.Template(), QStringLiteral("? r(x y)"));
    QCOMPARE(reading.Choices(), QStringLiteral("0=x 1=y"));

    SchemaReading elsewhere(QStringLiteral("top.xsd"));
    QVERIFY(!elsewhere.ReadFile(top));
}

void TestIncludes::passesOverWhatIsBeingRead()
{
    const QTemporaryDir dir;
    const QString top =
        WriteFiles(dir,
                   QStringLiteral("top.xsd: include top.xsd;include t.xsd;<xs:element name='r' type='T'/>\n"
                                  "t.xsd: include ./t.xsd;include top.xsd;"
                                  "<xs:complexType name='T'><xs:element name='x'/></xs:complexType>"));
    const TraceCapture capture;
    SchemaReading reading(top);
    QVERIFY(reading.ReadFile(top));
    QCOMPARE(reading.Template(), QStringLiteral("? r(x)"));
    QCOMPARE(capture.Text().count(QLatin1String("it is being read already")), 3);
    QVERIFY(capture.Text().contains(dir.filePath(QStringLiteral("./t.xsd"))));
}

void TestIncludes::keepsToLimits_data()
{
    QTest::addColumn<QString>("files");
    QTest::addColumn<QString>("types");
    QTest::addColumn<QString>("trace");

    QStringList chain { QStringLiteral("top.xsd: include 1.xsd;") };
    for (int i = 1; i <= limits::kMaxOpenIncludes + 1; ++i) {
        chain << QStringLiteral("%1.xsd: include %2.xsd;<xs:complexType name='T%1'/>").arg(i).arg(i + 1);
    }
    QTest::newRow("open within each other") << chain.join(QLatin1Char('\n')) << "T64"
                                            << "at most 64 includes";
    QString many = QStringLiteral("top.xsd: ");
    for (int i = 1; i <= limits::kMaxIncludes + 1; ++i) {
        many += QStringLiteral("include %1.xsd;")
                    .arg(i == limits::kMaxIncludes      ? QStringLiteral("T64")
                             : i > limits::kMaxIncludes ? QStringLiteral("T65")
                                                        : QStringLiteral("none"));
    }
    QTest::newRow("in a run") << many
            + QStringLiteral("\nT64.xsd: <xs:complexType name='T64'/>\nT65.xsd: <xs:complexType name='T65'/>")
                              << "T64"
                              << "at most 1000 includes";
    const QString deep = QString(QStringLiteral("<a>")).repeated(480);
    QTest::newRow("below the tags of all open files")
        << QStringLiteral("top.xsd: ") + deep + QStringLiteral("include t.xsd;\nt.xsd: <xs:complexType name='T64'/>")
            + deep + QStringLiteral("include u.xsd;\nu.xsd: <xs:complexType name='T65'/>")
        << "T64"
        << "more than 500 tags";
}

void TestIncludes::keepsToLimits()
{
    QFETCH(QString, files);
    const QTemporaryDir dir;
    const QString top = WriteFiles(dir, files);
    const TraceCapture capture;
    SchemaReading reading(top);
    reading.ReadFile(top);
    QVERIFY(reading.Types().contains(QLatin1String("T64")));
    QVERIFY(!reading.Types().contains(QLatin1String("T65")));
    QFETCH(QString, trace);
    QVERIFY(capture.Text().contains(trace));
}

void TestIncludes::standsAloneWithGivenTables()
{
    SchemaReading first;
    QVERIFY(
        first.Read(QStringLiteral("<xs:complexType name='T'><xs:element name='x' maxOccurs='2'/></xs:complexType>")));
    MissingMap missing;
    OccursMap occurs;
    TypeMap types;
    ChoiceMap choices;
    first.m_oHandler.GetMaps(missing, occurs, types, choices);
    XmlSchemaHandler handler(&first, QStringLiteral("a.xsd"), missing, occurs, types, choices);
    QXmlInputSource source;
    source.setData(QStringLiteral("<xs:element name='r' type='T'/>"));
    QXmlSimpleReader reader;
    reader.setContentHandler(&handler);
    QVERIFY(reader.parse(source));
    QCOMPARE(SchemaReading::Describe(*handler.GetDocument()), QStringLiteral("? r(x)"));
}

QTEST_GUILESS_MAIN(TestIncludes)

#include "tst_includes.moc"

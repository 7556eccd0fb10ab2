#include "support/schemafiles.h"
#include "support/schemareading.h"
#include "support/tracecapture.h"

#include "dom/limits.h"

#include <QtTest>

/// Which includes are read.
class TestIncludes : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void needADirectory();
    void passOverWhatIsBeingRead();
    void keepToLimits_data();
    void keepToLimits();
};

void TestIncludes::needADirectory()
{
    const QTemporaryDir dir;
    const QString top =
        schemafiles::Write(dir, QStringLiteral("top.xsd: include t.xsd;\nt.xsd: <xs:element name='a'/>"));
    SchemaReading inside(top);
    QVERIFY(inside.ReadFile(top));
    QCOMPARE(inside.Types(), QStringLiteral("a:0*"));
    SchemaReading elsewhere(QStringLiteral("top.xsd"));
    QVERIFY(elsewhere.ReadFile(top));
    QCOMPARE(elsewhere.Types(), QString());
}

void TestIncludes::passOverWhatIsBeingRead()
{
    const QTemporaryDir dir;
    const QString top =
        schemafiles::Write(dir,
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

void TestIncludes::keepToLimits_data()
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

void TestIncludes::keepToLimits()
{
    QFETCH(QString, files);
    const QTemporaryDir dir;
    const QString top = schemafiles::Write(dir, files);
    const TraceCapture capture;
    SchemaReading reading(top);
    reading.ReadFile(top);
    QVERIFY(reading.Types().contains(QLatin1String("T64")));
    QVERIFY(!reading.Types().contains(QLatin1String("T65")));
    QFETCH(QString, trace);
    QVERIFY(capture.Text().contains(trace));
}

QTEST_GUILESS_MAIN(TestIncludes)

#include "tst_includes.moc"

#include "checkedschema.h"
#include "support/limitedprocess.h"
#include "support/schemafiles.h"
#include "support/schemareading.h"
#include "support/tracecapture.h"

#include "dom/nodewalk.h"

#include <QtTest>

#include <sys/stat.h>

/// Any file at all may stand where a schema should. Each case runs in a child with a small stack and little memory and
/// time, in the way in which the library reads a schema, and by the checker of schemas.
class TestHostileSchema : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void comesToAnEnd_data();
    void comesToAnEnd();
    void nothingThatBlocksIsIncluded();
};

namespace {

// Reads the file, and tells the result, the number of the template's elements and what was traced.
QByteArray ReadSchema(const QString &path)
{
    const TraceCapture capture;
    SchemaReading reading(path);
    const bool result = reading.m_oReader.ReadFile(path);
    int elements = 0;
    for (dom::NodeWalk walk(*reading.m_oHandler.GetDocument()); !walk.AtEnd(); walk.Next()) {
        elements += walk.Node().isElement() ? 1 : 0;
    }
    return QStringLiteral("%1 %2 %3 %4")
        .arg(result)
        .arg(elements)
        .arg(reading.m_oReader.GetRefusal(), capture.Text())
        .toUtf8();
}

struct Case
{
    const char *m_sName;
    // "{n|text}" stands for n times the text, in which # is a number that counts from 10000, and ^ the one behind it.
    // "{-n|text}" counts down to 10000.
    const char *m_sText;
    const char *m_sExpected;
};

const Case kCases[] = {
    { "truncated", "<xs:schema><xs:element name='a'><xs:complexType><xs:elem", "0 0 " },
    { "another XML", "<html><body>text</body></html>", "1 0 " },
    { "another prefix", "<xsd:schema><xsd:element name='a'/></xsd:schema>", "1 0 " },
    { "nonsense in minOccurs",
      "<xs:schema><xs:element name='r'><xs:complexType><xs:element name='a' minOccurs='1e9'/>"
      "<xs:element name='b' minOccurs='99999999999' maxOccurs='-'/></xs:complexType></xs:element></xs:schema>",
      "1 3 " },
    { "as many copies as may be",
      "<xs:schema><xs:element name='r'><xs:complexType><xs:element name='a' minOccurs='499999'/></xs:complexType>"
      "</xs:element></xs:schema>",
      "1 500000 " },
    { "one copy more",
      "<xs:schema><xs:element name='r'><xs:complexType><xs:element name='a' minOccurs='500000'/></xs:complexType>"
      "</xs:element></xs:schema>",
      "0 0 .*all declarations hold at most 500000 elements, and the tag xs:element in .*case.xsd, line 1, would" },
    { "far too many copies of a later type",
      "<xs:schema><xs:element name='r'><xs:complexType><xs:element name='a' type='T' minOccurs='2000000000'/>"
      "</xs:complexType></xs:element><xs:complexType name='T'/></xs:schema>",
      "0 0 .*all declarations hold at most 500000 elements, and \"a\" in .*case.xsd would" },
    { "far too many references to an earlier element",
      "<xs:schema><xs:element name='e'/><xs:element name='r'><xs:complexType>"
      "<xs:element ref='e' minOccurs='2000000000'/></xs:complexType></xs:element></xs:schema>",
      "0 0 .*500000 elements" },
    { "very many references to nothing",
      "<xs:schema><xs:complexType name='T'/><xs:element name='r'><xs:complexType>"
      "<xs:element ref='T' minOccurs='2000000000'/><xs:element ref='L' minOccurs='2000000000'/></xs:complexType>"
      "</xs:element><xs:complexType name='L'/></xs:schema>",
      "1 1 " },
    { "many copies of many restrictions",
      "<xs:schema><xs:complexType name='T'>{50000|<xs:restriction base='xs:int'/>}<xs:element name='x'/>"
      "</xs:complexType><xs:element name='r'><xs:complexType><xs:element name='a' type='T' minOccurs='200000'/>"
      "</xs:complexType></xs:element></xs:schema>",
      "0 0 .*500000 elements" },
    { "types that double",
      "<xs:schema><xs:complexType name='T10000'><xs:element name='x'/></xs:complexType>{40|<xs:complexType name='T^'>"
      "<xs:element name='e' type='T#'/><xs:element name='f' type='T#'/></xs:complexType>}</xs:schema>",
      "0 0 .*500000 elements" },
    { "types that double, declared the other way round",
      "<xs:schema>{-40|<xs:complexType name='T^'><xs:element name='e' type='T#'/><xs:element name='f' type='T#'/>"
      "</xs:complexType>}<xs:complexType name='T10000'><xs:element name='x'/></xs:complexType></xs:schema>",
      "0 0 .*500000 elements" },
    { "a type that holds itself many times",
      "<xs:schema><xs:complexType name='T'><xs:element name='a' type='T' minOccurs='40'/></xs:complexType></xs:schema>",
      "0 0 .*500000 elements" },
    { "many copies of many enumerations",
      "<xs:schema><xs:simpleType name='S'><xs:restriction base='xs:string'>{1999|<xs:enumeration value='v'/>}"
      "</xs:restriction></xs:simpleType><xs:element name='r'><xs:complexType>"
      "<xs:element name='a' type='S' minOccurs='200000'/></xs:complexType></xs:element></xs:schema>",
      "0 0 .*all declarations hold at most 1000000 attributes" },
    { "very many enumerations",
      "<xs:schema><xs:simpleType name='S'><xs:restriction base='xs:string'>{2000|<xs:enumeration value='v'/>}"
      "</xs:restriction></xs:simpleType></xs:schema>",
      "0 0 .*an element holds at most 2000 attributes" },
    { "many attributes that are listed many times",
      "<xs:schema><xs:element name='r'><xs:complexType>{2000|<xs:attribute name='a#'/>}{1000|<xs:extension base='r'/>}"
      "</xs:complexType></xs:element></xs:schema>",
      "0 0 .*1000000 attributes" },
    { "a deep chain of types",
      "<xs:schema><xs:complexType name='T10000'/>{3000|<xs:complexType name='T^'><xs:element name='e' type='T#'/>"
      "</xs:complexType>}</xs:schema>",
      "0 0 .*a template nests at most 500" },
    { "a deep chain of later elements whose own counts stay at none",
      "<xs:schema>{-3000|<xs:element name='a^'><xs:complexType mixed='true'><xs:element ref='a#'/></xs:complexType>"
      "</xs:element>}<xs:element name='a10000'/></xs:schema>",
      "0 0 .*a template nests at most 500" },
    { "a long chain of references against the order of the names",
      "<xs:schema>{30000|<xs:complexType name='T#'><xs:element ref='T^'/></xs:complexType>}"
      "<xs:complexType name='T40000'><xs:element name='x'/></xs:complexType><xs:element name='r' type='T10000'/>"
      "</xs:schema>",
      "1 2 " },
    { "a file as deep as may be",
      "<xs:schema>{166|<xs:element name='d'><xs:complexType><xs:sequence>}{166|</xs:sequence></xs:complexType>"
      "</xs:element>}</xs:schema>",
      "1 166 " },
    { "a deeper file", "{501|<a>}{501|</a>}", "0 0 .*500" },
    { "includes within each other", "case.xsd: include 10000.xsd;<xs:element name='r'/>\n{66|#.xsd: include ^.xsd;\n}",
      "1 1 .*at most 64 includes" },
    { "includes behind each other", "case.xsd: {1001|include none.xsd;}<xs:element name='r'/>\n",
      "1 1 .*at most 1000 includes" },
    { "includes that each include the next one twice",
      "case.xsd: include 10000.xsd;<xs:element name='r'/>\n{16|#.xsd: include ^.xsd;include ^.xsd;\n}",
      "1 1 .*at most 1000 includes" },
    { "includes below the tags of all open files",
      "case.xsd: {400|<a>}include t.xsd;{400|</a>}<xs:element name='r'/>\n"
      "t.xsd: {100|<a>}include u.xsd;{100|</a>}\n",
      "1 1 .*below more than 500 tags" },
};

QByteArray Expand(const char *text)
{
    constexpr int kFirst = 10000;
    const QStringList parts = QString(QLatin1String(text)).split(QRegularExpression(QStringLiteral("[{}]")));
    QString expanded;
    for (int i = 0; i < parts.size(); ++i) {
        const int times = i % 2 == 0 ? 1 : parts.at(i).section(QLatin1Char('|'), 0, 0).toInt();
        const QString part = i % 2 == 0 ? parts.at(i) : parts.at(i).section(QLatin1Char('|'), 1);
        for (int n = 0; n < qAbs(times); ++n) {
            const int number = times < 0 ? kFirst - times - 1 - n : kFirst + n;
            expanded += QString(part)
                            .replace(QLatin1Char('#'), QString::number(number))
                            .replace(QLatin1Char('^'), QString::number(number + 1));
        }
    }
    return expanded.toUtf8();
}

} // namespace

void TestHostileSchema::comesToAnEnd_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("expected");
    for (const Case &row : kCases) {
        QTest::newRow(row.m_sName) << Expand(row.m_sText) << QString::fromLatin1(row.m_sExpected);
    }
    QTest::newRow("binary") << QByteArray("\x7f\x45LF\0\1\2\xff\xfe\x80<<<&&&", 17) << "0 0 ";
}

void TestHostileSchema::comesToAnEnd()
{
    QFETCH(QByteArray, text);
    QFETCH(QString, expected);
    const QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("case.xsd"));
    if (text.startsWith("case.xsd: ")) {
        schemafiles::Write(dir, QString::fromUtf8(text));
    } else {
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(text) == text.size());
    }
    const auto result = limitedprocess::Run([&path] { return ReadSchema(path); });
    QCOMPARE(result.m_sReason, QString());
    const QRegularExpression pattern(QLatin1Char('^') + expected, QRegularExpression::DotMatchesEverythingOption);
    QVERIFY2(pattern.match(QString::fromUtf8(result.m_sOutput)).hasMatch(), result.m_sOutput.constData());
    const auto check = [&path] {
        const CheckedSchema schema(path);
        return schema.GetError().toUtf8() + QByteArray::number(int(schema.GetFindings().size()));
    };
    const auto checked = limitedprocess::Run(check);
    QCOMPARE(checked.m_sReason, QString());
    // What fails is told of.
    QVERIFY(!result.m_sOutput.startsWith('0') || checked.m_sOutput != "0");
}

void TestHostileSchema::nothingThatBlocksIsIncluded()
{
    const QTemporaryDir dir;
    QVERIFY(mkfifo(QFile::encodeName(dir.filePath(QStringLiteral("fifo.xsd"))).constData(), 0600) == 0);
    const QString path =
        schemafiles::Write(dir, QStringLiteral("top.xsd: include fifo.xsd;include .;<xs:element name='r'/>"));
    const auto result = limitedprocess::Run([&path] { return ReadSchema(path); });
    QCOMPARE(result.m_sReason, QString());
    QVERIFY(result.m_sOutput.startsWith("1 1 "));
}

QTEST_GUILESS_MAIN(TestHostileSchema)

#include "tst_hostileschema.moc"

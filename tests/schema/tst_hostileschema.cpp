#include "support/limitedprocess.h"
#include "support/schemafiles.h"
#include "support/schemareading.h"
#include "support/tracecapture.h"

#include "dom/fileguard.h"
#include "dom/limits.h"

#include <QtTest>

#include <sys/stat.h>

/// Any file at all may stand where a schema should. Each case runs in a child with a small stack and little memory and
/// time, in the way in which the library reads a schema: first the guard, then the reader.
class TestHostileSchema : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void comesToAnEnd_data();
    void comesToAnEnd();
    void nothingThatBlocksIsIncluded();
    void limitsAreExact_data();
    void limitsAreExact();
};

namespace {

int CountElements(const QDomNode &parent)
{
    int count = 0;
    for (QDomElement child = parent.firstChildElement(); !child.isNull(); child = child.nextSiblingElement()) {
        count += 1 + CountElements(child);
    }
    return count;
}

// Reads the file, and tells the result, the number of the template's elements and what was traced.
QByteArray ReadSchema(const QString &path)
{
    const TraceCapture capture;
    const QString reason = dom::CheckXmlFile(path);
    if (!reason.isEmpty()) {
        return "refused: " + reason.toUtf8();
    }
    SchemaReading reading(path);
    const bool result = reading.ReadFile(path);
    const int elements = CountElements(*reading.m_oHandler.GetDocument());
    return QByteArray::number(result) + ' ' + QByteArray::number(elements) + ' ' + capture.Text().toUtf8();
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
    { "empty", "", "0 0 " },
    { "truncated", "<xs:schema><xs:element name='a'><xs:complexType><xs:elem", "0 0 " },
    { "another XML", "<html><body>text</body></html>", "1 0 " },
    { "another prefix", "<xsd:schema><xsd:element name='a'/></xsd:schema>", "1 0 " },
    { "nonsense in minOccurs",
      "<xs:schema><xs:element name='r'><xs:complexType><xs:element name='a' minOccurs='1e9'/>"
      "<xs:element name='b' minOccurs='99999999999' maxOccurs='-'/></xs:complexType></xs:element></xs:schema>",
      "1 3 " },
    { "far too many copies",
      "<xs:schema><xs:element name='r'><xs:complexType><xs:element name='a' minOccurs='5000000'/></xs:complexType>"
      "</xs:element></xs:schema>",
      "0 0 a template holds" },
    { "far too many copies of a later type",
      "<xs:schema><xs:element name='r'><xs:complexType><xs:element name='a' type='T' minOccurs='5000000'/>"
      "</xs:complexType></xs:element><xs:complexType name='T'/></xs:schema>",
      "0 0 a template holds" },
    { "far too many references to an earlier element",
      "<xs:schema><xs:element name='e'/><xs:element name='r'><xs:complexType><xs:element ref='e' minOccurs='5000000'/>"
      "</xs:complexType></xs:element></xs:schema>",
      "0 0 a template holds" },
    { "far too many references to a later element",
      "<xs:schema><xs:element name='r'><xs:complexType><xs:element ref='e' minOccurs='5000000'/></xs:complexType>"
      "</xs:element><xs:element name='e'/></xs:schema>",
      "0 0 a template holds" },
    { "far too many copies in a named type",
      "<xs:schema><xs:complexType name='T'><xs:element name='a' minOccurs='5000000'/></xs:complexType></xs:schema>",
      "0 0 a template holds" },
    { "types that double",
      "<xs:schema><xs:complexType name='T10000'><xs:element name='x'/></xs:complexType>{40|<xs:complexType name='T^'>"
      "<xs:element name='e' type='T#'/><xs:element name='f' type='T#'/></xs:complexType>}</xs:schema>",
      "0 0 all declarations hold at most 500000 elements" },
    { "types that double, declared the other way round",
      "<xs:schema>{-40|<xs:complexType name='T^'><xs:element name='e' type='T#'/><xs:element name='f' type='T#'/>"
      "</xs:complexType>}<xs:complexType name='T10000'><xs:element name='x'/></xs:complexType></xs:schema>",
      "0 0 all declarations hold at most 500000 elements" },
    { "a type that holds itself many times",
      "<xs:schema><xs:complexType name='T'><xs:element name='a' type='T' minOccurs='40'/></xs:complexType></xs:schema>",
      "0 0 a template holds" },
    { "many copies of many enumerations",
      "<xs:schema><xs:simpleType name='S'><xs:restriction base='xs:string'>{1000|<xs:enumeration value='v'/>}"
      "</xs:restriction></xs:simpleType><xs:element name='r'><xs:complexType>"
      "<xs:element name='a' type='S' minOccurs='200000'/></xs:complexType></xs:element></xs:schema>",
      "0 0 all declarations hold at most 2000000 attributes" },
    { "very many enumerations",
      "<xs:schema><xs:simpleType name='S'><xs:restriction base='xs:string'>{50000|<xs:enumeration value='v'/>}"
      "</xs:restriction></xs:simpleType></xs:schema>",
      "0 0 an element holds at most 10000 attributes" },
    { "many attributes that are listed many times",
      "<xs:schema><xs:element name='r'><xs:complexType>{4900|<xs:attribute name='a#'/>}{300|<xs:extension base='r'/>}"
      "</xs:complexType></xs:element></xs:schema>",
      "0 0 the attributes of types are listed in at most 250000000 steps" },
    { "a deep chain of types",
      "<xs:schema><xs:complexType name='T10000'/>{3000|<xs:complexType name='T^'><xs:element name='e' type='T#'/>"
      "</xs:complexType>}</xs:schema>",
      "0 0 a template nests at most 500" },
    { "a deep chain of later types",
      "<xs:schema>{-3000|<xs:complexType name='T^'><xs:element name='e' type='T#'/></xs:complexType>}"
      "<xs:complexType name='T10000'/></xs:schema>",
      "0 0 a template nests at most 500" },
    { "a deep chain of elements whose own counts stay at none",
      "<xs:schema>{-3000|<xs:element name='a^'><xs:complexType mixed='true'><xs:element ref='a#'/></xs:complexType>"
      "</xs:element>}<xs:element name='a10000'/></xs:schema>",
      "0 0 a template nests at most 500" },
    { "a file that includes itself",
      "<xs:schema>{2|<xs:include schemaLocation='case.xsd'/>}<xs:element name='r'/></xs:schema>",
      "1 1 The include of" },
    { "entities that multiply",
      "<!DOCTYPE a [<!ENTITY a10000 'aaaaaaaaaaaaaaaaaaaa'>{9|<!ENTITY a^ "
      "'&a#;&a#;&a#;&a#;&a#;&a#;&a#;&a#;&a#;&a#;'>}]>"
      "<xs:schema>&a10009;</xs:schema>",
      "refused" },
    { "a deep file", "{3500|<a>}{3500|</a>}", "refused" },
    { "a file as deep as may be",
      "<xs:schema>{166|<xs:element name='d'><xs:complexType><xs:sequence>}{166|</xs:sequence></xs:complexType>"
      "</xs:element>}</xs:schema>",
      "1 166 " },
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
    QTest::addColumn<QByteArray>("expected");
    for (const Case &row : kCases) {
        QTest::newRow(row.m_sName) << Expand(row.m_sText) << QByteArray(row.m_sExpected);
    }
    QTest::newRow("binary") << QByteArray("\x7f\x45LF\0\1\2\xff\xfe\x80<<<&&&", 17) << QByteArray("0 0 ");
}

void TestHostileSchema::comesToAnEnd()
{
    QFETCH(QByteArray, text);
    QFETCH(QByteArray, expected);
    const QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("case.xsd"));
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(text);
    file.close();
    const auto result = limitedprocess::Run([&path] { return ReadSchema(path); });
    QCOMPARE(result.m_sReason, QString());
    QVERIFY2(result.m_sOutput.startsWith(expected), result.m_sOutput.constData());
}

void TestHostileSchema::nothingThatBlocksIsIncluded()
{
    const QTemporaryDir dir;
    QVERIFY(mkfifo(QFile::encodeName(dir.filePath(QStringLiteral("fifo.xsd"))).constData(), 0600) == 0);
    // Each of sixteen levels includes the next one twice: 65,536 readings if nothing counted them.
    QString levels;
    for (int level = 0; level < 16; ++level) {
        levels += QStringLiteral("%1.xsd: include %2.xsd;include %2.xsd;\n").arg(level).arg(level + 1);
    }
    const QString blocking = QStringLiteral("top.xsd: include fifo.xsd;include .;<xs:element name='r'/>");
    for (const QString &files : { levels, blocking }) {
        const QString path = schemafiles::Write(dir, files);
        const auto result = limitedprocess::Run([&path] { return ReadSchema(path); });
        QCOMPARE(result.m_sReason, QString());
        QVERIFY(result.m_sOutput.startsWith('1'));
    }
}

void TestHostileSchema::limitsAreExact_data()
{
    QTest::addColumn<int>("copies");
    QTest::addColumn<int>("elements");
    QTest::newRow("as many elements as a template may hold")
        << limits::kMaxTemplateElements - 1 << limits::kMaxTemplateElements;
    QTest::newRow("one more") << limits::kMaxTemplateElements << 0;
}

void TestHostileSchema::limitsAreExact()
{
    QFETCH(int, copies);
    SchemaReading reading;
    const bool result = reading.Read(QStringLiteral("<xs:element name='r'><xs:complexType><xs:element name='a' "
                                                    "minOccurs='%1'/></xs:complexType></xs:element>")
                                         .arg(copies));
    QFETCH(int, elements);
    QCOMPARE(result, elements > 0);
    QCOMPARE(CountElements(*reading.m_oHandler.GetDocument()), elements);
}

QTEST_GUILESS_MAIN(TestHostileSchema)

#include "tst_hostileschema.moc"

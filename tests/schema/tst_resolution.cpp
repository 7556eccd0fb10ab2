#include "support/literalpass.h"
#include "support/schemareading.h"
#include "support/tracecapture.h"

#include <QtTest>

#include <algorithm>
#include <numeric>
#include <random>

/// Names that are used before their declaration.
class TestResolution : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void leavesTables();
    void endsWithoutTemplate_data();
    void endsWithoutTemplate();
    void sweepsLikeTheLiteralPass();
};

namespace {

QString Global(const QString &name, const QString &content)
{
    return QStringLiteral("<xs:element name='%1'><xs:complexType>%2</xs:complexType></xs:element>").arg(name, content);
}

// Reads without the pass, and leaves it to the test.
class UnresolvedHandler : public XmlSchemaHandler
{
public:
    using XmlSchemaHandler::XmlSchemaHandler;
    bool endDocument() override { return true; }
};

// Schemas of declarations in any order that mostly refer to others of smaller numbers, so that few end in a circle. The
// number tells the kind: a global element, a complex type or an attribute.
class RandomSchemas
{
public:
    QString Next()
    {
        m_iCount = 4 + Pick(10);
        QVector<int> order(m_iCount);
        std::iota(order.begin(), order.end(), 0);
        std::shuffle(order.begin(), order.end(), m_oRandom);
        QString text = QStringLiteral("<xs:schema>");
        for (const int number : std::as_const(order)) {
            text += Declaration(number);
        }
        return text + QStringLiteral("</xs:schema>");
    }

private:
    int Pick(int count) { return static_cast<int>(m_oRandom() % static_cast<unsigned>(count)); }

    QString Declaration(int number)
    {
        QString content;
        for (int left = number == 0 ? 0 : 1 + Pick(3); left > 0; --left) {
            content += Reference(Pick(40) == 0 ? Pick(m_iCount) : Pick(number));
        }
        const char *const forms[] = {
            "<xs:element name='n@'><xs:complexType>%</xs:complexType></xs:element>",
            "<xs:complexType name='n@'>%<xs:element name='x'/></xs:complexType>",
            "<xs:attribute name='n@'><xs:simpleType><xs:restriction base='xs:int'><xs:minInclusive value='@'/>"
            "</xs:restriction></xs:simpleType></xs:attribute>",
        };
        return QString(QLatin1String(forms[number % 3]))
            .replace(QLatin1Char('@'), QString::number(number))
            .replace(QLatin1Char('%'), content);
    }

    QString Reference(int target)
    {
        // Now and then a local element is called like a declaration.
        const QString name = Pick(4) == 0 ? QStringLiteral("n%1").arg(Pick(m_iCount)) : QStringLiteral("e");
        const char *const forms[] = {
            "<xs:element ref='n%1' minOccurs='%2'/>",
            "<xs:element type='n%1' minOccurs='%2' name='%3'/>",
            "<xs:attribute ref='n%1' use='%2' id='%3'/>",
        };
        return QString(QLatin1String(forms[target % 3])).arg(target).arg(Pick(4)).replace(QLatin1String("%3"), name);
    }

    std::mt19937 m_oRandom { 20240611 };
    int m_iCount = 0;
};

// The literal pass over what the reader has read gives the reader's own result.
void ComparePasses(const QString &schema, bool &result)
{
    SchemaReading reading;
    result = reading.ReadDocument(schema);
    UnresolvedHandler literal(&reading, QString());
    QXmlInputSource source;
    source.setData(schema);
    QXmlSimpleReader reader;
    reader.setContentHandler(&literal);
    QVERIFY(reader.parse(source));
    MissingMap missing;
    OccursMap occurs;
    TypeMap types;
    ChoiceMap choices;
    literal.GetMaps(missing, occurs, types, choices);
    QCOMPARE(LiteralPass(missing, types).Run(), result);
    QString content;
    QString expected;
    for (const auto &[name, entry] : types) {
        content += reading.Declaration(name) + QLatin1Char('\n');
        expected += SchemaReading::Describe(*entry.m_pFragment) + QLatin1Char('\n');
    }
    QVERIFY2(content == expected, qPrintable(schema));
    // The choice of the root is no part of the pass.
    QCOMPARE(SchemaReading::DescribeTypes(types).remove(QLatin1Char('*')), reading.Types().remove(QLatin1Char('*')));
}

} // namespace

void TestResolution::leavesTables()
{
    SchemaReading reading;
    QVERIFY(reading.Read(
        QStringLiteral("<xs:simpleType name='LevelType'><xs:restriction base='xs:double'><xs:minInclusive value='0'/>"
                       "<xs:maxInclusive value='100'/></xs:restriction></xs:simpleType>")
        + Global(QStringLiteral("Report"),
                 QStringLiteral("<xs:element name='Title' type='xs:string' default='none'/>"
                                "<xs:element name='Scan' type='ScanType' minOccurs='2' maxOccurs='unbounded'/>"))
        + QStringLiteral("<xs:complexType name='ScanType'><xs:element name='Level' type='LevelType'/>"
                         "<xs:element name='Note' type='xs:string' minOccurs='0'/></xs:complexType>")));
    const QString scan = QStringLiteral("Scan(Level{maxInclusive=100 minInclusive=0 type=double} Note{type=string})");
    QCOMPARE(reading.Template(), QStringLiteral("? Report(Title{default=none type=string} %1 %1)").arg(scan));
    QCOMPARE(reading.Occurs(), QStringLiteral("Note:0=ScanType Scan:-1=Report"));
    QCOMPARE(reading.Choices(), QString());
    QCOMPARE(reading.Types(), QStringLiteral("LevelType:0* Report:0* Scan:-1* ScanType:-1*"));
    QCOMPARE(reading.Missing(), QStringLiteral("Scan:1<Report> ScanType:1<Report> ScanType:1<Scan>"));
}

void TestResolution::endsWithoutTemplate_data()
{
    QTest::addColumn<QString>("schema");
    QTest::addColumn<QString>("message");
    QTest::addColumn<QString>("declaration");

    QTest::newRow("a name that is declared nowhere; what comes before it has been applied")
        << Global(QStringLiteral("r"),
                  QStringLiteral("<xs:element ref='A'/><xs:element ref='B'/><xs:element ref='C'/>"))
            + QStringLiteral("<xs:element name='A'/><xs:element name='C'/>")
        << "Missing Element was not found! XmlSchemaHandler terminates..."
        << "r(A)";
    QTest::newRow("a circle") << Global(QStringLiteral("r"),
                                        QStringLiteral("<xs:element ref='A'/><xs:element name='c' type='C'/>"))
            + Global(QStringLiteral("A"), QStringLiteral("<xs:element ref='B'/>"))
            + Global(QStringLiteral("B"), QStringLiteral("<xs:element ref='A'/>"))
            + QStringLiteral("<xs:complexType name='C'><xs:element name='x'/></xs:complexType>")
                              << "Missing Elements refer to each other! XmlSchemaHandler terminates... A, B"
                              << "r(c(x))";
}

void TestResolution::endsWithoutTemplate()
{
    QFETCH(QString, schema);
    const TraceCapture capture;
    SchemaReading reading;
    QVERIFY(!reading.Read(schema));
    QCOMPARE(reading.Template(), QString());
    QTEST(capture.Text().section(QLatin1Char(QLatin1Char('\n')), 0, 0), "message");
    QTEST(reading.Declaration(QStringLiteral("r")), "declaration");
}

void TestResolution::sweepsLikeTheLiteralPass()
{
    RandomSchemas schemas;
    int resolved = 0;
    for (int round = 0; round < 2000 && !QTest::currentTestFailed(); ++round) {
        bool result = false;
        ComparePasses(schemas.Next(), result);
        resolved += result ? 1 : 0;
    }
    // It would be worth little if most schemas ended in a circle, or none.
    QVERIFY(resolved > 1000 && resolved < 1990);
}

QTEST_GUILESS_MAIN(TestResolution)

#include "tst_resolution.moc"

#include "support/schemareading.h"

#include <QtTest>

/// What the schema allows beyond the template: the occurrence table and the choice table.
class TestOccurrences : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void fillsTables_data();
    void fillsTables();
};

void TestOccurrences::fillsTables_data()
{
    QTest::addColumn<QString>("content");
    QTest::addColumn<QString>("expected");
    QTest::addColumn<QString>("occurs");
    QTest::addColumn<QString>("choices");

    const auto limitRow = [](const char *limits, const char *copies, const char *occurs) {
        QTest::newRow(limits) << QStringLiteral("<xs:element name='a' %1/>").arg(QLatin1String(limits))
                              << QStringLiteral("? r(%1)").arg(QLatin1String(copies)) << occurs << "";
    };
    limitRow("minOccurs='0'", "a", "a:0=r");
    limitRow("minOccurs='0' maxOccurs='3'", "a", "a:300=r");
    limitRow("maxOccurs='3' minOccurs='1'", "a", "a:3=r");
    limitRow("maxOccurs='unbounded'", "a", "a:-1=r");
    limitRow("minOccurs='0' maxOccurs='unbounded'", "a", "a:-100=r");
    limitRow("minOccurs='2'", "a a", "");
    limitRow("maxOccurs='many'", "a", "a:0=r");
    limitRow("maxOccurs='-100'", "a", "");
    limitRow("minOccurs='-100' maxOccurs='2'", "a", "a:2=r");
    limitRow("maxOccurs='200'", "a", "a:200=r");
    limitRow("minOccurs='0' maxOccurs='2147483647'", "a", "a:2147483600=r");
    QTest::newRow("negative minOccurs files its limits and its place in a choice")
        << "<xs:choice><xs:element name='a' minOccurs='-1' maxOccurs='2'/><xs:element name='b'/></xs:choice>"
        << "? r(b)"
        << "a:2=r"
        << "0=a 1=b";
    QTest::newRow("parents: the current element, twice if declared twice, and the named type")
        << "<xs:element name='a' maxOccurs='5'/><xs:element name='p'><xs:complexType>"
           "<xs:element name='a' maxOccurs='5'/><xs:element name='a' maxOccurs='5'/><xs:element name='a' "
           "minOccurs='0'/>"
           "</xs:complexType></xs:element><xs:element name='t' type='T'/>"
        << "? r(a p(a a a) t(x))"
        << "a:0=p;5=r,p,p"
        << "";
    QTest::newRow("choices count in hundreds, an empty one too, and an inner one ends the outer")
        << "<xs:choice><xs:element name='a'/><xs:element name='b'><xs:complexType><xs:element name='c'/>"
           "</xs:complexType></xs:element></xs:choice><xs:choice/><xs:choice minOccurs='0'><xs:element name='d'/>"
           "<xs:choice><xs:element name='e'/></xs:choice><xs:element name='f'/></xs:choice>"
        << "? r(a b(c) d e f)"
        << ""
        << "0=a 1=b 2=c 200=d 201=e";
    QTest::newRow("neither name nor reference")
        << "<xs:choice><xs:element minOccurs='0'/><xs:element name='a'/></xs:choice>"
        << "? r(a)"
        << ""
        << "0=a";
    QTest::newRow("references, complete and waiting")
        << "<xs:choice><xs:element ref='g' minOccurs='2' maxOccurs='3'/><xs:element ref='late' minOccurs='0'/>"
           "</xs:choice>"
        << "? r(g(x) g(x) late)"
        << "g:3=r late:0=r"
        << "0=g 1=late";
}

void TestOccurrences::fillsTables()
{
    QFETCH(QString, content);
    QFETCH(QString, expected);
    SchemaReading reading;
    QVERIFY(
        reading.Read(QStringLiteral("<xs:complexType name='T'><xs:element name='x' maxOccurs='5'/></xs:complexType>"
                                    "<xs:element name='g'><xs:complexType><xs:element name='x'/></xs:complexType>"
                                    "</xs:element><xs:element name='r'><xs:complexType><xs:sequence>%1</xs:sequence>"
                                    "</xs:complexType></xs:element><xs:element name='late'/>")
                         .arg(content)));
    QCOMPARE(reading.Template(), expected);
    // An element of a named type stands below the type's name.
    QFETCH(QString, occurs);
    QCOMPARE(reading.Occurs(), (occurs + QStringLiteral(" x:5=T")).trimmed());
    QTEST(reading.Choices(), "choices");
}

QTEST_GUILESS_MAIN(TestOccurrences)

#include "tst_occurrences.moc"

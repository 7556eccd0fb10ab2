#include "support/schemareading.h"

#include <QtTest>

/// Simple types and facets: which element carries them.
class TestFacets : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void reachElements_data();
    void reachElements();
};

void TestFacets::reachElements_data()
{
    QTest::addColumn<QString>("schema");
    QTest::addColumn<QString>("expected");

    QTest::newRow("anonymous type of a global element")
        << "<xs:element name='a'><xs:simpleType>@bounds</xs:simpleType></xs:element>"
        << "? a{maxInclusive=100 minInclusive=0 type=double}";
    QTest::newRow("named type, used twice, with enumerations numbered anew")
        << "<xs:simpleType name='S'><xs:restriction base='xs:string'><xs:enumeration value='u'/>"
           "<xs:enumeration value='v'/></xs:restriction></xs:simpleType>"
           "<xs:simpleType name='U'><xs:restriction base='xs:string'><xs:enumeration value='w'/></xs:restriction>"
           "</xs:simpleType><xs:element name='a'><xs:complexType><xs:element name='b' type='S' default='u'/>"
           "<xs:element name='c' type='S'/><xs:element name='d' type='U'/></xs:complexType></xs:element>"
        << "? a(b{default=u enumeration1=u enumeration2=v type=string} c{enumeration1=u enumeration2=v type=string} "
           "d{enumeration1=w type=string})";
    QTest::newRow("of two facets with one tag the second stays")
        << "<xs:element name='a'><xs:simpleType><xs:restriction base='xs:string'><xs:pattern value='p'/>"
           "<xs:pattern value='q'/></xs:restriction></xs:simpleType></xs:element>"
        << "? a{pattern=q type=string}";
    QTest::newRow("a user type as base leaves the type empty")
        << "<xs:element name='a'><xs:simpleType><xs:restriction base='T'><xs:length value='3'/></xs:restriction>"
           "</xs:simpleType></xs:element>"
        << "? a{length=3 type=}";
    QTest::newRow("another first attribute than base")
        << "<xs:simpleType name='S'><xs:restriction id='r' base='xs:int'><xs:length value='3'/></xs:restriction>"
           "</xs:simpleType><xs:element name='a' type='S'/>"
        << "? a{length=3}";
    QTest::newRow("restriction without attributes, facets without attributes")
        << "<xs:simpleType name='S'><xs:restriction><xs:annotation><xs:documentation/></xs:annotation>"
           "<xs:enumeration/><xs:enumeration value='u'/></xs:restriction></xs:simpleType>"
           "<xs:element name='a' type='S'/>"
        << "? a{enumeration1=u}";
    QTest::newRow("a list has no carrier")
        << "<xs:simpleType name='S'><xs:list itemType='xs:int'/></xs:simpleType><xs:element name='a' type='S'/>"
        << "? a";
    QTest::newRow("the first member of a union counts")
        << "<xs:simpleType name='S'><xs:union><xs:simpleType><xs:restriction base='xs:int'/></xs:simpleType>"
           "<xs:simpleType><xs:restriction base='xs:string'><xs:length value='1'/></xs:restriction></xs:simpleType>"
           "</xs:union></xs:simpleType><xs:element name='a' type='S'/>"
        << "? a{type=int}";
    QTest::newRow("named type behind local elements")
        << "<xs:element name='a'><xs:complexType><xs:element name='b' type='xs:string'/></xs:complexType></xs:element>"
           "<xs:complexType name='C'><xs:element name='x'><xs:simpleType>@bounds</xs:simpleType></xs:element>"
           "<xs:element name='y'/></xs:complexType>"
           "<xs:simpleType name='S'><xs:restriction base='xs:int'/></xs:simpleType>"
           "<xs:element name='z'><xs:complexType><xs:element name='s' type='S'/><xs:element name='c' type='C'/>"
           "</xs:complexType></xs:element>"
        << "? z(s{type=int} c(x{maxInclusive=100 minInclusive=0 type=double} y))";
    QTest::newRow("only the last of several copies")
        << "<xs:element name='a'><xs:complexType><xs:element name='b' "
           "minOccurs='2'><xs:simpleType>@bounds</xs:simpleType></xs:element></xs:complexType></xs:element>"
        << "? a(b b{maxInclusive=100 minInclusive=0 type=double})";
    QTest::newRow("an end tag lowers the depth inside a restriction")
        << "<xs:element name='a'><xs:complexType><xs:element name='b'><xs:simpleType><xs:restriction base='xs:int'>"
           "<xs:simpleType/></xs:restriction></xs:simpleType></xs:element><xs:element name='z'/></xs:complexType>"
           "</xs:element>"
        << "? z";
}

void TestFacets::reachElements()
{
    QFETCH(QString, schema);
    schema.replace(QLatin1String("@bounds"),
                   QLatin1String("<xs:restriction base='xs:double'><xs:minInclusive value='0'/>"
                                 "<xs:maxInclusive value='100'/></xs:restriction>"));
    QFETCH(QString, expected);
    SchemaReading reading;
    QVERIFY(reading.Read(schema));
    QCOMPARE(reading.Template(), expected);
}

QTEST_GUILESS_MAIN(TestFacets)

#include "tst_facets.moc"

#include "support/schemareading.h"

#include <QtTest>

/// Schema attributes and extensions: which element carries them, and in what form.
class TestAttributes : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void reachElements_data();
    void reachElements();
};

void TestAttributes::reachElements_data()
{
    QTest::addColumn<QString>("schema");
    QTest::addColumn<QString>("expected");

    QTest::newRow("by name, with the prefix of its type")
        << "<xs:element name='r'><xs:complexType><xs:attribute name='id' type='xs:int' use='required' default='1'/>"
           "<xs:attribute name='b'/></xs:complexType></xs:element>"
        << "? r{b= id=xs:int}";
    QTest::newRow("by reference: type, bounds and enumerations travel, no other facet and no default")
        << "<xs:attribute name='unit' default='Hz'><xs:simpleType><xs:restriction base='xs:string'>"
           "<xs:enumeration value='Hz'/><xs:enumeration value='kHz'/><xs:minLength value='2'/></xs:restriction>"
           "</xs:simpleType></xs:attribute>"
           "<xs:element name='a'><xs:complexType><xs:element name='b'><xs:complexType><xs:attribute ref='unit'/>"
           "</xs:complexType></xs:element></xs:complexType></xs:element><xs:attribute name='Z' type='xs:int'/>"
        << "? a(b{enumeration1unit=Hz enumeration2unit=kHz unit=string})";
    QTest::newRow("by reference to an attribute of a simple type")
        << "<xs:simpleType name='S'><xs:restriction base='xs:int'><xs:maxInclusive value='9'/></xs:restriction>"
           "</xs:simpleType><xs:attribute name='n' type='S'/>"
           "<xs:element name='r'><xs:complexType><xs:attribute ref='n'/></xs:complexType></xs:element>"
        << "? r{maxInclusiven=9 n=int}";
    QTest::newRow("an attribute that nobody uses is a root candidate")
        << "<xs:element name='a'/><xs:attribute name='b' type='xs:int'/>"
        << "? b{type=int}";
    QTest::newRow("a restriction below an attribute writes to the surrounding element")
        << "<xs:element name='r'><xs:complexType><xs:attribute name='u'><xs:simpleType>"
           "<xs:restriction base='xs:string'/></xs:simpleType></xs:attribute></xs:complexType></xs:element>"
        << "? r{type=string u=}";
    QTest::newRow("extension of a built-in type, at two levels")
        << "<xs:element name='r'><xs:complexType><xs:sequence><xs:element name='a'><xs:complexType><xs:simpleContent>"
           "<xs:extension base='xs:double'><xs:attribute name='u' type='xs:string'/></xs:extension></xs:simpleContent>"
           "</xs:complexType></xs:element><xs:element name='b'/></xs:sequence></xs:complexType></xs:element>"
        << "? r(a{type=double u=xs:string} b)";
    QTest::newRow("extension of a simple type brings its facets, of a complex one its first element's attributes")
        << "<xs:simpleType name='S'><xs:restriction base='xs:int'><xs:enumeration value='1'/></xs:restriction>"
           "</xs:simpleType><xs:complexType name='C'><xs:element name='x' type='xs:date' default='d'/>"
           "<xs:element name='y'/></xs:complexType>"
           "<xs:element name='r'><xs:complexType><xs:element name='a'><xs:complexType><xs:extension base='S'/>"
           "</xs:complexType></xs:element><xs:element name='b'><xs:complexType><xs:extension base='C'/>"
           "</xs:complexType></xs:element></xs:complexType></xs:element>"
        << "? r(a{enumeration1=1 type=int} b{default=d type=date})";
    QTest::newRow("extension whose first attribute isn't base, or that has none")
        << "<xs:element name='r'><xs:complexType><xs:extension id='i' base='xs:int'/><xs:extension/>"
           "<xs:element name='a'/></xs:complexType></xs:element>"
        << "? r(a)";
    // Named types: what stands in no local element belongs to the type.
    QTest::newRow("named type with simple content, a base with bounds and attributes")
        << "<xs:element name='first'><xs:complexType><xs:element name='local'/></xs:complexType></xs:element>"
           "<xs:simpleType name='S'><xs:restriction base='xs:double'><xs:minInclusive value='0'/></xs:restriction>"
           "</xs:simpleType><xs:attribute name='w' type='xs:int'/>"
           "<xs:complexType name='Level'><xs:simpleContent><xs:extension base='S'>"
           "<xs:attribute name='Unit' type='xs:string'/><xs:attribute ref='w'/></xs:extension></xs:simpleContent>"
           "</xs:complexType><xs:element name='z'><xs:complexType><xs:element name='a' type='Level' minOccurs='2'/>"
           "</xs:complexType></xs:element>"
        << "? z(a{Unit=xs:string minInclusive=0 type=double w=int} a{Unit=xs:string minInclusive=0 type=double w=int})";
    QTest::newRow("named type with a sequence and attributes behind it")
        << "<xs:complexType name='T'><xs:sequence><xs:element name='x'/><xs:element name='y'/></xs:sequence>"
           "<xs:attribute name='id' type='xs:int'/></xs:complexType><xs:element name='r' type='T'/>"
        << "? r{id=xs:int}(x y)";
    QTest::newRow("attributes inside a local element of a named type")
        << "<xs:attribute name='g' type='xs:int'/><xs:complexType name='T'><xs:sequence><xs:element name='x'>"
           "<xs:complexType><xs:extension base='xs:string'><xs:attribute name='u'/><xs:attribute ref='g'/>"
           "</xs:extension></xs:complexType></xs:element></xs:sequence></xs:complexType><xs:element name='r' type='T'/>"
        << "? r(x{g=int type=string u=})";
    QTest::newRow("restriction below an attribute of a named type has no effect on its elements")
        << "<xs:complexType name='T'><xs:simpleContent><xs:extension base='xs:double'><xs:attribute name='u'>"
           "<xs:simpleType><xs:restriction base='xs:string'/></xs:simpleType></xs:attribute></xs:extension>"
           "</xs:simpleContent></xs:complexType><xs:element name='r' type='T'/>"
        << "? r{type=double u=}";
    QTest::newRow("extension of a named type with a carrier")
        << "<xs:complexType name='B'><xs:element name='x'/><xs:attribute name='u'/></xs:complexType>"
           "<xs:complexType name='D'><xs:complexContent><xs:extension base='B'><xs:element name='y'/></xs:extension>"
           "</xs:complexContent></xs:complexType><xs:element name='r' type='D'/>"
        << "? r{u=}(y)";
    QTest::newRow("nothing is written before any declaration")
        << "<xs:complexType><xs:attribute name='u'/><xs:attribute ref='v'/><xs:extension base='xs:int'/>"
           "<xs:extension base='B'/></xs:complexType><xs:element name='r'/>"
        << "? r";
    // The same by way of the resolution pass.
    QTest::newRow("forward reference to an attribute")
        << "<xs:element name='r'><xs:complexType><xs:element name='a'/><xs:attribute ref='n'/></xs:complexType>"
           "</xs:element><xs:attribute name='n'><xs:simpleType><xs:restriction base='xs:int'>"
           "<xs:maxExclusive value='9'/><xs:pattern value='p'/></xs:restriction></xs:simpleType></xs:attribute>"
        << "? r{maxExclusiven=9 n=int}(a)";
    QTest::newRow("forward base: own names, the usual target, and what the declaration set stays")
        << "<xs:element name='r'><xs:complexType><xs:element name='a'><xs:complexType><xs:extension base='B'>"
           "<xs:attribute name='u' type='xs:int'/></xs:extension></xs:complexType></xs:element></xs:complexType>"
           "</xs:element><xs:complexType name='B'><xs:extension base='xs:double'><xs:attribute name='u'/>"
           "<xs:attribute name='v'/></xs:extension></xs:complexType>"
        << "? r(a{type=double u=xs:int v=})";
    QTest::newRow("forward named type with content, attributes and a forward base")
        << "<xs:element name='r'><xs:complexType><xs:element name='a' type='T' minOccurs='2'/></xs:complexType>"
           "</xs:element><xs:complexType name='T'><xs:element name='x'/><xs:extension base='S'>"
           "<xs:attribute ref='n'/></xs:extension></xs:complexType><xs:attribute name='n' type='xs:int'/>"
           "<xs:simpleType name='S'><xs:restriction base='xs:string'><xs:length value='2'/></xs:restriction>"
           "</xs:simpleType>"
        << "? r(a{length=2 n=int type=string}(x) a{length=2 n=int type=string}(x))";
}

void TestAttributes::reachElements()
{
    QFETCH(QString, schema);
    QFETCH(QString, expected);
    SchemaReading reading;
    QVERIFY(reading.Read(schema));
    QCOMPARE(reading.Template(), expected);
}

QTEST_GUILESS_MAIN(TestAttributes)

#include "tst_attributes.moc"

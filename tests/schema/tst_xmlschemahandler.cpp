#include "support/schemareading.h"

#include <QtTest>

#include <type_traits>

static_assert(!std::is_copy_constructible_v<XmlSchemaHandler> && !std::is_copy_assignable_v<XmlSchemaHandler>);

/// Global and local declarations, types and positions, the choice of the root.
class TestXmlSchemaHandler : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void buildsTemplate_data();
    void buildsTemplate();
    void worksWithoutCallback();
    void leavesTemplateEmptyAfterParseError();
};

void TestXmlSchemaHandler::buildsTemplate_data()
{
    QTest::addColumn<QString>("schema");
    QTest::addColumn<QString>("expected");

    QTest::newRow("no declaration") << "<xs:annotation/>"
                                    << "?";
    QTest::newRow("one global element") << "<xs:element name='a' type='xs:double' default='1'/>"
                                        << "? a{default=1 type=double}";
    QTest::newRow("siblings go to the right parent")
        << "<xs:element name='a'><xs:complexType><xs:sequence>"
           "<xs:element name='b'><xs:complexType><xs:sequence>"
           "<xs:element name='c'><xs:complexType><xs:sequence>"
           "<xs:element name='d' type='xs:int'/></xs:sequence></xs:complexType></xs:element>"
           "<xs:element name='e' type='xs:string'/></xs:sequence></xs:complexType></xs:element>"
           "<xs:element name='f' type='xs:string'/></xs:sequence></xs:complexType></xs:element>"
        << "? a(b(c(d{type=int}) e{type=string}) f{type=string})";
    QTest::newRow("anonymous simple types move nothing")
        << "<xs:element name='a'><xs:complexType>"
           "<xs:element name='b'><xs:simpleType><xs:restriction base='xs:int'/></xs:simpleType></xs:element>"
           "<xs:element name='c'/></xs:complexType></xs:element>"
        << "? a(b{type=int} c)";
    QTest::newRow("first attribute is the name") << "<xs:element id='T' name='x' type='xs:string'/>"
                                                 << "? T{type=string}";
    QTest::newRow("a global element named as its type holds itself") << "<xs:element type='T' name='x'/>"
                                                                     << "? T(T)";
    QTest::newRow("other prefix") << "<xsd:element name='b'/><xs:element name='a'/>"
                                  << "? a";
    QTest::newRow("greatest unused name is the root")
        << "<xs:element name='b'/><xs:element name='a'/><xs:attribute name='B'/>"
        << "? b";
    QTest::newRow("built-in types lose three characters wherever the prefix stands")
        << "<xs:element name='a' type='my-xs:int'/>"
        << "? a{type=xs:int}";
    QTest::newRow("complex type by name")
        << "<xs:complexType name='T'><xs:element name='x' default='d'/></xs:complexType>"
           "<xs:element name='a'><xs:complexType><xs:element name='b' type='T' minOccurs='2'/>"
           "<xs:element name='c' type='T' minOccurs='0'/></xs:complexType></xs:element>"
        << "? a(b(x{default=d}) b(x{default=d}) c(x{default=d}))";
    QTest::newRow("named types are flat")
        << "<xs:complexType name='T'><xs:element name='x'><xs:complexType><xs:element name='y'/></xs:complexType>"
           "</xs:element><xs:element name='z'/></xs:complexType><xs:element name='a' type='T'/>"
        << "? a(x y z)";
    QTest::newRow("a type that holds itself takes what it holds so far")
        << "<xs:complexType name='T'><xs:element name='x'/><xs:element name='y' type='T'/></xs:complexType>"
           "<xs:element name='a' type='T'/>"
        << "? a(x y(x y))";
    QTest::newRow("a later declaration replaces an earlier one")
        << "<xs:complexType name='T'><xs:element name='x'/></xs:complexType>"
           "<xs:complexType name='T'><xs:element name='y'/></xs:complexType><xs:element name='a' type='T'/>"
        << "? a(y)";
    QTest::newRow("any attribute makes a type a named one")
        << "<xs:element name='a'><xs:complexType mixed='true'><xs:element name='b'/></xs:complexType></xs:element>"
           "<xs:element name='Z' type='true'/>"
        << "? a(b)";
    QTest::newRow("without a root candidate the last fragment")
        << "<xs:complexType name='T'><xs:element name='x'/><xs:element name='y'/></xs:complexType>"
        << "? x y";
    QTest::newRow("a placeholder is no root")
        << "<xs:simpleType name='T'><xs:restriction base='xs:int'/></xs:simpleType>"
        << "?";
    QTest::newRow("global element without attributes goes with its content")
        << "<xs:element name='a'/><xs:element><xs:complexType><xs:element name='x'/></xs:complexType></xs:element>"
           "<xs:element name='A'/>"
        << "? a";
    QTest::newRow("negative minOccurs goes with its content")
        << "<xs:element name='a'><xs:complexType><xs:element name='x'/>"
           "<xs:element name='y' minOccurs='-1'><xs:complexType><xs:element name='z'/></xs:complexType></xs:element>"
           "<xs:element name='w'/></xs:complexType></xs:element>"
        << "? a(x w)";
    QTest::newRow("unreadable minOccurs is none")
        << "<xs:element name='a'><xs:complexType><xs:element name='x' minOccurs='many'/></xs:complexType></xs:element>"
        << "? a(x)";
    QTest::newRow("a local element without a name has no effect")
        << "<xs:element name='a'><xs:complexType><xs:element type='xs:int'><xs:complexType><xs:element name='x'/>"
           "</xs:complexType></xs:element><xs:element name='y'/></xs:complexType></xs:element>"
        << "? a(x y)";
    QTest::newRow("an anonymous complex type in a named type before any global element")
        << "<xs:complexType name='T'><xs:element name='x'><xs:complexType><xs:element name='y'/></xs:complexType>"
           "</xs:element></xs:complexType><xs:element name='a'><xs:complexType><xs:element name='b' type='T'/>"
           "<xs:element name='c'/></xs:complexType></xs:element>"
        << "? a(b(x y) c)";
    QTest::newRow("nothing takes a local element before any declaration")
        << "<xs:complexType><xs:element name='x'/><xs:restriction base='xs:int'/></xs:complexType>"
        << "?";
}

void TestXmlSchemaHandler::buildsTemplate()
{
    QFETCH(QString, schema);
    QFETCH(QString, expected);
    SchemaReading reading;
    QVERIFY(reading.Read(schema));
    QCOMPARE(reading.Template(), expected);
}

void TestXmlSchemaHandler::worksWithoutCallback()
{
    XmlSchemaHandler handler(nullptr, QStringLiteral("a.xsd"));
    QVERIFY(handler.startElement({}, {}, QStringLiteral("xs:element"), QXmlAttributes()));
    QVERIFY(!handler.endDocument());
    QVERIFY(handler.GetDocument()->firstChild().isNull());
}

void TestXmlSchemaHandler::leavesTemplateEmptyAfterParseError()
{
    SchemaReading reading;
    QVERIFY(!reading.ReadDocument(QStringLiteral("<s><xs:element name='a'/><xs:element name='b'></s>")));
    QCOMPARE(reading.Template(), QString());
    QCOMPARE(reading.Types(), QStringLiteral("a:0 b:0"));
}

QTEST_GUILESS_MAIN(TestXmlSchemaHandler)

#include "tst_xmlschemahandler.moc"

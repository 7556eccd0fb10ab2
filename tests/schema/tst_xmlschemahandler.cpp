#include "support/schemareading.h"

#include <QtTest>

#include <type_traits>

static_assert(!std::is_copy_constructible_v<XmlSchemaHandler> && !std::is_copy_assignable_v<XmlSchemaHandler>);

/// What a handler does outside a run that succeeds.
class TestXmlSchemaHandler : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void worksWithoutCallback();
    void leavesTemplateEmptyAfterParseError();
    void goesOnWithGivenTables();
};

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

void TestXmlSchemaHandler::goesOnWithGivenTables()
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

QTEST_GUILESS_MAIN(TestXmlSchemaHandler)

#include "tst_xmlschemahandler.moc"

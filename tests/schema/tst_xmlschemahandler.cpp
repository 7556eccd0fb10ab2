#include "support/schemafiles.h"
#include "support/schemareading.h"

#include <QtTest>

/// What a handler does outside a run that succeeds from its beginning.
class TestXmlSchemaHandler : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsNothingWithoutCallback();
    void leavesTemplateEmptyAfterParseError();
    void goesOnWithGivenTables();
    void includesNothingWithoutDirectory();
};

void TestXmlSchemaHandler::readsNothingWithoutCallback()
{
    XmlSchemaHandler handler(nullptr, QStringLiteral("a.xsd"));
    QVERIFY(handler.startElement({}, {}, QStringLiteral("xs:element"), QXmlAttributes()));
    QVERIFY(!handler.endDocument());
    QVERIFY(handler.GetDocument()->firstChild().isNull());
}

void TestXmlSchemaHandler::leavesTemplateEmptyAfterParseError()
{
    SchemaReading reading;
    QVERIFY(!reading.Read(QStringLiteral("<xs:element name='a'/><xs:element name='b'></xs>")));
    QCOMPARE(reading.Template(), QString());
    QCOMPARE(reading.Table(QStringLiteral("types")), QStringLiteral("a:0 b:0"));
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
    dom::GuardedReader reader;
    reader.setContentHandler(&handler);
    QVERIFY(reader.ReadText(QStringLiteral("<xs:element name='r' type='T'/>")));
    QCOMPARE(ToText(*handler.GetDocument()), QStringLiteral("<r><x/></r>"));
}

void TestXmlSchemaHandler::includesNothingWithoutDirectory()
{
    const QTemporaryDir dir;
    const QString top =
        schemafiles::Write(dir, QStringLiteral("top.xsd: include t.xsd;\nt.xsd: <xs:element name='a'/>"));
    SchemaReading elsewhere(QStringLiteral("top.xsd"));
    QVERIFY(elsewhere.m_oReader.ReadFile(top));
    QCOMPARE(elsewhere.Table(QStringLiteral("types")), QString());
}

QTEST_GUILESS_MAIN(TestXmlSchemaHandler)

#include "tst_xmlschemahandler.moc"

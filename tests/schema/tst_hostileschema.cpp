#include "support/limitedprocess.h"
#include "support/schemareading.h"
#include "support/tracecapture.h"

#include "dom/fileguard.h"
#include "dom/limits.h"

#include <QTemporaryDir>
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

QString Local(const QString &name, const QString &attributes)
{
    return QStringLiteral("<xs:element name='%1' %2/>").arg(name, attributes);
}

QString Element(const QString &name, const QString &content)
{
    return QStringLiteral("<xs:element name='%1'><xs:complexType>%2</xs:complexType></xs:element>").arg(name, content);
}

// Types T1 to Tn, each of which holds the one before it `times` times; the root is of the last.
QString TypeChain(int count, int times, bool backwards)
{
    QStringList types { QStringLiteral("<xs:complexType name='T0'><xs:element name='x'/></xs:complexType>") };
    for (int i = 1; i <= count; ++i) {
        types << QStringLiteral("<xs:complexType name='T%1'>%2</xs:complexType>")
                     .arg(i)
                     .arg(Local(QStringLiteral("e"), QStringLiteral("type='T%1'").arg(i - 1)).repeated(times));
    }
    if (backwards) {
        std::reverse(types.begin(), types.end());
    }
    return types.join(QString()) + Local(QStringLiteral("r"), QStringLiteral("type='T%1'").arg(count));
}

QString InSchema(const QString &declarations)
{
    return QStringLiteral("<xs:schema>%1</xs:schema>").arg(declarations);
}

} // namespace

void TestHostileSchema::comesToAnEnd_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QByteArray>("expected");

    const auto row = [](const char *name, const QString &text, const char *expected) {
        QTest::newRow(name) << text.toUtf8() << QByteArray(expected);
    };
    const QString tooMany = QStringLiteral("minOccurs='5000000'");
    const QString good = Local(QStringLiteral("r"), QString());
    row("empty", QString(), "0 0 ");
    row("truncated", QStringLiteral("<xs:schema><xs:element name='a'><xs:complexType><xs:elem"), "0 0 ");
    QTest::newRow("binary") << QByteArray("\x7f\x45LF\0\1\2\xff\xfe\x80<<<&&&", 17) << QByteArray("0 0 ");
    row("another XML", QStringLiteral("<html><body>text</body></html>"), "1 0 ");
    row("another prefix", QStringLiteral("<xsd:schema><xsd:element name='a'/></xsd:schema>"), "1 0 ");
    row("nonsense in minOccurs",
        InSchema(Element(QStringLiteral("r"),
                         Local(QStringLiteral("a"), QStringLiteral("minOccurs='1e9'"))
                             + Local(QStringLiteral("b"), QStringLiteral("minOccurs='99999999999' maxOccurs='-'")))),
        "1 3 ");
    row("far too many copies", InSchema(Element(QStringLiteral("r"), Local(QStringLiteral("a"), tooMany))),
        "0 0 a template");
    row("far too many copies of a later type",
        InSchema(Element(QStringLiteral("r"), Local(QStringLiteral("a"), QStringLiteral("type='T0' ") + tooMany))
                 + TypeChain(0, 1, false)),
        "0 0 a template");
    row("far too many references, to an earlier and to a later element",
        InSchema(Element(QStringLiteral("r"), QStringLiteral("<xs:element ref='z' %1/>").arg(tooMany))
                 + Local(QStringLiteral("z"), QString())),
        "0 0 a template");
    row("copies in a named type",
        InSchema(QStringLiteral("<xs:complexType name='T'>%1</xs:complexType>").arg(Local(QStringLiteral("a"), tooMany))
                 + good),
        "0 0 a template");
    row("types that double", InSchema(TypeChain(40, 2, false)), "0 0 all declarations");
    row("types that double, declared the other way round", InSchema(TypeChain(40, 2, true)), "0 0 all declarations");
    row("types that hold themselves twice",
        InSchema(QStringLiteral("<xs:complexType name='T'>%1</xs:complexType>")
                     .arg(Local(QStringLiteral("a"), QStringLiteral("type='T' minOccurs='40'")))
                 + good),
        "0 0 a template");
    row("many copies of many enumerations",
        InSchema(
            QStringLiteral("<xs:simpleType name='S'><xs:restriction base='xs:string'>%1</xs:restriction>"
                           "</xs:simpleType>")
                .arg(QString(QStringLiteral("<xs:enumeration value='v'/>")).repeated(1000))
            + Element(QStringLiteral("r"), Local(QStringLiteral("a"), QStringLiteral("type='S' minOccurs='200000'")))),
        "0 0 all declarations hold at most 2000000 attributes");
    row("very many enumerations",
        InSchema(QStringLiteral("<xs:simpleType name='S'><xs:restriction base='xs:string'>%1</xs:restriction>"
                                "</xs:simpleType>")
                     .arg(QString(QStringLiteral("<xs:enumeration value='v'/>")).repeated(50000))
                 + good),
        "0 0 an element holds at most 10000 attributes");
    row("a deep chain of types", InSchema(TypeChain(3000, 1, false)), "0 0 a template nests at most 500");
    row("a deep chain of later types", InSchema(TypeChain(3000, 1, true)), "0 0 a template nests at most 500");
    QString mixed;
    for (int i = 13000; i > 10000; --i) {
        mixed += QStringLiteral("<xs:element name='a%1'><xs:complexType mixed='true'><xs:element ref='a%2'/>"
                                "</xs:complexType></xs:element>")
                     .arg(i)
                     .arg(i - 1);
    }
    row("a deep chain of elements", InSchema(mixed + Local(QStringLiteral("a10000"), QString())),
        "0 0 a template nests at most 500");
    row("a file that includes itself",
        InSchema(QStringLiteral("<xs:include schemaLocation='case.xsd'/>").repeated(2) + good), "1 1 The include of");
    row("entities that multiply",
        QStringLiteral("<!DOCTYPE a [<!ENTITY a 'aaaaaaaaaaaaaaaaaaaa'>%1]><xs:schema>&a9;</xs:schema>").arg([] {
            QString entities;
            for (int i = 1; i < 10; ++i) {
                const QString before = i == 1 ? QStringLiteral("&a;") : QStringLiteral("&a%1;").arg(i - 1);
                entities += QStringLiteral("<!ENTITY a%1 '%2'>").arg(i).arg(before.repeated(10));
            }
            return entities;
        }()),
        "refused");
    row("a deep file", QString(QStringLiteral("<a>")).repeated(3500) + QString(QStringLiteral("</a>")).repeated(3500),
        "refused");
    QString deep = good;
    for (int i = 0; i < 160; ++i) {
        deep = Element(QStringLiteral("d"), deep);
    }
    row("a file as deep as may be", InSchema(deep), "1 161 ");
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
    const QString include = QStringLiteral("<xs:include schemaLocation='%1'/>");
    QFile file(dir.filePath(QStringLiteral("top.xsd")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(InSchema(include.arg(QStringLiteral("fifo.xsd")) + include.arg(QStringLiteral("."))
                        + Local(QStringLiteral("r"), QString()))
                   .toUtf8());
    // Each of sixteen levels includes the next one twice: 65,536 readings if nothing counted them.
    for (int level = 0; level < 16; ++level) {
        QFile next(dir.filePath(QStringLiteral("%1.xsd").arg(level)));
        QVERIFY(next.open(QIODevice::WriteOnly));
        next.write(InSchema(include.arg(QStringLiteral("%1.xsd").arg(level + 1)).repeated(2)).toUtf8());
    }
    file.close();
    for (const char *name : { "top.xsd", "0.xsd" }) {
        const QString path = dir.filePath(QLatin1String(name));
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
    const bool result = reading.Read(
        Element(QStringLiteral("r"), Local(QStringLiteral("a"), QStringLiteral("minOccurs='%1'").arg(copies))));
    QFETCH(int, elements);
    QCOMPARE(result, elements > 0);
    QCOMPARE(CountElements(*reading.m_oHandler.GetDocument()), elements);
}

QTEST_GUILESS_MAIN(TestHostileSchema)

#include "tst_hostileschema.moc"

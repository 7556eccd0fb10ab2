#include "support/schemareading.h"
#include "support/tracecapture.h"

#include <QtTest>

#include <random>

/// Names that are used before their declaration.
class TestResolution : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void fillsTemplate_data();
    void fillsTemplate();
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

// Sweeps over all names, in the order of the names, until nothing is open. The time of a sweep shows in nothing else.
class LiteralPass
{
public:
    LiteralPass(MissingMap &missing, TypeMap &types)
        : m_Missing(missing)
        , m_Types(types)
    {
    }

    bool Run()
    {
        for (int left = 1000; left > 0; --left) {
            bool repeat = false;
            for (auto &[name, counts] : m_Missing) {
                if (m_Types.count(name) == 0) {
                    return false;
                }
                repeat = m_Types[name].m_iOpenRefs > 0 || repeat;
                if (m_Types[name].m_iOpenRefs == 0) {
                    Process(m_Types[name], counts);
                }
            }
            if (!repeat) {
                return true;
            }
        }
        return false;
    }

private:
    void Process(TypeEntry &entry, std::map<int, std::list<MissingElement>> &counts)
    {
        entry.m_iOpenRefs = -1;
        for (auto &[count, records] : counts) {
            for (MissingElement &record : records) {
                const bool isPlace = record.m_pParent->tagName() == QLatin1String("dummy") && !record.m_bAttribute;
                for (int i = 0; i < qMax(count, 1); ++i) {
                    entry.m_bUsed = true;
                    Apply(entry, record, isPlace);
                    if (!isPlace || i == 0) {
                        TypeEntry &owner = m_Types[record.m_sOwner];
                        owner.m_iOpenRefs -= owner.m_iOpenRefs > 0 ? 1 : 0;
                    }
                }
                if (isPlace) {
                    record.m_pParent->parentNode().removeChild(*record.m_pParent);
                }
            }
        }
    }

    static void Apply(const TypeEntry &entry, MissingElement &record, bool isPlace)
    {
        const QDomElement first = entry.m_pFragment->firstChildElement();
        const bool hasCarrier = first.tagName() == QLatin1String("dummy");
        const QDomNamedNodeMap map = first.attributes();
        const QString suffix = record.m_bAttribute ? first.tagName() : QString();
        if (record.m_bAttribute && !first.isNull()) {
            record.m_pParent->setAttribute(suffix, first.attribute(QStringLiteral("type")));
        }
        for (int i = 0; i < map.count() && !isPlace; ++i) {
            const QString name = map.item(i).nodeName();
            if (record.m_bAttribute ? name.contains(QLatin1String("clusive")) : hasCarrier) {
                record.m_pParent->setAttribute(name + suffix, map.item(i).nodeValue());
            }
        }
        if (record.m_bAttribute) {
            return;
        }
        const QDomNode clone = content::CloneContent(*entry.m_pFragment);
        if (isPlace) {
            record.m_pParent->parentNode().insertBefore(clone, *record.m_pParent);
        } else if (record.m_pAfter != nullptr) {
            record.m_pParent->insertAfter(clone, *record.m_pAfter);
        } else {
            record.m_pParent->appendChild(clone);
        }
    }

    MissingMap &m_Missing;
    TypeMap &m_Types;
};

// Reads without the pass, and leaves it to the test.
class UnresolvedHandler : public XmlSchemaHandler
{
public:
    using XmlSchemaHandler::XmlSchemaHandler;
    bool endDocument() override { return true; }
};

// Declarations in any order that mostly refer to later ones of a few names. Some schemas end in a circle.
QString RandomSchema(std::mt19937 &random)
{
    const auto pick = [&random](int count) { return static_cast<int>(random() % static_cast<unsigned>(count)); };
    const int count = 4 + pick(10);
    QVector<int> order(count);
    std::iota(order.begin(), order.end(), 0);
    std::shuffle(order.begin(), order.end(), random);
    QStringList declarations;
    for (const int place : std::as_const(order)) {
        QString content;
        for (int i = 0; i < 1 + pick(3) && place > 0; ++i) {
            const int target = pick(40) == 0 ? pick(count) : pick(place);
            const QString limits = QStringLiteral("minOccurs='%1'").arg(pick(4));
            content += target % 3 == 0 ? QStringLiteral("<xs:element ref='n%1' %2/>").arg(target).arg(limits)
                : target % 3 == 1
                ? QStringLiteral("<xs:element name='%1' type='n%2' %3/>")
                      .arg(pick(4) == 0 ? QStringLiteral("n%1").arg(pick(count)) : QStringLiteral("e"))
                      .arg(target)
                      .arg(limits)
                : QStringLiteral("<xs:attribute ref='n%1'/>").arg(target);
        }
        const char *form = place % 3 == 0 ? "<xs:element name='n%1'><xs:complexType>%2</xs:complexType></xs:element>"
            : place % 3 == 1
            ? "<xs:complexType name='n%1'>%2<xs:element name='x'/></xs:complexType>"
            : "<xs:attribute name='n%1'><xs:simpleType><xs:restriction base='xs:int'><xs:minInclusive value='%1'/>"
              "</xs:restriction></xs:simpleType></xs:attribute>";
        declarations << QString(QLatin1String(form))
                            .replace(QLatin1String("%1"), QString::number(place))
                            .replace(QLatin1String("%2"), content);
    }
    return QStringLiteral("<xs:schema>%1</xs:schema>").arg(declarations.join(QString()));
}

} // namespace

void TestResolution::fillsTemplate_data()
{
    QTest::addColumn<QString>("schema");
    QTest::addColumn<QString>("expected");

    const QString late = QStringLiteral("<xs:complexType name='Late'><xs:element name='x'/></xs:complexType>");
    QTest::newRow("a chain of types, filled from the inside")
        << Global(QStringLiteral("r"), QStringLiteral("<xs:element name='a' type='A'/>"))
            + QStringLiteral("<xs:complexType name='A'><xs:element name='b' type='B'/></xs:complexType>"
                             "<xs:complexType name='B'><xs:element name='c' type='Late'/></xs:complexType>")
            + late
        << "? r(a(b(c(x))))";
    QTest::newRow("simple type, copies directly behind the first, default on the first alone")
        << Global(QStringLiteral("r"),
                  QStringLiteral("<xs:element name='a' type='S' minOccurs='3' default='1'/><xs:element name='b'/>"))
            + QStringLiteral("<xs:simpleType name='S'><xs:restriction base='xs:int'/></xs:simpleType>")
        << "? r(a{default=1 type=int} a{type=int} a{type=int} b)";
    QTest::newRow("references: as first child at the end, else at their place")
        << Global(QStringLiteral("r"),
                  QStringLiteral("<xs:element ref='g'/><xs:element name='a'/><xs:element ref='h' minOccurs='3'/>"
                                 "<xs:element name='b'/>"))
            + QStringLiteral("<xs:element name='g'/><xs:element name='h' type='xs:int'/>")
        << "? r(a h{type=int} h{type=int} h{type=int} b g)";
    QTest::newRow("a reference two levels down stays there")
        << Global(QStringLiteral("r"),
                  Global(QStringLiteral("a"),
                         Global(QStringLiteral("b"), QStringLiteral("<xs:element ref='g'/>"))
                             + QStringLiteral("<xs:element name='c'/>")))
            + QStringLiteral("<xs:element name='g'/>")
        << "? r(a(b(g) c))";
    QTest::newRow("a global element whose type comes later counts as complete")
        << QStringLiteral(
               "<xs:element name='g' default='lost' type='Late'/><xs:element name='k' type='Late' default='x'/>")
            + Global(QStringLiteral("r"), QStringLiteral("<xs:element ref='g'/><xs:element ref='k'/>")) + late
        << "? r(g{default=lost} k)";
    QTest::newRow("an empty type on a global element") << "<xs:element name='g' type=''/>"
                                                       << "? g";
    QTest::newRow("an element named as its type holds the type's content behind it")
        << Global(QStringLiteral("r"), QStringLiteral("<xs:element name='Late' type='Late' minOccurs='2'/>")) + late
        << "? r(Late(x) x)";
    // Named types.
    QTest::newRow("references in a named type, complete and waiting, keep their places")
        << Global(QStringLiteral("first"), QStringLiteral("<xs:element name='f'/>"))
            + QStringLiteral("<xs:element name='g'/><xs:complexType name='T'><xs:element ref='h' minOccurs='2'/>"
                             "<xs:element name='a'/><xs:element ref='g' minOccurs='2'/><xs:element ref='i'/>"
                             "<xs:element name='b'/><xs:attribute name='u'/></xs:complexType>"
                             "<xs:element name='h'/><xs:element name='i'/><xs:element name='r' type='T'/>")
        << "? r{u=}(h h a g g i b)";
    QTest::newRow("copies in a named type stay together, and the type goes on behind them")
        << QStringLiteral("<xs:element name='r' type='T'/><xs:complexType name='T'>"
                          "<xs:element name='a' type='Late' minOccurs='3'/><xs:element name='b'/>"
                          "<xs:element name='c' type='Later'/></xs:complexType>")
            + late + QStringLiteral("<xs:complexType name='Later'><xs:element name='y'/></xs:complexType>")
        << "? r(a(x) a(x) a(x) b c(y))";
    QTest::newRow("a named type isn't complete before all its references are")
        << Global(QStringLiteral("r"), QStringLiteral("<xs:element name='t' type='T'/>"))
            + QStringLiteral("<xs:complexType name='T'><xs:element ref='g' minOccurs='3'/>"
                             "<xs:element name='a' type='z'/></xs:complexType><xs:element name='g'/>"
                             "<xs:complexType name='z'><xs:element name='y'/></xs:complexType>")
        << "? r(t(g g g a(y)))";
}

void TestResolution::fillsTemplate()
{
    QFETCH(QString, schema);
    QFETCH(QString, expected);
    SchemaReading reading;
    QVERIFY(reading.Read(schema));
    QCOMPARE(reading.Template(), expected);
}

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
    std::mt19937 random(20240611);
    int resolved = 0;
    for (int round = 0; round < 2000; ++round) {
        const QString schema = RandomSchema(random);
        SchemaReading reading;
        const bool result = reading.ReadDocument(schema);

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
        for (const auto &[name, entry] : types) {
            QVERIFY2(SchemaReading::Describe(*entry.m_pFragment) == reading.Declaration(name), qPrintable(schema));
        }
        // The choice of the root is no part of the pass.
        QCOMPARE(SchemaReading::DescribeTypes(types).remove(QLatin1Char('*')),
                 reading.Types().remove(QLatin1Char('*')));
        resolved += result ? 1 : 0;
    }
    // The rows would be worth little if most schemas ended in a circle, or none.
    QVERIFY(resolved > 1000 && resolved < 1990);
}

QTEST_GUILESS_MAIN(TestResolution)

#include "tst_resolution.moc"

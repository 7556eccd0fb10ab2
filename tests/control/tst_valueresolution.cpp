#include "literalreceiver.h"
#include "support/controlrun.h"

#include <QRandomGenerator>
#include <QtTest>

namespace {

/// Gives an announced element the attributes that the case wants, so that any template can be had.
using Decorate = std::function<void(QDomElement &)>;

XmlEvent *Redecorated(XmlEvent *event, const Decorate &decorate, std::unique_ptr<XmlEvent> &keeper)
{
    if (event->GetType() != XmlEvent::EVENT_ELEM_BEGIN || !decorate) {
        return event;
    }
    auto &begin = *static_cast<ElemBeginEvent *>(event);
    QDomElement element = begin.GetElementNode().toElement();
    decorate(element);
    QStringList names;
    for (int i = 0; i < element.attributes().count(); ++i) {
        names << element.attributes().item(i).nodeName();
    }
    names.sort();
    QXmlAttributes attributes;
    for (const QString &name : std::as_const(names)) {
        attributes.append(name, QString(), QString(), element.attribute(name));
    }
    keeper = std::make_unique<ElemBeginEvent>(element, begin.GetElementName(), attributes, begin.GetElementText());
    return keeper.get();
}

/// A receiver whose templates can be changed, and which notes each element as it left it.
template <typename Receiver>
class Watched : public Receiver
{
public:
    using Receiver::Receiver;

    Decorate m_fnDecorate;
    QStringList m_lElements;

    void XmlUpdate(XmlEvent *event) override
    {
        std::unique_ptr<XmlEvent> keeper;
        Receiver::XmlUpdate(Redecorated(event, m_fnDecorate, keeper));
        if (event->GetType() == XmlEvent::EVENT_ELEM_BEGIN) {
            const QDomNode parent = static_cast<ElemBeginEvent *>(event)->GetElementNode().parentNode();
            m_lElements << ControlRun::WithoutTimes(ToText(parent));
        }
    }
};

/// One value, in the form that both receivers take.
struct Item
{
    QString m_sName;
    QVariant m_oValue; // a null one: no source
    bool m_bExplicit = false;
    int m_iMaxOccurs = 1;
    int m_iExponent = 0;
    QString m_sUnit;
};

void Add(VCReporting &control, const Item &item)
{
    const auto add = [&](auto value) {
        control.AddExplicitReportData(item.m_sName, value, item.m_iMaxOccurs, QString(), item.m_iExponent,
                                      item.m_sUnit);
    };
    if (!item.m_bExplicit) {
        control.AddReportData(item.m_sName, QString(), item.m_oValue.toString(), item.m_iMaxOccurs, QString(),
                              item.m_iExponent, item.m_sUnit);
    } else if (item.m_oValue.type() == QVariant::Bool) {
        add(item.m_oValue.toBool());
    } else if (item.m_oValue.type() == QVariant::LongLong) {
        add(static_cast<long>(item.m_oValue.toLongLong()));
    } else if (item.m_oValue.type() == QVariant::Double) {
        add(item.m_oValue.toDouble());
    } else {
        add(item.m_oValue.toString());
    }
}

void Add(LiteralReceiver &receiver, const Item &item)
{
    ExplicitReportData data;
    if (item.m_bExplicit && item.m_oValue.type() == QVariant::Bool) {
        data = item.m_oValue.toBool();
    } else if (item.m_bExplicit && item.m_oValue.type() == QVariant::LongLong) {
        data = static_cast<long>(item.m_oValue.toLongLong());
    } else if (item.m_bExplicit && item.m_oValue.type() == QVariant::Double) {
        data = item.m_oValue.toDouble();
    } else if (item.m_bExplicit) {
        data = item.m_oValue.toString();
    }
    receiver.Add(ReportData(item.m_sName, QString(), item.m_bExplicit ? QString() : item.m_oValue.toString(),
                            item.m_iMaxOccurs, QString(), item.m_iExponent, item.m_sUnit, false),
                 data);
}

// "type=double Unit=xs:string" as attributes.
Decorate Attributes(const QString &attributes)
{
    return [attributes](QDomElement &element) {
        for (const QString &attribute : attributes.split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
            element.setAttribute(attribute.section(QLatin1Char('='), 0, 0), attribute.section(QLatin1Char('='), 1));
        }
    };
}

QString Element(const char *name, const char *content = nullptr)
{
    return content == nullptr
        ? QStringLiteral("<xs:element name='%1' type='xs:string' maxOccurs='unbounded'/>").arg(QLatin1String(name))
        : QStringLiteral("<xs:element name='%1'><xs:complexType><xs:sequence>%2</xs:sequence></xs:complexType>"
                         "</xs:element>")
              .arg(QLatin1String(name), QString::fromUtf8(content));
}

} // namespace

Q_DECLARE_METATYPE(Item)
Q_DECLARE_METATYPE(QVector<Item>)

class TestValueResolution : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void FillsOneElement_data();
    void FillsOneElement();
    void ServesParentsAndLists_data();
    void ServesParentsAndLists();
    void TracesAUnitThatIsNoText();
    void DoesWhatTheLiteralLoopDoes_data();
    void DoesWhatTheLiteralLoopDoes();
};

void TestValueResolution::FillsOneElement_data()
{
    QTest::addColumn<QString>("attributes");
    QTest::addColumn<QVector<Item>>("items");
    QTest::addColumn<QString>("element");

    const auto row = [](const char *name, const char *attributes, const QVector<Item> &items, const char *element) {
        QTest::newRow(name) << QString::fromUtf8(attributes) << items << QString::fromUtf8(element);
    };
    const auto fixed = [](const char *name, const char *value, int exponent = 0, const char *unit = "") {
        return Item { QString::fromUtf8(name), QString::fromUtf8(value), false, 1, exponent, QString::fromUtf8(unit) };
    };
    const auto given = [](const char *name, const QVariant &value, int exponent = 0) {
        return Item { QString::fromUtf8(name), value, true, 1, exponent, QString() };
    };
    const auto text = [](const char *value) { return QVariant(QString::fromUtf8(value)); };
    const QVariant beyond(static_cast<qlonglong>(3000000000));

    row("a number", "type=double", { fixed("A", "12.5", 1) }, "<A>1.25</A>");
    row("a number cut for an integer", "type=integer", { fixed("A", "-3.9") }, "<A>-3</A>");
    row("a number as text", "type=string", { fixed("A", "12.50", 1) }, "<A>12.50</A>");
    row("a number beyond an integer", "type=integer", { fixed("A", "3e9") }, "<A type='integer'/>");
    row("the same as text", "type=string", { fixed("A", "3e9") }, "<A>3e9</A>");
    row("no number at all", "type=string", { fixed("A", "nan") }, "<A>nan</A>");
    row("a text as a date", "type=dateTime", { fixed("A", "2024-05-06T07:08:09") }, "<A>2024-05-06T07:08:09</A>");
    row("an unreadable date", "type=dateTime", { fixed("A", "soon") }, "<A/>");
    row("a number outside its bounds", "type=double maxInclusive=5", { fixed("A", "6") },
        "<A maxInclusive='5' type='double'/>");
    row("an item without a source", "type=string", { fixed("A", "") }, "<A/>");
    row("a given text", "type=string", { given("A", text("given")) }, "<A>given</A>");
    row("a given text as a date", "type=dateTime", { given("A", text("2024-05-06T07:08:09")) },
        "<A>2024-05-06T07:08:09</A>");
    row("a given double", "type=double", { given("A", 2.5, 1) }, "<A>0.25</A>");
    row("a given double as text", "type=string", { given("A", 250.0, 2) }, "<A>2.5</A>");
    row("a given bool", "type=boolean", { given("A", true) }, "<A>true</A>");
    row("a given bool for a text", "type=string", { given("A", true) }, "<A type='string'/>");
    row("a given long is not scaled", "type=integer", { given("A", QVariant(7LL), 2) }, "<A>7</A>");
    row("a given long for a text", "type=string", { given("A", QVariant(7LL)) }, "<A/>");
    row("a given long beyond an int takes its place all the same", "type=integer Unit=string",
        { given("A", beyond), fixed("A", "5"), fixed("Unit", "x") }, "<A Unit='x' type='integer'/>");
    row("the first of two", "type=string", { fixed("A", "one"), fixed("A", "two") }, "<A>one</A>");
    row("nobody knows it", "type=string", { fixed("B", "5"), fixed("/A", "5"), fixed("R/B", "5") },
        "<A type='string'/>");

    row("attributes", "type=double x=integer y=xs:string z=xs:dateTime",
        { fixed("A", "1"), fixed("y", "5"), fixed("x", "-2.9"), fixed("z", "2024-05-06T07:08:09") },
        "<A x='-2' y='5' z='2024-05-06T07:08:09'>1</A>");
    row("an attribute ahead of its element", "type=double x=xs:string", { fixed("x", "v"), fixed("A", "1") },
        "<A type='double' x='v'/>");
    row("a given double for an attribute", "type=string x=xs:double", { given("x", 25.0, 1) },
        "<A type='string' x='2.5'/>");
    row("a number beyond an integer attribute", "x=xs:integer type=string", { fixed("x", "1e10") },
        "<A type='string' x='xs:integer'/>");
    row("a unit", "type=double Unit=xs:string", { fixed("A", "1", 0, "kHz") }, "<A Unit='kHz'>1</A>");
    row("a unit that is not asked for", "type=double", { fixed("A", "1", 0, "kHz") }, "<A>1</A>");
    row("no unit", "type=double Unit=xs:string", { fixed("A", "1") }, "<A Unit='xs:string'>1</A>");
    row("the unit of the last that matched", "type=boolean Unit=xs:string",
        { Item { QStringLiteral("A"), true, true, 1, 0, QStringLiteral("m") },
          Item { QStringLiteral("A"), true, true, 1, 0, QStringLiteral("s") } },
        "<A Unit='s'>true</A>");
    row("a default goes", "type=double default=3", { fixed("A", "1") }, "<A>1</A>");
    row("a default stays", "type=double default=3", { fixed("B", "1") }, "<A default='3' type='double'/>");

    row("the first stranger stamps", "type=double DateTime=xs:dateTime", { fixed("B", "1"), fixed("A", "1") },
        "<A DateTime='now' type='double'/>");
    row("the element's item comes first", "type=double DFDateTime=xs:dateTime", { fixed("A", "1"), fixed("B", "1") },
        "<A DFDateTime='now'>1</A>");
    row("a stamp takes no other value", "type=double DateTime=xs:dateTime",
        { fixed("A", "1"), fixed("DateTime", "2024-05-06T07:08:09") }, "<A DateTime='now'>1</A>");
    row("the first item may fill it", "type=double DateTime=xs:dateTime",
        { fixed("DateTime", "2024-05-06T07:08:09"), fixed("B", "1") },
        "<A DateTime='2024-05-06T07:08:09' type='double'/>");
    row("what stands behind a stamp is out of reach", "type=double DFDateTime=xs:dateTime Unit=xs:string",
        { fixed("Unit", "u") }, "<A DFDateTime='now' Unit='xs:string' type='double'/>");
    row("an item by the name of a default", "type=double default=xs:string", { fixed("default", "d"), fixed("B", "1") },
        "<A default='d' type='double'/>");
}

void TestValueResolution::FillsOneElement()
{
    QFETCH(QString, attributes);
    QFETCH(QVector<Item>, items);
    const ControlRun run;
    Watched<VCReporting> control(run.SchemaPath(), run.ReportFolder(), nullptr, true, nullptr, false, QPixmap());
    control.m_fnDecorate = [&attributes](QDomElement &element) {
        if (element.tagName() == QLatin1String("A") && element.hasAttribute(QStringLiteral("type"))) {
            element.removeAttribute(QStringLiteral("type"));
            Attributes(attributes)(element);
        }
    };
    for (const Item &item : std::as_const(items)) {
        Add(control, item);
    }
    QVERIFY(control.SlotToReport());
    QTEST(run.LatestReport().remove(QStringLiteral("<R>")).remove(QStringLiteral("</R>")), "element");
}

void TestValueResolution::ServesParentsAndLists_data()
{
    QTest::addColumn<QString>("content");
    QTest::addColumn<bool>("deleteAfterUse");
    QTest::addColumn<QVector<Item>>("items");
    QTest::addColumn<QString>("report");

    const auto row = [](const char *name, const QString &content, bool deleteAfterUse, const QVector<Item> &items,
                        const char *report) {
        QTest::newRow(name) << content << deleteAfterUse << items << QString::fromUtf8(report);
    };
    const auto item = [](const char *name, const QVariant &value, int maxOccurs = 1) {
        return Item { QString::fromUtf8(name), value, value.type() == QVariant::Bool, maxOccurs, 0, QString() };
    };
    const auto text = [](const char *value) { return QVariant(QString::fromUtf8(value)); };
    const char *leaf = "<xs:element name='L' type='xs:string'/>";
    const QString twice = Element("S", leaf) + Element("T", leaf);

    row("a name fits below every parent", twice, false, { item("L", text("v")) }, "<S><L>v</L></S><T><L>v</L></T>");
    row("a name is used up", twice, true, { item("L", text("v")), item("L", text("w")) },
        "<S><L>v</L></S><T><L type='string'/></T>");
    row("parent and child", twice, false, { item("T/L", text("v")) }, "<S><L type='string'/></S><T><L>v</L></T>");
    row("parent and child are used up by their whole name", twice + Element("L"), true,
        { item("S/L", text("v")), item("L", text("w")) }, "<S><L>v</L></S><T><L>w</L></T><L type='string'/>");
    row("the root's parent is the document", QString(), true, { item("#document/R", text("v")) }, "");
    row("what goes is told by the last item looked at: the pair",
        Element("S",
                "<xs:element name='L' "
                "type='xs:boolean'/>")
            + Element("T", "<xs:element name='L' type='xs:boolean'/>"),
        true, { item("L", true), item("S/L", text("v")) }, "<S><L>true</L></S><T><L>true</L></T>");
    row("what goes is told by the last item looked at: no pair",
        Element("S",
                "<xs:element name='L' "
                "type='xs:boolean'/>"),
        true, { item("S/L", true), item("Z", text("v")) }, "<S><L>true</L></S>");
    row("three of one", Element("S", "<xs:element name='L' type='xs:string' maxOccurs='3'/>"), false,
        { item("L", text("v"), 3) }, "<S><L>v</L><L>v</L><L>v</L></S>");
    row("four are too many", Element("S", "<xs:element name='L' type='xs:string' maxOccurs='3'/>"), false,
        { item("L", text("v"), 4) }, "<S><L>v</L></S>");
    row("time", QStringLiteral("<xs:element name='DateTime' type='xs:dateTime'/>"), false, {},
        "<DateTime>now</DateTime>");
    row("an item's time goes first", QStringLiteral("<xs:element name='DFDateTime' type='xs:dateTime'/>"), false,
        { item("DFDateTime", text("2024-05-06T07:08:09")) }, "<DFDateTime>2024-05-06T07:08:09</DFDateTime>");
}

void TestValueResolution::ServesParentsAndLists()
{
    QFETCH(QString, content);
    QFETCH(bool, deleteAfterUse);
    QFETCH(QVector<Item>, items);
    QFETCH(QString, report);
    const ControlRun run(content);
    const auto control = run.MakeControl(deleteAfterUse);
    for (const Item &item : std::as_const(items)) {
        Add(*control, item);
    }
    QVERIFY(control->SlotToReport());
    QCOMPARE(run.LatestReport(), report.isEmpty() ? QStringLiteral("<R/>") : QStringLiteral("<R>%1</R>").arg(report));
}

void TestValueResolution::TracesAUnitThatIsNoText()
{
    const ControlRun run;
    Watched<VCReporting> control(run.SchemaPath(), run.ReportFolder(), nullptr, true, nullptr, false, QPixmap());
    control.m_fnDecorate = Attributes(QStringLiteral("Unit=xs:double"));
    Add(control, Item { QStringLiteral("A"), QStringLiteral("1"), false, 1, 0, QStringLiteral("m") });
    const TraceLog log;
    QVERIFY(control.SlotToReport());
    QVERIFY(TraceLog::Lines().contains(QStringLiteral(
        "VCReporting::XmlUpdate|ErrorEvent|ErrorID == CURRENT_TYPE_IS_NOT_STRING: m_iIndex is not valid.")));
}

void TestValueResolution::DoesWhatTheLiteralLoopDoes_data()
{
    QTest::addColumn<bool>("deleteAfterUse");
    QTest::newRow("items stay") << false;
    QTest::newRow("items go") << true;
}

// Random lists over random templates: names that meet each other as element, attribute and pair, and texts that read as
// types, so that each write shows in what the next one may do.
void TestValueResolution::DoesWhatTheLiteralLoopDoes()
{
    QFETCH(bool, deleteAfterUse);
    const ControlRun run(Element("A")
                         + Element("S",
                                   "<xs:element name='A' type='xs:string' maxOccurs='3'/>"
                                   "<xs:element name='DateTime' type='xs:string'/>")
                         + Element("Unit") + Element("DFDateTime") + Element("default"));
    const QStringList names =
        Texts({ "A", "S", "S/A", "R/A", "R/S", "Unit", "DateTime", "DFDateTime", "default", "x", "S/DateTime", "Z" });
    const QStringList attributes = Texts({ "A", "Unit", "DateTime", "DFDateTime", "default", "x", "Z" });
    const QStringList types = Texts({ "string", "double", "integer", "dateTime", "short", "boolean", "decimal" });
    const QVariantList values { QStringLiteral("5"),
                                QStringLiteral("dateTime"),
                                QStringLiteral("string"),
                                QStringLiteral("xs:double"),
                                QStringLiteral("-7.25"),
                                QStringLiteral("99999999999"),
                                QStringLiteral("integer"),
                                QStringLiteral("2024-05-06T07:08:09"),
                                QString(),
                                true,
                                qlonglong(7),
                                qlonglong(3000000000),
                                2.5 };
    QRandomGenerator random(20240506);
    const auto pick = [&random](const auto &list) { return list.at(random.bounded(list.size())); };

    for (int round = 0; round < 400; ++round) {
        Watched<VCReporting> control(run.SchemaPath(), run.ReportFolder(), nullptr, true, nullptr, deleteAfterUse,
                                     QPixmap());
        Watched<LiteralReceiver> literal(deleteAfterUse);
        for (int i = random.bounded(9); i > 0; --i) {
            const QVariant value = pick(values);
            const bool isText = value.type() == QVariant::String;
            const Item item { pick(names),
                              value,
                              !isText || random.bounded(3) == 0,
                              random.bounded(4) == 0 ? 2 : 1,
                              random.bounded(2),
                              random.bounded(3) == 0 ? QStringLiteral("u") : QString() };
            Add(control, item);
            Add(literal, item);
            if (random.bounded(5) == 0) {
                const QString name = pick(names);
                control.DeleteReportData(name);
                literal.Delete(name);
            }
        }
        const quint32 seed = random.generate();
        const auto decorate = [&](std::shared_ptr<QRandomGenerator> generator) {
            return [&, generator](QDomElement &element) {
                for (const QString &name : attributes) {
                    if (generator->bounded(4) == 0) {
                        element.setAttribute(name, types.at(generator->bounded(types.size())));
                    }
                }
                if (element.hasAttribute(QStringLiteral("type"))) {
                    element.setAttribute(QStringLiteral("type"), types.at(generator->bounded(types.size())));
                }
            };
        };
        control.m_fnDecorate = decorate(std::make_shared<QRandomGenerator>(seed));
        literal.m_fnDecorate = decorate(std::make_shared<QRandomGenerator>(seed));
        QVERIFY(control.SlotToReport());
        const QString fast = run.LatestReport();
        QVERIFY(literal.MakeReport(run.SchemaPath(), run.ReportFolder() + QStringLiteral("/literal.xml")));
        QCOMPARE(control.m_lElements, literal.m_lElements);
        QCOMPARE(fast, run.LatestReport());
        QVERIFY(QFile::remove(run.ReportFolder() + QStringLiteral("/literal.xml")));
    }
}

QTEST_MAIN(TestValueResolution)
#include "tst_valueresolution.moc"

#include "support/reportrun.h"

#include <QtTest>

#include <limits>

using Action = std::function<void(XmlCreateReport &)>;
Q_DECLARE_METATYPE(Action)

namespace {

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

// Puts attributes "name=value name=value" on the element in place of what its template gave it.
void ReplaceAttributes(QDomElement element, const QString &attributes)
{
    element.removeAttribute(QStringLiteral("type"));
    for (const QString &attribute : attributes.split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
        element.setAttribute(attribute.section(QLatin1Char('='), 0, 0), attribute.section(QLatin1Char('='), 1));
    }
}

template <typename Value>
Action Give(Value value)
{
    return [value](XmlCreateReport &report) { report.SetXmlValue(value); };
}

template <typename Value>
Action GiveAttribute(const char *name, Value value)
{
    return [name, value](XmlCreateReport &report) { report.SetAttributeValue(QString::fromLatin1(name), value); };
}

void Row(const char *attributes, const char *call, const Action &action, const char *errors, const char *element)
{
    QTest::addRow("%s: %s", attributes, call)
        << QString::fromLatin1(attributes) << action << QString::fromLatin1(errors) << QString::fromLatin1(element);
}

} // namespace

class TestSetters : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void SetValue_data();
    void SetValue() { Check(); }
    void SetAttribute_data();
    void SetAttribute() { Check(); }
    void RetriesChain();
    void ReplacesTheDefaultAndLeavesTheChildren();
    void NeedAWalk();

private:
    void Check();
};

void TestSetters::SetValue_data()
{
    QTest::addColumn<QString>("attributes");
    QTest::addColumn<Action>("action");
    QTest::addColumn<QString>("errors");
    QTest::addColumn<QString>("element");
    const char closed[] = "type=double minInclusive=0 maxInclusive=10";
    Row(closed, "0", Give(0.0), "", "<v>0</v>");
    Row(closed, "10", Give(10.0), "", "<v>10</v>");
    Row(closed, "-0.5", Give(-0.5), "!15", "<v maxInclusive='10' minInclusive='0' type='double'/>");
    Row(closed, "10.5", Give(10.5), "!15", "<v maxInclusive='10' minInclusive='0' type='double'/>");
    Row(closed, "NaN", Give(kNan), "!15", "<v maxInclusive='10' minInclusive='0' type='double'/>");
    const char open[] = "type=integer minExclusive=0 maxExclusive=10";
    Row(open, "1", Give(1), "", "<v>1</v>");
    Row(open, "0", Give(0), "!15", "<v maxExclusive='10' minExclusive='0'/>");
    Row(open, "10", Give(10), "!15", "<v maxExclusive='10' minExclusive='0'/>");
    Row("type=double minInclusive=5 minExclusive=0", "3", Give(3.0), "", "<v minInclusive='5'>3</v>");
    Row("type=double minInclusive=5 minExclusive=0", "0", Give(0.0), "!15",
        "<v minExclusive='0' minInclusive='5' type='double'/>");
    Row("type=double minInclusive=0 maxInclusive=5 maxExclusive=9", "7", Give(7.0), "!15",
        "<v maxExclusive='9' maxInclusive='5' minInclusive='0' type='double'/>");
    Row("type=double maxInclusive=5 maxExclusive=9", "7", Give(7.0), "", "<v maxInclusive='5'>7</v>");
    Row("type=double maxInclusive=5 maxExclusive=9", "9", Give(9.0), "!15",
        "<v maxExclusive='9' maxInclusive='5' type='double'/>");
    Row("type=integer maxInclusive=65535", "70000", Give(70000), "", "<v maxInclusive='65535'>70000</v>");
    Row("type=integer maxInclusive=1.5", "1", Give(1), "!15", "<v maxInclusive='1.5'/>");
    Row("type=double maxInclusive=x", "0", Give(0.0), "", "<v>0</v>");
    Row(
        "type=integer maxInclusive=1", "2 and 1",
        [](XmlCreateReport &report) {
            report.SetXmlValue(2);
            report.SetXmlValue(1);
        },
        "!15 !8 !11", "<v maxInclusive='1'/>");
    Row("type=string pattern=x minInclusive=3", "text", Give("ü"), "", "<v minInclusive='3' pattern='x'>\xfc</v>");
    Row("type=short", "2.9", Give(2.9), "", "<v>2</v>");
    Row("type=short", "-2.9", Give(-2.9), "", "<v>-2</v>");
    Row("type=short", "-2147483648.5", Give(-2147483648.5), "", "<v>-2147483648</v>");
    Row("type=short", "2147483648", Give(2147483648.0), "!15", "<v type='short'/>");
    Row("type=short", "NaN", Give(kNan), "!15", "<v type='short'/>");
    Row("type=short maxInclusive=2", "2.9", Give(2.9), "!15", "<v maxInclusive='2' type='short'/>");
    Row("type=short maxInclusive=2", "true", Give(true), "", "<v maxInclusive='2'>true</v>");
    Row("type=long", "13 digits", Give(1234567890123.0), "", "<v>1.23456789012e+12</v>");
    Row("type=long", "time", Give(QTime(1, 2, 3)), "", "<v>01:02:03</v>");
    Row("type=integer", "double", Give(1.0), "!10", "<v type='integer'/>");
    Row("type=double", "int", Give(1), "!11", "<v type='double'/>");
    Row("type=int", "int", Give(1), "!11", "<v type='int'/>");
    Row("type=normalizedString", "text", Give(QStringLiteral("a")), "!9", "<v type='normalizedString'/>");
    Row("type=boolean", "literal", Give("true"), "!9", "<v type='boolean'/>");
    Row("type=boolean", "true", Give(true), "", "<v>true</v>");
    Row("type=double", "bool", Give(false), "!14", "<v type='double'/>");
    Row("type=dateTime", "date", Give(QDateTime(QDate(2020, 1, 2), QTime(3, 4, 5))), "", "<v>2020-01-02T03:04:05</v>");
    Row("type=dateTime", "invalid", Give(QDateTime()), "", "<v/>");
    Row("type=date", "time", Give(QTime(1, 2, 3)), "!13", "<v type='date'/>");
    Row("", "text", Give("a"), "!8 !9", "<v/>");
    Row("type=", "double", Give(1.0), "!8 !8 !10", "<v type=''/>");
    Row("", "date", Give(QDateTime()), "!8 !12", "<v/>");
    const char listed[] = "type=string enumeration1=a enumeration2=b";
    Row(listed, "a", Give("a"), "", "<v>a</v>");
    Row(listed, "A", Give("A"), "!15", "<v enumeration1='a' enumeration2='b' type='string'/>");
    Row("type=string enumeration1=a enumeration2=", "c", Give("c"), "!15",
        "<v enumeration1='a' enumeration2='' type='string'/>");
    Row("type=string enumeration1=a enumeration2=", "empty", Give(""), "", "<v/>");
    Row("type=string enumeration1=", "c", Give("c"), "", "<v>c</v>");
    Row("type=string enumeration1Unit=a", "c", Give("c"), "", "<v enumeration1Unit='a'>c</v>");
    Row("type=string enumeration1Unit2=a", "c", Give("c"), "!15", "<v enumeration1Unit2='a' type='string'/>");
    Row(
        "type=string", "twice",
        [](XmlCreateReport &report) {
            report.SetXmlValue("first");
            report.SetXmlValue(true);
        },
        "!8 !14", "<v>first</v>");
}

void TestSetters::SetAttribute_data()
{
    QTest::addColumn<QString>("attributes");
    QTest::addColumn<Action>("action");
    QTest::addColumn<QString>("errors");
    QTest::addColumn<QString>("element");
    const char listed[] = "unit=string enumeration1unit=m enumeration2unit=km";
    Row(listed, "km", GiveAttribute("unit", "km"), "", "<v unit='km'/>");
    Row(listed, "mm", GiveAttribute("unit", "mm"), "!15",
        "<v enumeration1unit='m' enumeration2unit='km' unit='string'/>");
    Row("n=xs:integer maxInclusiven=5", "5", GiveAttribute("n", 5), "", "<v n='5'/>");
    Row("n=integer minInclusiven=1 maxExclusiven=5", "5", GiveAttribute("n", 5), "!15",
        "<v maxExclusiven='5' minInclusiven='1' n='integer'/>");
    Row("n=double minExclusiven=0.5", "0.6", GiveAttribute("n", 0.6), "", "<v n='0.6'/>");
    Row("n=double minExclusiven=0.5", "0.5", GiveAttribute("n", 0.5), "!15", "<v minExclusiven='0.5' n='double'/>");
    Row("n=integer maxInclusiven=65535", "70000", GiveAttribute("n", 70000), "",
        "<v maxInclusiven='65535' n='70000'/>");
    Row("n=xs:int", "double", GiveAttribute("n", 1.0), "!10", "<v n='xs:int'/>");
    Row("n=xs:int", "int", GiveAttribute("n", 1), "!11", "<v n='xs:int'/>");
    Row("n=xs:short", "int", GiveAttribute("n", 1), "!11", "<v n='xs:short'/>");
    Row("n=xs:long", "text", GiveAttribute("n", QStringLiteral("a")), "!9", "<v n='xs:long'/>");
    Row("n=", "text", GiveAttribute("n", "a"), "!9", "<v n=''/>");
    Row("n=string", "another", GiveAttribute("m", "a"), "!9", "<v n='string'/>");
    Row("t=dateTime", "invalid", GiveAttribute("t", QDateTime()), "", "<v t=''/>");
    Row("t=time", "date", GiveAttribute("t", QDateTime()), "!12", "<v t='time'/>");
    Row(
        "n=string", "twice",
        [](XmlCreateReport &report) {
            report.SetAttributeValue(QStringLiteral("n"), "a");
            report.SetAttributeValue(QStringLiteral("n"), 1.5);
        },
        "!10", "<v n='a'/>");
    // Names that contain each other: the facet of the other name counts too, and is left where it is.
    Row("level=double maxInclusivelevelMax=5", "7", GiveAttribute("level", 7.0), "!15",
        "<v level='double' maxInclusivelevelMax='5'/>");
    Row("level=double maxInclusivelevelMax=5", "4", GiveAttribute("level", 4.0), "",
        "<v level='4' maxInclusivelevelMax='5'/>");
    Row("level=double maxInclusivelevel=9 maxInclusivelevelMax=5", "7", GiveAttribute("level", 7.0), "",
        "<v level='7' maxInclusivelevelMax='5'/>");
    Row("level=double maxInclusivelevelA=9 maxInclusivelevelB=5", "7", GiveAttribute("level", 7.0), "!15",
        "<v level='double' maxInclusivelevelA='9' maxInclusivelevelB='5'/>");
    Row(
        "n=string default=d", "remove",
        [](XmlCreateReport &report) {
            report.RemoveAttribute(QStringLiteral("default"));
            report.RemoveAttribute(QStringLiteral("absent"));
        },
        "", "<v n='string'/>");
}

void TestSetters::Check()
{
    QFETCH(QString, attributes);
    QFETCH(Action, action);
    QString element;
    QStringList errors;
    ReportRun run;
    run.m_oReceiver.m_fnElement = [&](ElemBeginEvent &event) {
        if (event.GetElementName() == QLatin1String("v")) {
            ReplaceAttributes(event.GetElementNode().toElement(), attributes);
            const int heardBefore = run.m_oReceiver.m_lHeard.size();
            action(run.m_oReport);
            errors = run.m_oReceiver.m_lHeard.mid(heardBefore);
            element = ToText(event.GetElementNode());
        }
    };
    QVERIFY(run.Run(RootElement(QStringLiteral("<xs:element name='v' type='xs:string'/>"))));
    QTEST(element, "element");
    QTEST(errors.join(QLatin1Char(' ')), "errors");
}

// The same value in one form after the other, from inside the delivery of the error.
void TestSetters::RetriesChain()
{
    ReportRun run;
    run.m_oReceiver.m_fnElement = [&](ElemBeginEvent &event) {
        if (event.GetElementName() == QLatin1String("v")) {
            run.m_oReport.SetXmlValue(3.5);
        }
    };
    run.m_oReceiver.m_fnError = [&](int id) {
        switch (id) {
        case ITagwright::CURRENT_TYPE_IS_NOT_DOUBLE:
            return run.m_oReport.SetXmlValue(3);
        case ITagwright::CURRENT_TYPE_IS_NOT_INTEGER:
            return run.m_oReport.SetXmlValue("3.5 m");
        case ITagwright::CURRENT_TYPE_IS_NOT_STRING:
            return run.m_oReport.SetXmlValue(QDateTime());
        default:
            return;
        }
    };
    QVERIFY(run.Run(RootElement(QStringLiteral("<xs:element name='v'/>"))));
    QCOMPARE(run.m_oReceiver.Heard(), QStringLiteral("begin R v !8 !8 !10 !8 !11 !8 !9 !8 !12 !15 !16 end"));

    ReportRun text;
    text.m_oReceiver.m_fnElement = [&](ElemBeginEvent &) { text.m_oReport.SetXmlValue(3.5); };
    text.m_oReceiver.m_fnError = [&](int id) {
        if (id == ITagwright::CURRENT_TYPE_IS_NOT_DOUBLE) {
            text.m_oReport.SetXmlValue("3.5 m");
        }
    };
    QVERIFY(text.Run(QStringLiteral("<xs:element name='R' type='xs:string'/>")));
    QCOMPARE(text.Report(), QStringLiteral("<R>3.5 m</R>"));
}

void TestSetters::ReplacesTheDefaultAndLeavesTheChildren()
{
    ReportRun run;
    run.m_oReceiver.m_fnElement = [&](ElemBeginEvent &event) {
        QDomElement element = event.GetElementNode().toElement();
        if (event.GetElementName() == QLatin1String("v")) {
            element.appendChild(element.ownerDocument().createElement(QStringLiteral("x")));
            run.m_oReport.SetXmlValue("new");
        }
    };
    QVERIFY(run.Run(RootElement(QStringLiteral("<xs:element name='P'><xs:complexType>"
                                               "<xs:element name='v' type='xs:string' default='old'/>"
                                               "</xs:complexType></xs:element>"))));
    QCOMPARE(run.Report(), QStringLiteral("<R><P><v><x/>new</v></P></R>"));
}

void TestSetters::NeedAWalk()
{
    ReportRun run;
    const auto callAll = [&run] {
        run.m_oReport.SetXmlValue("a");
        run.m_oReport.SetXmlValue(1.0);
        run.m_oReport.SetXmlValue(1);
        run.m_oReport.SetXmlValue(true);
        run.m_oReport.SetXmlValue(QDateTime());
        run.m_oReport.SetXmlValue(QTime());
        run.m_oReport.SetAttributeValue(QStringLiteral("n"), "a");
        run.m_oReport.SetAttributeValue(QStringLiteral("n"), QDateTime());
        run.m_oReport.SetAttributeValue(QStringLiteral("n"), 1);
        run.m_oReport.SetAttributeValue(QStringLiteral("n"), 1.0);
        run.m_oReport.RemoveAttribute(QStringLiteral("n"));
        run.m_oReport.SetElementMaxOccurs(QStringLiteral("v"), 2);
        run.m_oReport.DiscardChoiceItem();
    };
    run.m_oReceiver.m_fnBegin = callAll;
    run.m_oReceiver.m_fnEnd = callAll;
    callAll();
    QVERIFY(run.Run(QStringLiteral("<xs:element name='R' type='xs:string'/>")));
    callAll();
    // Between the walk's two ends there is no element yet, or none any more; the second name is the last one's.
    QCOMPARE(run.m_oReceiver.Heard(),
             QStringLiteral("begin !7 !7 !7 !7 !7 !7 !7 !7 !16 !16 !-1 R end "
                            "!7 !7 !7 !7 !7 !7 !7 !7 !-1"));
    QCOMPARE(run.Report(), QStringLiteral("<R type='string'/>"));
}

QTEST_GUILESS_MAIN(TestSetters)
#include "tst_setters.moc"

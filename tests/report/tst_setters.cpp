#include "support/reportrun.h"

#include <QtTest>

#include <limits>

using Action = std::function<void(XmlCreateReport &)>;
Q_DECLARE_METATYPE(Action)

namespace {

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

// Puts attributes "name=value name=value" on the element in place of what its template gave it; "#=text" is a text, and
// an element "x" behind it.
void Prepare(QDomElement element, const QString &attributes)
{
    element.removeAttribute(QStringLiteral("type"));
    for (const QString &attribute : attributes.split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
        const QString value = attribute.section(QLatin1Char('='), 1);
        if (attribute.startsWith(QLatin1Char('#'))) {
            element.appendChild(element.ownerDocument().createTextNode(value));
            element.appendChild(element.ownerDocument().createElement(QStringLiteral("x")));
        } else {
            element.setAttribute(attribute.section(QLatin1Char('='), 0, 0), value);
        }
    }
}

// Gives the element, or its attribute "n", one value after the other.
template <typename... Values>
Action Give(Values... values)
{
    return [=](XmlCreateReport &report) { (report.SetXmlValue(values), ...); };
}

template <typename... Values>
Action GiveN(Values... values)
{
    return [=](XmlCreateReport &report) { (report.SetAttributeValue(QStringLiteral("n"), values), ...); };
}

void Row(const char *attributes, const Action &action, const char *errors, const char *element)
{
    QTest::addRow("%s to %s", attributes, element)
        << QString::fromLatin1(attributes) << action << QString::fromLatin1(errors) << QString::fromLatin1(element);
}

} // namespace

class TestSetters : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void GiveValues_data()
    {
        QTest::addColumn<QString>("attributes");
        QTest::addColumn<Action>("action");
        QTest::addColumn<QString>("errors");
        QTest::addColumn<QString>("element");
        Row("type=double minInclusive=0 maxInclusive=10", Give(-0.5, 10.5, kNan, 10.0), "!15 !15 !15", "<v>10</v>");
        Row("type=double minInclusive=0 maxInclusive=10 pattern=p", Give(0.0), "", "<v pattern='p'>0</v>");
        Row("type=double minExclusive=0 maxExclusive=10", Give(0.0, 10.0, 0.1), "!15 !15", "<v>0.1</v>");
        Row("type=double minInclusive=0 maxInclusive=5 maxExclusive=9", Give(7.0, 5.0), "!15",
            "<v maxExclusive='9'>5</v>");
        Row("type=double minInclusive=5 minExclusive=0", Give(0.0, 3.0), "!15", "<v minInclusive='5'>3</v>");
        Row("type=double maxInclusive=5 maxExclusive=9", Give(9.0, 7.0), "!15", "<v maxInclusive='5'>7</v>");
        Row("type=double maxInclusive=?", Give(0.5, 0.0), "!15", "<v>0</v>");
        Row("type=double", Give(1, false, "a", QDateTime(), QTime()), "!11 !14 !9 !12 !13", "<v type='double'/>");
        Row("type=integer maxInclusive=65535", Give(70000), "", "<v maxInclusive='65535'>70000</v>");
        Row("type=integer maxInclusive=1.5", Give(1.0, 1, 0), "!10 !15 !8 !11", "<v maxInclusive='1.5'/>");
        Row("type=int", Give(1, 1.0), "!11 !10", "<v type='int'/>");
        Row("type=short", Give(2147483648.0, kNan, -2147483648.5), "!15 !15", "<v>-2147483648</v>");
        Row("type=short maxInclusive=2", Give(2.9, 1.9), "!15", "<v>1</v>");
        Row("type=short maxInclusive=2", Give(true), "", "<v maxInclusive='2'>true</v>");
        Row("type=long", Give(1234567890123.0), "", "<v>1.23456789012e+12</v>");
        Row("type=long", Give(QTime(1, 2, 3)), "", "<v>01:02:03</v>");
        Row("type=boolean", Give("true", true), "!9", "<v>true</v>");
        Row("type=dateTime", Give(QDateTime(QDate(2020, 1, 2), QTime(3, 4, 5))), "", "<v>2020-01-02T03:04:05</v>");
        Row("type=dateTime", Give(QDateTime()), "", "<v/>");
        Row("type=normalizedString", Give("a"), "!9", "<v type='normalizedString'/>");
        Row("type=", Give("a", 1, true, QDateTime(), 1.0), "!8 !9 !8 !11 !8 !14 !8 !12 !8 !8 !10", "<v type=''/>");
        Row("type=string minInclusive=3", Give("\xc3\xbc", "b"), "!8 !9", "<v minInclusive='3'>\xfc</v>");
        Row("type=string enumeration1=a enumeration2=b", Give("A", "c", "b"), "!15 !15", "<v>b</v>");
        Row("type=string enumeration1=a enumeration2=", Give("c", ""), "!15", "<v/>");
        Row("type=string enumeration1=", Give("c"), "", "<v>c</v>");
        Row("type=string enumeration1Unit=a", Give("c"), "", "<v enumeration1Unit='a'>c</v>");
        Row("type=string enumeration1Unit2=a", Give("c", "a"), "!15", "<v>a</v>");
        Row("type=string =1", Give("c"), "", "<v ='1'>c</v>");
        Row("type=string #=old", Give("new"), "", "<v><x/>new</v>");

        Row("n=xs:string enumeration1n=m enumeration2n=k", GiveN("x", "k", 1.5), "!15 !10", "<v n='k'/>");
        Row("n=xs:integer maxInclusiven=5", GiveN(1.0, 6, 5), "!10 !15", "<v n='5'/>");
        Row("n=integer minInclusiven=1 maxExclusiven=5", GiveN(5, 1), "!15", "<v n='1'/>");
        Row("n=integer maxInclusiven=65535", GiveN(70000), "", "<v maxInclusiven='65535' n='70000'/>");
        Row("n=double minExclusiven=0.5", GiveN(0.5, 0.6), "!15", "<v n='0.6'/>");
        Row("n=xs:short", GiveN(1.0, 1, "a", QDateTime()), "!10 !11 !9 !12", "<v n='xs:short'/>");
        Row("m=string n=", GiveN("a"), "!9", "<v m='string' n=''/>");
        Row("m=string", GiveN("a"), "!9", "<v m='string'/>");
        Row("n=dateTime", GiveN(QDateTime()), "", "<v n=''/>");
        // Names that contain each other: the facet of the other name counts too, and is left where it is.
        Row("n=double maxInclusivenMax=5", GiveN(7.0, 4.0), "!15", "<v maxInclusivenMax='5' n='4'/>");
        Row("n=double maxInclusiven=9 maxInclusivenMax=5", GiveN(7.0), "", "<v maxInclusivenMax='5' n='7'/>");
        Row("n=double maxInclusivenA=9 maxInclusivenB=5", GiveN(7.0), "!15",
            "<v maxInclusivenA='9' maxInclusivenB='5' n='double'/>");
        const auto remove = [](XmlCreateReport &report) {
            report.RemoveAttribute(QStringLiteral("default"));
            report.RemoveAttribute(QStringLiteral("absent"));
        };
        Row("n=string default=d", remove, "", "<v n='string'/>");
    }

    void GiveValues()
    {
        QFETCH(QString, attributes);
        QFETCH(Action, action);
        QString element;
        QStringList errors;
        ReportRun run;
        run.m_oReceiver.m_fnElement = [&](ElemBeginEvent &event) {
            if (event.GetElementName() == QLatin1String("v")) {
                Prepare(event.GetElementNode().toElement(), attributes);
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

    void NeedAWalk()
    {
        ReportRun run;
        const auto callAll = [&run] {
            Give("a", 1.0, 1, true, QDateTime(), QTime())(run.m_oReport);
            GiveN("a", QDateTime(), 1, 1.0)(run.m_oReport);
            run.m_oReport.RemoveAttribute(QStringLiteral("n"));
            run.m_oReport.SetElementMaxOccurs(QStringLiteral("v"), 2);
            run.m_oReport.DiscardChoiceItem();
        };
        run.m_oReceiver.m_fnBegin = callAll;
        run.m_oReceiver.m_fnEnd = callAll;
        callAll();
        QVERIFY(run.Run(QStringLiteral("<xs:element name='R' type='xs:string'/>")));
        callAll();
        // At the walk's two ends there is no element; the second time the name to repeat is the last one's.
        QCOMPARE(run.m_oReceiver.Heard(),
                 QStringLiteral("begin !7 !7 !7 !7 !7 !7 !7 !7 !16 !16 !-1 R end "
                                "!7 !7 !7 !7 !7 !7 !7 !7 !-1"));
        QCOMPARE(run.Report(), QStringLiteral("<R type='string'/>"));
    }
};

QTEST_GUILESS_MAIN(TestSetters)
#include "tst_setters.moc"

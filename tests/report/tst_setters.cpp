#include "support/reportrun.h"
#include "support/rows.h"

#include <QtTest>

namespace {

// What the template gives an element v, where "#" stands for a text and an element x, and what v is given then, one
// after the other, or with "@n" its attribute n. What is heard of it, and what has become of v.
constexpr const char *kGiven[][3] = {
    { "type=double minInclusive=0 maxInclusive=10; =d:-0.5 =d:10.5 =d:nan =d:10", "!15 !15 !15", "<v>10</v>" },
    { "type=double minInclusive=0 maxInclusive=10 pattern=p; =d:0", "", "<v pattern='p'>0</v>" },
    { "type=double minExclusive=0 maxExclusive=10; =d:0 =d:10 =d:0.1", "!15 !15", "<v>0.1</v>" },
    { "type=double minInclusive=0 maxInclusive=5 maxExclusive=9; =d:7 =d:5", "!15", "<v maxExclusive='9'>5</v>" },
    { "type=double minInclusive=5 minExclusive=0; =d:0 =d:3", "!15", "<v minInclusive='5'>3</v>" },
    { "type=double maxInclusive=5 maxExclusive=9; =d:9 =d:7", "!15", "<v maxInclusive='5'>7</v>" },
    { "type=double maxInclusive=?; =d:0.5 =d:0", "!15", "<v>0</v>" },
    { "type=double; =i:1 =b:false =s:a =t:never =t:01:02:03", "!11 !14 !9 !12 !13", "<v type='double'/>" },
    { "type=integer maxInclusive=65535; =i:70000", "", "<v maxInclusive='65535'>70000</v>" },
    { "type=integer maxInclusive=1.5; =d:1 =i:1 =i:0", "!10 !15 !8 !11", "<v maxInclusive='1.5'/>" },
    { "type=int; =i:1 =d:1", "!11 !10", "<v type='int'/>" },
    { "type=short; =d:2147483648 =d:nan =d:-2147483648.5", "!15 !15", "<v>-2147483648</v>" },
    { "type=short maxInclusive=2; =d:2.9 =d:1.9", "!15", "<v>1</v>" },
    { "type=short maxInclusive=2; =b:true", "", "<v maxInclusive='2'>true</v>" },
    { "type=long; =d:1234567890123", "", "<v>1.23456789012e+12</v>" },
    { "type=long; =t:01:02:03", "", "<v>01:02:03</v>" },
    { "type=boolean; =s:true =b:true", "!9", "<v>true</v>" },
    { "type=dateTime; =t:2020-01-02T03:04:05", "", "<v>2020-01-02T03:04:05</v>" },
    { "type=dateTime; =t:never", "", "<v/>" },
    { "type=normalizedString; =s:a", "!9", "<v type='normalizedString'/>" },
    { "type=; =s:a =i:1 =b:true =t:never =d:1", "!8 !9 !8 !11 !8 !14 !8 !12 !8 !8 !10", "<v type=''/>" },
    { "type=string minInclusive=3; =s:\xc3\xbc =s:b", "!8 !9", "<v minInclusive='3'>\xc3\xbc</v>" },
    { "type=string enumeration1=a enumeration2=b; =s:A =s:c =s:b", "!15 !15", "<v>b</v>" },
    { "type=string enumeration1=a enumeration2=; =s:c =s:", "!15", "<v/>" },
    { "type=string enumeration1=; =s:c", "", "<v>c</v>" },
    { "type=string enumeration1Unit=a; =s:c", "", "<v enumeration1Unit='a'>c</v>" },
    { "type=string enumeration1Unit2=a; =s:c =s:a", "!15", "<v>a</v>" },
    { "type=string =1; =s:c", "", "<v ='1'>c</v>" },
    { "type=string #=old; =s:new", "", "<v><x/>new</v>" },
    { "n=xs:string enumeration1n=m enumeration2n=k; @n=s:x @n=s:k @n=d:1.5", "!15 !10", "<v n='k'/>" },
    { "n=xs:integer maxInclusiven=5; @n=d:1 @n=i:6 @n=i:5", "!10 !15", "<v n='5'/>" },
    { "n=integer minInclusiven=1 maxExclusiven=5; @n=i:5 @n=i:1", "!15", "<v n='1'/>" },
    { "n=integer maxInclusiven=65535; @n=i:70000", "", "<v maxInclusiven='65535' n='70000'/>" },
    { "n=double minExclusiven=0.5; @n=d:0.5 @n=d:0.6", "!15", "<v n='0.6'/>" },
    { "n=xs:short; @n=d:1 @n=i:1 @n=s:a @n=t:never", "!10 !11 !9 !12", "<v n='xs:short'/>" },
    { "m=string n=; @n=s:a", "!9", "<v m='string' n=''/>" },
    { "m=string; @n=s:a", "!9", "<v m='string'/>" },
    { "n=dateTime; @n=t:never", "", "<v n=''/>" },
    // Names that contain each other: the facet of the other name counts too, and is left where it is.
    { "n=double maxInclusivenMax=5; @n=d:7 @n=d:4", "!15", "<v maxInclusivenMax='5' n='4'/>" },
    { "n=double maxInclusiven=9 maxInclusivenMax=5; @n=d:7", "", "<v maxInclusivenMax='5' n='7'/>" },
    { "n=double maxInclusivenA=9 maxInclusivenB=5; @n=d:7", "!15",
      "<v maxInclusivenA='9' maxInclusivenB='5' n='double'/>" },
    { "n=string default=d; @default! @absent!", "", "<v n='string'/>" },
};

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

} // namespace

class TestSetters : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void GiveValues_data() { AddRows(kGiven); }
    void GiveValues()
    {
        QFETCH(QStringList, row);
        const QStringList given = QString::fromUtf8(QTest::currentDataTag()).split(QStringLiteral("; "));
        QString element;
        ReportRun run;
        run.Follow(QLatin1Char('v') + QString(given.at(1)).replace(QLatin1Char(' '), QLatin1String(" v")));
        run.m_oReceiver.m_fnElement = [&, follow = run.m_oReceiver.m_fnElement](ElemBeginEvent &event) {
            if (event.GetElementName() == QLatin1String("v")) {
                Prepare(event.GetElementNode().toElement(), given.at(0));
                run.m_oReceiver.m_lHeard.clear();
                follow(event);
                QCOMPARE(run.m_oReceiver.Heard(), row.at(0));
                element = ToText(event.GetElementNode());
            }
        };
        QVERIFY(run.Run(RootElement(QStringLiteral("<t v/>"))));
        QCOMPARE(element, row.at(1));
    }

    void NeedAWalk()
    {
        ReportRun run;
        const auto callAll = [&report = run.m_oReport] {
            report.SetXmlValue("a");
            report.SetXmlValue(1.0);
            report.SetXmlValue(1);
            report.SetXmlValue(true);
            report.SetXmlValue(QDateTime());
            report.SetXmlValue(QTime());
            report.SetAttributeValue(QStringLiteral("n"), "a");
            report.SetAttributeValue(QStringLiteral("n"), QDateTime());
            report.SetAttributeValue(QStringLiteral("n"), 1);
            report.SetAttributeValue(QStringLiteral("n"), 1.0);
            report.RemoveAttribute(QStringLiteral("n"));
            report.SetElementMaxOccurs(QStringLiteral("v"), 2);
            report.DiscardChoiceItem();
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

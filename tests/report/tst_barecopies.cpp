#include "support/reportrun.h"
#include "support/tracecapture.h"

#include <QRandomGenerator>
#include <QtTest>

#include <memory>

namespace {

constexpr int kRuns = 150;

QString Pick(QRandomGenerator &random, const QStringList &choices)
{
    return choices.at(random.bounded(choices.size()));
}

/// A name out of a few, so that repetitions, searches and pending elements meet under one name at several levels. The
/// root's is among them.
QString PickName(QRandomGenerator &random)
{
    return QString(QLatin1Char("abcdeR"[random.bounded(6)]));
}

QStringList Words(const char *text)
{
    return QString::fromLatin1(text).split(QLatin1Char('|'));
}

/// Leaves and containers with everything that a copy may carry: bounds, enumerations, attributes, defaults (of
/// containers, too), named types, optional parts, repetitions within repetitions, choices.
QString RandomContent(QRandomGenerator &random, int depth)
{
    static const QStringList limits = Words("|minOccurs='0'|maxOccurs='4'|minOccurs='0' maxOccurs='unbounded'|"
                                            "minOccurs='2' maxOccurs='3'");
    static const QStringList types = Words("type='D'|type='E'|type='xs:string'|type='xs:short'|type='I'|type='C'|"
                                           "type='P'|");
    static const QStringList attributes = Words("|<xs:attribute name='u' type='xs:string'/>|<xs:attribute ref='K'/>|"
                                                "<xs:attribute name='u' type='xs:string'/><xs:attribute ref='N'/>");
    QString content;
    for (int i = 1 + random.bounded(3); i > 0; --i) {
        const bool isSimple = random.bounded(2) == 0;
        QString inner;
        if (!isSimple) {
            inner = depth < 4 && random.bounded(5) != 0
                ? Pick(random, Words("%1|%1|<xs:choice>%1</xs:choice>")).arg(RandomContent(random, depth + 1))
                : Pick(random, Words("|<xs:simpleContent><xs:extension base='D'/></xs:simpleContent>"));
            inner = QStringLiteral("<xs:complexType>%1%2</xs:complexType>").arg(inner, Pick(random, attributes));
        }
        content += QStringLiteral("<xs:element name='%1' %2 %3 %4>%5</xs:element>")
                       .arg(PickName(random), Pick(random, limits), isSimple ? Pick(random, types) : QString(),
                            random.bounded(4) == 0 ? QStringLiteral("default='d'") : QString(), inner);
    }
    return content;
}

QString Types()
{
    return QStringLiteral(
        "<xs:simpleType name='D'><xs:restriction base='xs:double'><xs:minInclusive value='0'/><xs:maxExclusive "
        "value='9'/></xs:restriction></xs:simpleType>"
        "<xs:simpleType name='E'><xs:restriction base='xs:string'><xs:enumeration value='x'/><xs:enumeration "
        "value='y'/><xs:maxLength value='1'/></xs:restriction></xs:simpleType>"
        "<xs:simpleType name='I'><xs:restriction base='xs:integer'><xs:maxInclusive value='5'/></xs:restriction>"
        "</xs:simpleType>"
        "<xs:attribute name='K' type='E'/><xs:attribute name='N' type='I'/>"
        "<xs:complexType name='P'><xs:simpleContent><xs:extension base='D'><xs:attribute name='u' type='xs:string'/>"
        "</xs:extension></xs:simpleContent></xs:complexType>");
}

/// A schema with a named type in the middle: its elements stand where the table knows no parent for them.
QString RandomSchema(QRandomGenerator &random)
{
    const QString type = RandomContent(random, 3).replace(QLatin1String("type='C'"), QLatin1String("type='P'"));
    return Types()
        + QStringLiteral("<xs:complexType name='C'><xs:sequence>%1</xs:sequence><xs:attribute ref='N'/>"
                         "</xs:complexType>")
              .arg(type)
        + RootElement(RandomContent(random, 0));
}

/// Does something at random at each event, the same for the same seed.
class RandomReceiver
{
public:
    RandomReceiver(ReportRun &run, quint32 seed, int takeAt, int lookAt)
        : m_oReport(run.m_oReport)
        , m_oRandom(seed)
        , m_iTakeAt(takeAt)
        , m_iLookAt(lookAt)
    {
    }

    void Hear(ElemBeginEvent &event)
    {
        m_pEvent = &event;
        m_sName = event.GetElementName();
        const QXmlAttributes attributes = event.GetElementAttributes();
        for (int i = 0; i < attributes.count(); ++i) {
            m_sSeen += attributes.qName(i) + QLatin1Char('=') + attributes.value(i) + QLatin1Char(' ');
        }
        m_sSeen += event.GetElementText() + QLatin1Char('\n');
        for (int i = m_oRandom.bounded(4); i > 0; --i) {
            Act();
        }
        m_pEvent = nullptr;
    }

    /// As the control does it, a value comes in its next form; at times something else altogether happens.
    void HearError(int id)
    {
        const double number = m_oRandom.bounded(12) * 1.0;
        if (id == ITagwright::CURRENT_TYPE_IS_NOT_DOUBLE) {
            m_oReport.SetXmlValue(static_cast<int>(number));
        } else if (id == ITagwright::CURRENT_TYPE_IS_NOT_INTEGER) {
            m_oReport.SetXmlValue("x");
        } else if (m_oRandom.bounded(12) == 0) {
            Act();
        }
    }

    QString GetSeen() const { return m_sSeen; }

private:
    void Act()
    {
        if (++m_iCount > 600) {
            return;
        }
        if (m_iTakeAt >= 0 && m_iCount >= m_iTakeAt && m_pEvent != nullptr) {
            // A copy of the event takes hold of the node as well.
            m_oTaken = ElemBeginEvent(*m_pEvent).GetElementNode();
        }
        if (m_iCount == m_iLookAt && m_pEvent != nullptr) {
            m_sSeen += ToText(m_oTaken.ownerDocument());
        }
        const QString name = m_oRandom.bounded(8) == 0 ? PickName(m_oRandom) : m_sName;
        const QString text = Pick(m_oRandom, Words("x|z"));
        const int number = m_oRandom.bounded(12);
        switch (m_oRandom.bounded(14)) {
        case 0:
        case 1:
        case 2:
            return m_oReport.SetElementMaxOccurs(name, m_oRandom.bounded(5));
        case 3:
            return m_oReport.SetAttributeValue(QStringLiteral("u"), text);
        case 4:
            return m_oReport.SetAttributeValue(QStringLiteral("N"), number);
        case 5:
            return m_oReport.SetAttributeValue(QStringLiteral("K"), text);
        case 6:
            return m_oReport.RemoveAttribute(QStringLiteral("default"));
        case 7:
        case 8:
            return m_oReport.SetXmlValue(number * 1.0);
        case 9:
        case 10:
            return m_oReport.SetXmlValue(number);
        case 11:
            return m_oReport.SetXmlValue(text);
        case 12:
            return m_oReport.DiscardChoiceItem();
        default:
            return;
        }
    }

    XmlCreateReport &m_oReport;
    QRandomGenerator m_oRandom;
    int m_iTakeAt;
    int m_iLookAt;
    int m_iCount = 0;
    QString m_sName;
    QString m_sSeen;
    ElemBeginEvent *m_pEvent = nullptr;
    QDomNode m_oTaken;
};

/// What a run comes to, where the receiver takes hold of the document from its action `takeAt` on and looks at all of
/// it at its action `lookAt` (-1: never).
QString Outcome(const QString &schema, quint32 seed, int takeAt, int lookAt)
{
    const TraceCapture traces;
    ReportRun run;
    const auto receiver = std::make_shared<RandomReceiver>(run, seed, takeAt, lookAt);
    run.m_oReceiver.m_fnElement = [receiver](ElemBeginEvent &event) { receiver->Hear(event); };
    run.m_oReceiver.m_fnError = [receiver](int id) { receiver->HearError(id); };
    run.Run(schema);
    return run.m_oReceiver.Heard() + QLatin1Char('\n') + receiver->GetSeen() + run.Report() + QLatin1Char('\n')
        + TraceCapture::Text();
}

} // namespace

class TestBareCopies : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // A receiver that takes the first node gets a document in which each copy carries its attributes from the start.
    void comeToTheSameAsCopiesWithAttributes()
    {
        QRandomGenerator random(4711);
        for (int i = 0; i < kRuns; ++i) {
            const QString schema = RandomSchema(random);
            const quint32 seed = random.generate();
            const int lookAt = 1 + random.bounded(40);
            QVERIFY2(Outcome(schema, seed, -1, -1) == Outcome(schema, seed, 0, -1), qPrintable(schema));
            QVERIFY2(Outcome(schema, seed, lookAt, lookAt) == Outcome(schema, seed, 0, lookAt), qPrintable(schema));
        }
    }

    // The walk goes on inside a root that was given up, where the table finds nothing any more.
    void areNotMadeBelowADiscardedRoot()
    {
        ReportRun run;
        run.m_oReceiver.m_fnElement = [&](ElemBeginEvent &event) {
            const bool isRoot = event.GetElementName() == QLatin1String("R");
            run.m_oReport.SetElementMaxOccurs(isRoot ? QStringLiteral("c") : QStringLiteral("a"), 2);
            run.m_oReport.DiscardChoiceItem();
        };
        QVERIFY(run.Run(RootElement(QStringLiteral("<xs:element name='a' maxOccurs='2'/><xs:element name='c' "
                                                   "maxOccurs='2'/><xs:choice><xs:element name='R'/><xs:element "
                                                   "name='b'/></xs:choice>"))));
        QCOMPARE(run.m_oReceiver.Heard(), QStringLiteral("begin R a !16 !-1 end"));
    }

    // One sentence for each value that is missing in the end, and no other.
    void tellWhyAValueIsMissing()
    {
        const TraceCapture traces;
        ReportRun run;
        XmlCreateReport &report = run.m_oReport;
        int signal = 0;
        run.m_oReceiver.m_fnElement = [&](ElemBeginEvent &event) {
            const QString name = event.GetElementName();
            if (name == QLatin1String("s")) {
                ++signal; // the first is announced twice
                report.SetElementMaxOccurs(name, 2);
                report.SetAttributeValue(QStringLiteral("u"), 4);
                if (signal > 2) {
                    report.SetAttributeValue(QStringLiteral("u"), "Hz");
                }
            } else if (name == QLatin1String("level")) {
                report.SetXmlValue("a step of a retry that succeeds");
                report.SetXmlValue(signal > 2 ? 9.5 : 5.5);
                report.SetXmlValue(signal > 2 ? 10.5 : 6.5);
            } else if (name != QLatin1String("R")) {
                report.SetElementMaxOccurs(name, 2);
                report.SetXmlValue(name);
            }
        };
        run.Run(
            Types()
            + RootElement(QStringLiteral(
                "<xs:element name='s' maxOccurs='2'><xs:complexType><xs:element name='level' type='D'/>"
                "<xs:attribute name='u' type='xs:string'/></xs:complexType></xs:element>"
                "<xs:element name='gone' type='E' minOccurs='0' maxOccurs='2'/><xs:element name='kind' type='E'/>")));
        const QString told = QStringLiteral(
            "/R/s[1]/@u: the value \"4\" was not written: the type \"xs:string\" takes no integer (error 11).\n"
            "/R/s[2]/level: the value \"9.5\" was not written: not below maxExclusive 9 (error 15).\n"
            "/R/s[2]/level stays without a value, though it may not be left out (error 16).\n"
            "/R/gone[1]: the value \"gone\" was not written: not among the enumeration values (error 15).\n"
            "/R/gone: the value \"gone\" was not written: not among the enumeration values (error 15).\n"
            "/R/kind may not stand 2 times here (error 16).\n"
            "/R/kind: the value \"kind\" was not written: not among the enumeration values (error 15).\n"
            "/R/kind stays without a value, though it may not be left out (error 16).");
        QCOMPARE(TraceCapture::Text(), told);
    }
};

QTEST_GUILESS_MAIN(TestBareCopies)
#include "tst_barecopies.moc"

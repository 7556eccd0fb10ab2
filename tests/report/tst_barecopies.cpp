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

/// Leaves and containers with everything that a copy may carry: bounds, enumerations, defaults, attributes, optional
/// parts, repetitions within repetitions, choices.
QString RandomContent(QRandomGenerator &random, int depth)
{
    static const QStringList limits { QString(), QStringLiteral("minOccurs='0'"), QStringLiteral("maxOccurs='4'"),
                                      QStringLiteral("minOccurs='0' maxOccurs='unbounded'"),
                                      QStringLiteral("minOccurs='2' maxOccurs='3'") };
    static const QStringList types { QStringLiteral("type='D'"), QStringLiteral("type='E'"),
                                     QStringLiteral("type='xs:string' default='d'"), QStringLiteral("type='xs:int'"),
                                     QStringLiteral("type='I'") };
    QString content;
    for (int i = 1 + random.bounded(3); i > 0; --i) {
        const QString name = Pick(random, { QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c") });
        const QString head = QStringLiteral("<xs:element name='%1' %2").arg(name, Pick(random, limits));
        if (depth < 3 && random.bounded(2) == 0) {
            const QString inner = RandomContent(random, depth + 1);
            const bool choice = random.bounded(4) == 0;
            content += head + QLatin1String("><xs:complexType>")
                + (choice ? QStringLiteral("<xs:choice>%1</xs:choice>") : QStringLiteral("%1")).arg(inner)
                + QLatin1String("<xs:attribute name='u' type='xs:string'/></xs:complexType></xs:element>");
        } else {
            content += head + QLatin1Char(' ') + Pick(random, types) + QLatin1String("/>");
        }
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
        "</xs:simpleType>");
}

/// Does something at random at each announcement, the same for the same seed.
class RandomReceiver
{
public:
    RandomReceiver(ReportRun &run, quint32 seed, int takeAt)
        : m_oRun(run)
        , m_oRandom(seed)
        , m_iTakeAt(takeAt)
    {
    }

    void operator()(ElemBeginEvent &event)
    {
        if (m_iTakeAt >= 0 && m_iCount >= m_iTakeAt) {
            m_oTaken = event.GetElementNode();
        }
        const QXmlAttributes attributes = event.GetElementAttributes();
        for (int i = 0; i < attributes.count(); ++i) {
            m_sSeen += attributes.qName(i) + QLatin1Char('=') + attributes.value(i) + QLatin1Char(' ');
        }
        m_sSeen += event.GetElementText() + QLatin1Char('\n');
        if (++m_iCount < 400) {
            Act(event.GetElementName());
        }
    }

    QString GetSeen() const { return m_sSeen; }

private:
    void Act(const QString &name)
    {
        XmlCreateReport &report = m_oRun.m_oReport;
        if (m_oRandom.bounded(3) == 0) {
            report.SetAttributeValue(QStringLiteral("u"), "unit");
        }
        if (m_oRandom.bounded(2) == 0) {
            report.SetElementMaxOccurs(name, m_oRandom.bounded(4));
        }
        switch (m_oRandom.bounded(9)) {
        case 0:
            report.DiscardChoiceItem();
            break;
        case 1:
        case 2:
            report.SetXmlValue(m_oRandom.bounded(12) * 1.0);
            break;
        case 3:
        case 4:
            report.SetXmlValue(m_oRandom.bounded(8));
            break;
        case 5:
        case 6:
            report.SetXmlValue(Pick(m_oRandom, { QStringLiteral("x"), QStringLiteral("z") }));
            break;
        default:
            break;
        }
    }

    ReportRun &m_oRun;
    QRandomGenerator m_oRandom;
    int m_iTakeAt;
    int m_iCount = 0;
    QString m_sSeen;
    QDomNode m_oTaken;
};

/// What a run comes to, where the receiver takes hold of the document at the `takeAt`-th announcement (-1: never).
QString Outcome(const QString &schema, quint32 seed, int takeAt)
{
    ReportRun run;
    const auto receiver = std::make_shared<RandomReceiver>(run, seed, takeAt);
    run.m_oReceiver.m_fnElement = [receiver](ElemBeginEvent &event) { (*receiver)(event); };
    run.Run(schema);
    return run.m_oReceiver.Heard() + QLatin1Char('\n') + receiver->GetSeen() + run.Report();
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
            const QString schema = Types() + RootElement(RandomContent(random, 0));
            const quint32 seed = random.generate();
            const QString literal = Outcome(schema, seed, 0);
            QVERIFY2(Outcome(schema, seed, -1) == literal, qPrintable(schema));
            QVERIFY2(Outcome(schema, seed, 1 + random.bounded(30)) == literal, qPrintable(schema));
        }
    }

    void showTheirAttributesToWhoeverLooks()
    {
        ReportRun run;
        QStringList seen;
        run.m_oReceiver.m_fnElement = [&](ElemBeginEvent &event) {
            if (event.GetElementName() != QLatin1String("a")) {
                return;
            }
            if (run.m_oReceiver.m_lHeard.count(QStringLiteral("a")) == 1) {
                run.m_oReport.SetElementMaxOccurs(QStringLiteral("a"), 3);
                return;
            }
            const ElemBeginEvent kept(event);
            QDomNode node = ElemBeginEvent(kept).GetElementNode().parentNode().firstChild();
            for (; !node.isNull(); node = node.nextSibling()) {
                seen += node.toElement().attribute(QStringLiteral("type"));
            }
        };
        QVERIFY(run.Run(RootElement(QStringLiteral("<xs:element name='a' type='xs:string' maxOccurs='3'/>"))));
        QCOMPARE(seen.mid(0, 3),
                 QStringList({ QStringLiteral("string"), QStringLiteral("string"), QStringLiteral("string") }));
    }

    void tellWhyAValueIsMissing_data()
    {
        QTest::addColumn<QString>("sentence");
        QTest::newRow("bound")
            << "/R/s[2]/level: the value \"9.5\" was not written: not below maxExclusive 9 (error 15).";
        QTest::newRow("missing") << "/R/s[2]/level stays without a value, though it may not be left out (error 16).";
        QTest::newRow("type") << "/R/s[1]/count: the value \"abc\" was not written: the type \"int\" takes no string "
                                 "(error 9).";
        QTest::newRow("enumeration") << "/R/kind: the value \"z\" was not written: not among the enumeration values "
                                        "(error 15).";
        QTest::newRow("count") << "/R/kind may not stand 2 times here (error 16).";
        QTest::newRow("attribute") << "/R/s[1]/@u: the value \"4\" was not written: the type \"xs:string\" takes no "
                                      "integer (error 11).";
    }
    void tellWhyAValueIsMissing()
    {
        QFETCH(QString, sentence);
        const TraceCapture traces;
        ReportRun run;
        int signal = 0;
        run.m_oReceiver.m_fnElement = [&](ElemBeginEvent &event) {
            XmlCreateReport &report = run.m_oReport;
            const QString name = event.GetElementName();
            if (name == QLatin1String("s")) {
                ++signal;
                report.SetElementMaxOccurs(name, 2);
                report.SetAttributeValue(QStringLiteral("u"), 4);
                if (signal > 2) {
                    report.SetAttributeValue(QStringLiteral("u"), "Hz");
                }
            } else if (name == QLatin1String("level")) {
                report.SetXmlValue("a step of a retry that succeeds");
                report.SetXmlValue(signal > 2 ? 9.5 : 5.5);
                report.SetXmlValue(signal > 2 ? 10.5 : 6.5);
            } else {
                if (name == QLatin1String("kind")) {
                    report.SetElementMaxOccurs(name, 2);
                }
                report.SetXmlValue(name == QLatin1String("count") ? "abc" : "z");
            }
        };
        run.Run(Types()
                + RootElement(QStringLiteral(
                    "<xs:element name='s' maxOccurs='2'><xs:complexType><xs:element name='level' type='D'/>"
                    "<xs:element name='count' type='xs:int'/><xs:attribute name='u' type='xs:string'/></xs:complexType>"
                    "</xs:element><xs:element name='kind' type='E'/>")));
        QVERIFY2(TraceCapture::Text().split(QLatin1Char('\n')).count(sentence) == 1, qPrintable(TraceCapture::Text()));
        QVERIFY(!TraceCapture::Text().contains(QLatin1String("a step")) || sentence.contains(QLatin1String("9.5")));
    }
};

QTEST_GUILESS_MAIN(TestBareCopies)
#include "tst_barecopies.moc"

#include "support/reportrun.h"

#include "dom/nodewalk.h"

#include <QProcess>
#include <QRandomGenerator>
#include <QtTest>

#include <map>
#include <set>

namespace {

constexpr int kReports = 300;
constexpr int kDepth = 3;

/// A type, and what gives an element a value of it.
struct Kind
{
    const char *m_sType;
    const char *m_sFacets;
    std::function<void(XmlCreateReport &)> m_fnGive;
};

template <typename Value>
Kind MakeKind(const char *type, const char *facets, const Value &value)
{
    return { type, facets, [value](XmlCreateReport &report) { report.SetXmlValue(value); } };
}

const Kind &KindAt(int index)
{
    static const std::array kinds {
        MakeKind("xs:string", "", QStringLiteral("a <b> & c")),
        MakeKind("xs:string", "<v up/><v down/>", QStringLiteral("down")),
        MakeKind("xs:double", "<xs:minInclusive value=-1/><xs:maxExclusive value=100/>", 99.5),
        MakeKind("xs:integer", "<v 1/><v 2/>", 2),
        MakeKind("xs:short", "<xs:minExclusive value=-5/>", -4),
        MakeKind("xs:boolean", "", true),
        MakeKind("xs:dateTime", "", QDateTime(QDate(2026, 11, 25), QTime(7, 8, 9))),
        MakeKind("xs:string", "<xs:maxLength value=3/><xs:pattern value='[a-c]+'/>", QStringLiteral("cab")),
    };
    return kinds[static_cast<std::size_t>(index) % kinds.size()];
}

/// A random schema, and who knows what it asks for. Each name is declared once.
class RandomSchema
{
public:
    explicit RandomSchema(quint32 seed)
        : m_oRandom(seed)
        , m_sRoot(RootElement(Content(0, false)))
    {
    }

    QString GetText() const { return m_sTypes + m_sRoot; }

    /// Fills the current element completely, or leaves it out with all that it holds.
    void Fill(const QString &name, XmlCreateReport &report)
    {
        const ReportPlace place = report.GetPlace();
        const Asked &asked = m_hAsked[name];
        if (asked.m_iMost > 1 && place.GetIndex() == 0 && m_lRepeated.insert(place.GetText()).second) {
            report.SetElementMaxOccurs(name, asked.m_iMost); // and comes again
            return;
        }
        for (const ReportPlace::Step &step : place.GetSteps()) {
            if (m_hAsked[step.m_sName].m_bIsOut) {
                return;
            }
        }
        if (asked.m_bHasAttribute) {
            report.SetAttributeValue(QLatin1Char('a') + name, QStringLiteral("x\"y"));
            ++m_iGiven;
        }
        if (asked.m_pKind == nullptr) {
            report.KeepCurrentElement();
            return;
        }
        asked.m_pKind->m_fnGive(report);
        ++m_iGiven;
    }

    int GetGiven() const { return m_iGiven; }

private:
    /// What an element is to hold; a container has no kind.
    struct Asked
    {
        const Kind *m_pKind = nullptr;
        int m_iMost = 1;
        bool m_bHasAttribute = false;
        bool m_bIsOut = false;
    };

    int Below(int bound) { return m_oRandom.bounded(bound); }

    QString Content(int depth, bool isInType)
    {
        QString content;
        for (int left = 1 + Below(4); left > 0; --left) {
            const bool isChoice = Below(6) == 0;
            content += isChoice ? Choice() : Below(3) == 0 && depth < kDepth ? Container(depth, isInType) : Leaf(true);
        }
        return content;
    }

    /// All alternatives but the first go.
    QString Choice()
    {
        QString members = Leaf(false);
        for (int left = 1 + Below(2); left > 0; --left) {
            members += Leaf(false);
            m_hAsked[QStringLiteral("n%1").arg(m_iNames)].m_bIsOut = true;
        }
        return QStringLiteral("<h>%1</h>").arg(members);
    }

    QString Leaf(bool takesLimits)
    {
        const Kind &kind = KindAt(Below(8));
        const QString name = NewName();
        m_hAsked[name].m_pKind = &kind;
        const QString type = QLatin1String(kind.m_sType);
        const QString start = QStringLiteral("<e %1%2").arg(name, takesLimits ? Limits(name) : QString());
        if (kind.m_sFacets[0] != '\0') {
            m_sTypes += QStringLiteral("<s T%1><r %2>%3</r></s>").arg(name, type, QLatin1String(kind.m_sFacets));
            return start + QStringLiteral(" type=T%1/>").arg(name);
        }
        if (Below(3) > 0) {
            return start + QStringLiteral(" type=%1/>").arg(type);
        }
        return start
            + QStringLiteral("><c><xs:simpleContent><x %1>%2</x></xs:simpleContent></c></e>")
                  .arg(type, AttributeOf(name));
    }

    /// A container with a type of its own would stand flat in a named type.
    QString Container(int depth, bool isInType)
    {
        const QString name = NewName();
        const QString start = QStringLiteral("<e %1%2").arg(name, Limits(name));
        const bool isNamed = isInType || Below(2) == 0;
        const QString content = QStringLiteral("<q>%1</q>%2")
                                    .arg(Content(depth + 1, isNamed), Below(2) == 0 ? AttributeOf(name) : QString());
        if (!isNamed) {
            return start + QStringLiteral("><c>%1</c></e>").arg(content);
        }
        m_sTypes += QStringLiteral("<c T%1>%2</c>").arg(name, content);
        return start + QStringLiteral(" type=T%1/>").arg(name);
    }

    QString AttributeOf(const QString &name)
    {
        const bool isRequired = Below(2) == 0;
        m_hAsked[name].m_bHasAttribute = isRequired || Below(2) == 0;
        return QStringLiteral("<a a%1 type=xs:string%2/>").arg(name, QLatin1String(isRequired ? " use=required" : ""));
    }

    QString Limits(const QString &name)
    {
        QString limits;
        if (Below(3) == 0) {
            limits += QLatin1String(" min=0");
            m_hAsked[name].m_bIsOut = Below(2) == 0;
        }
        if (Below(4) == 0) {
            m_hAsked[name].m_iMost = 2 + Below(2);
            limits += QLatin1String(Below(2) == 0 ? " max=3" : " max=unbounded");
        }
        return limits;
    }

    QString NewName() { return QStringLiteral("n%1").arg(++m_iNames); }

    QRandomGenerator m_oRandom;
    int m_iNames = 0;
    int m_iGiven = 0;
    std::map<QString, Asked> m_hAsked;
    std::set<QString> m_lRepeated;
    QString m_sTypes;
    QString m_sRoot;
};

int CountValues(const QDomDocument &report)
{
    int count = 0;
    for (dom::NodeWalk walk(report); !walk.AtEnd(); walk.Next()) {
        const QDomElement element = walk.Node().toElement();
        count += element.firstChildElement().isNull() && !element.text().isEmpty() ? 1 : 0;
        count += element.hasAttribute(QLatin1Char('a') + element.tagName()) ? 1 : 0;
    }
    return count;
}

} // namespace

/// What valid output promises, for a judge that isn't ours: a report that is complete validates and holds all values.
class TestJudgedReports : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void ValidatesAndHoldsAllValues()
    {
        for (quint32 seed = 1; seed <= kReports; ++seed) {
            RandomSchema schema(seed);
            ReportRun run;
            run.m_oReport.SetValidOutput(true);
            run.m_oReceiver.m_fnElement = [&](ElemBeginEvent &event) {
                schema.Fill(event.GetElementName(), run.m_oReport);
            };
            QVERIFY(run.Run(schema.GetText()));
            QProcess judge;
            judge.start(QStringLiteral("xmllint"),
                        { QStringLiteral("--noout"), QStringLiteral("--schema"), run.SchemaPath(), run.ReportPath() });
            QVERIFY2(judge.waitForFinished(), "xmllint is missing");
            const QByteArray told = "seed " + QByteArray::number(seed) + '\n' + judge.readAllStandardError()
                + schema.GetText().toUtf8() + '\n' + run.Bytes();
            QVERIFY2(run.m_oReport.GetOutcome().IsComplete() && judge.exitCode() == 0, told.constData());
            QVERIFY2(CountValues(ReadTemplate(QString::fromUtf8(run.Bytes()))) == schema.GetGiven(), told.constData());
        }
    }
};

QTEST_GUILESS_MAIN(TestJudgedReports)

#include "tst_judgedreports.moc"

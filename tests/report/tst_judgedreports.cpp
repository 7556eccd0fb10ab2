#include "support/reportrun.h"

#include <QProcess>
#include <QRandomGenerator>
#include <QtTest>

#include <map>
#include <set>

namespace {

constexpr int kReports = 300;
constexpr int kDepth = 3;

struct Kind
{
    const char *m_sType;
    const char *m_sFacets;
    QVariant m_oValue;
};

const std::vector<Kind> &Kinds()
{
    const QDateTime time(QDate(2026, 11, 25), QTime(7, 8, 9));
    static const std::vector<Kind> kinds {
        { "string", "", QStringLiteral("a <b> & c") },
        { "string", "<xs:enumeration value='up'/><xs:enumeration value='down'/>", QStringLiteral("down") },
        { "double", "<xs:minInclusive value='-1'/><xs:maxExclusive value='100'/>", 99.5 },
        { "integer", "<xs:enumeration value='1'/><xs:enumeration value='2'/>", 2 },
        { "short", "<xs:minExclusive value='-5'/>", -4 },
        { "boolean", "", true },
        { "dateTime", "", time },
        { "string", "<xs:maxLength value='3'/><xs:pattern value='[a-c]+'/>", QStringLiteral("cab") },
    };
    return kinds;
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
        const auto most = m_hMost.find(name);
        if (most != m_hMost.end() && place.GetIndex() == 0 && m_lRepeated.insert(place.GetText()).second) {
            report.SetElementMaxOccurs(name, most->second); // and comes again
            return;
        }
        for (const ReportPlace::Step &step : place.GetSteps()) {
            if (m_lOut.count(step.m_sName) != 0) {
                return;
            }
        }
        if (m_lAttributes.count(name) != 0) {
            report.SetAttributeValue(QLatin1Char('a') + name, QStringLiteral("x\"y"));
            ++m_iGiven;
        }
        const auto kind = m_hLeaves.find(name);
        if (kind == m_hLeaves.end()) {
            report.KeepCurrentElement();
            return;
        }
        Give(report, Kinds()[kind->second].m_oValue);
        ++m_iGiven;
    }

    int GetGiven() const { return m_iGiven; }

private:
    int Below(int bound) { return m_oRandom.bounded(bound); }

    static void Give(XmlCreateReport &report, const QVariant &value)
    {
        switch (value.userType()) {
        case QMetaType::Double:
            return report.SetXmlValue(value.toDouble());
        case QMetaType::Int:
            return report.SetXmlValue(value.toInt());
        case QMetaType::Bool:
            return report.SetXmlValue(value.toBool());
        case QMetaType::QDateTime:
            return report.SetXmlValue(value.toDateTime());
        default:
            return report.SetXmlValue(value.toString());
        }
    }

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
            m_lOut.insert(LastName());
        }
        return QStringLiteral("<xs:choice>%1</xs:choice>").arg(members);
    }

    QString Leaf(bool takesLimits)
    {
        const int kind = Below(static_cast<int>(Kinds().size()));
        const Kind &traits = Kinds()[static_cast<std::size_t>(kind)];
        const QString name = NewName();
        m_hLeaves[name] = static_cast<std::size_t>(kind);
        const QString limits = takesLimits ? Limits(name) : QString();
        const QString start = QStringLiteral("<xs:element name='%1'%2").arg(name, limits);
        const bool hasFacets = traits.m_sFacets[0] != '\0';
        if (hasFacets) {
            m_sTypes += QStringLiteral("<xs:simpleType name='T%1'><xs:restriction base='xs:%2'>%3</xs:restriction>"
                                       "</xs:simpleType>")
                            .arg(name, QLatin1String(traits.m_sType), QLatin1String(traits.m_sFacets));
            return start + QStringLiteral(" type='T%1'/>").arg(name);
        }
        const QString type = QStringLiteral("xs:") + QLatin1String(traits.m_sType);
        if (Below(3) > 0) {
            return start + QStringLiteral(" type='%1'/>").arg(type);
        }
        return start
            + QStringLiteral("><xs:complexType><xs:simpleContent><xs:extension base='%1'>%2</xs:extension>"
                             "</xs:simpleContent></xs:complexType></xs:element>")
                  .arg(type, AttributeOf(name));
    }

    /// A container with a type of its own would stand flat in a named type.
    QString Container(int depth, bool isInType)
    {
        const QString name = NewName();
        const QString start = QStringLiteral("<xs:element name='%1'%2").arg(name, Limits(name));
        const bool isNamed = isInType || Below(2) == 0;
        const QString type = QStringLiteral("<xs:sequence>%1</xs:sequence>%2")
                                 .arg(Content(depth + 1, isNamed), Below(2) == 0 ? AttributeOf(name) : QString());
        if (!isNamed) {
            return start + QStringLiteral("><xs:complexType>%1</xs:complexType></xs:element>").arg(type);
        }
        m_sTypes += QStringLiteral("<xs:complexType name='T%1'>%2</xs:complexType>").arg(name, type);
        return start + QStringLiteral(" type='T%1'/>").arg(name);
    }

    QString AttributeOf(const QString &name)
    {
        const bool isRequired = Below(2) == 0;
        if (isRequired || Below(2) == 0) {
            m_lAttributes.insert(name);
        }
        return QStringLiteral("<xs:attribute name='a%1' type='xs:string' %2/>")
            .arg(name, QLatin1String(isRequired ? "use='required'" : ""));
    }

    QString Limits(const QString &name)
    {
        QString limits;
        if (Below(3) == 0) {
            limits += QLatin1String(" minOccurs='0'");
            if (Below(2) == 0) {
                m_lOut.insert(name);
            }
        }
        if (Below(4) == 0) {
            m_hMost[name] = 2 + Below(2);
            limits += QLatin1String(Below(2) == 0 ? " maxOccurs='3'" : " maxOccurs='unbounded'");
        }
        return limits;
    }

    QString NewName() { return QStringLiteral("n%1").arg(++m_iNames); }
    QString LastName() const { return QStringLiteral("n%1").arg(m_iNames); }

    QRandomGenerator m_oRandom;
    int m_iNames = 0;
    int m_iGiven = 0;
    std::map<QString, std::size_t> m_hLeaves;
    std::map<QString, int> m_hMost;
    std::set<QString> m_lAttributes;
    std::set<QString> m_lOut;
    std::set<QString> m_lRepeated;
    QString m_sTypes;
    QString m_sRoot;
};

int CountValues(const QDomElement &element)
{
    const bool isLeaf = element.firstChildElement().isNull() && !element.text().isEmpty();
    const QString own = QLatin1Char('a') + element.tagName();
    int count = (isLeaf ? 1 : 0) + (element.hasAttribute(own) ? 1 : 0);
    for (QDomElement child = element.firstChildElement(); !child.isNull(); child = child.nextSiblingElement()) {
        count += CountValues(child);
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
            QDomDocument report;
            QVERIFY(report.setContent(run.Bytes()));
            QVERIFY2(CountValues(report.documentElement()) == schema.GetGiven(), told.constData());
        }
    }
};

QTEST_GUILESS_MAIN(TestJudgedReports)

#include "tst_judgedreports.moc"

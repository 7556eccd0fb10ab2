#include "support/controlrun.h"

#include "control/reportdata.h"
#include "events/xmlevent.h"

#include <QtTest>

namespace {

/// Gives an announced element the attributes that the case wants, so that any template can be had.
using Decorate = std::function<void(QDomElement &)>;

/// A receiver whose templates can be changed.
template <typename Receiver>
class Watched : public Receiver
{
public:
    using Receiver::Receiver;

    Decorate m_fnDecorate;

    void XmlUpdate(XmlEvent *event) override
    {
        if (event->GetType() != XmlEvent::EVENT_ELEM_BEGIN || !m_fnDecorate) {
            Receiver::XmlUpdate(event);
            return;
        }
        QDomElement element = static_cast<ElemBeginEvent *>(event)->GetElementNode().toElement();
        m_fnDecorate(element);
        QStringList names;
        for (int i = 0; i < element.attributes().count(); ++i) {
            names << element.attributes().item(i).nodeName();
        }
        names.sort();
        QXmlAttributes attributes;
        for (const QString &name : std::as_const(names)) {
            attributes.append(name, QString(), QString(), element.attribute(name));
        }
        ElemBeginEvent decorated(element, element.tagName(), attributes, QString());
        Receiver::XmlUpdate(&decorated);
    }
};

/// An item from "name=fixed text" or "name:t text", ":d double", ":b bool", ":l long" (explicit), with "^exponent",
/// "*occurrences" and "@unit" behind.
struct Item
{
    explicit Item(QString text)
    {
        const auto cut = [&text](QLatin1Char mark) {
            QString tail = text.section(mark, 1);
            text = text.section(mark, 0, 0);
            return tail;
        };
        m_sUnit = cut(QLatin1Char('@'));
        m_iMaxOccurs = qMax(1, cut(QLatin1Char('*')).toInt());
        m_iExponent = cut(QLatin1Char('^')).toInt();
        m_bExplicit = !text.contains(QLatin1Char('='));
        m_sValue = cut(QLatin1Char(m_bExplicit ? ':' : '='));
        m_sName = text;
    }

    template <typename Use>
    void Explicitly(Use use) const
    {
        const QString value = m_sValue.mid(1);
        switch (m_sValue.at(0).unicode()) {
        case 'd':
            return use(value.toDouble());
        case 'b':
            return use(value == QLatin1String("true"));
        case 'l':
            return use(value.toLong());
        default:
            return use(value);
        }
    }

    void AddTo(VCReporting &control) const
    {
        if (!m_bExplicit) {
            return control.AddReportData(m_sName, QString(), m_sValue, m_iMaxOccurs, QString(), m_iExponent, m_sUnit);
        }
        Explicitly([&](auto value) {
            control.AddExplicitReportData(m_sName, value, m_iMaxOccurs, QString(), m_iExponent, m_sUnit);
        });
    }

    QString m_sName;
    QString m_sValue;
    QString m_sUnit;
    bool m_bExplicit;
    int m_iMaxOccurs;
    int m_iExponent;
};

template <typename Receiver>
void AddItems(Receiver &receiver, const QString &items)
{
    for (const QString &item : items.split(QStringLiteral("; "), Qt::SkipEmptyParts)) {
        Item(item).AddTo(receiver);
    }
}

// What an item or a list of them makes of <A>, the root's only element, with these attributes in its template.
constexpr const char *kElementRows[][4] = {
    { "a number", "type=double", "A=12.5^1", "<A>1.25</A>" },
    { "a number cut for an integer", "type=integer", "A=-3.9", "<A>-3</A>" },
    { "a number as text", "type=string", "A=12.50^1", "<A>12.50</A>" },
    { "a number beyond an integer", "type=integer", "A=3e9", "<A type='integer'/>" },
    { "the same as text", "type=string", "A=3e9", "<A>3e9</A>" },
    { "no number at all", "type=string", "A=nan", "<A>nan</A>" },
    { "a text as a date", "type=dateTime", "A=2024-05-06T07:08:09", "<A>2024-05-06T07:08:09</A>" },
    { "an unreadable date", "type=dateTime", "A=soon", "<A/>" },
    { "a number outside its bounds", "type=double maxInclusive=5", "A=6", "<A maxInclusive='5' type='double'/>" },
    { "an item without a source", "type=string", "A=", "<A/>" },
    { "a given text", "type=string", "A:tgiven", "<A>given</A>" },
    { "a given text as a date", "type=dateTime", "A:t2024-05-06T07:08:09", "<A>2024-05-06T07:08:09</A>" },
    { "a given double", "type=double", "A:d2.5^1", "<A>0.25</A>" },
    { "a given double as text", "type=string", "A:d250^2", "<A>2.5</A>" },
    { "a given bool", "type=boolean", "A:btrue", "<A>true</A>" },
    { "a given bool for a text", "type=string", "A:btrue", "<A type='string'/>" },
    { "a given long is not scaled", "type=integer", "A:l7^2", "<A>7</A>" },
    { "a given long for a text", "type=string", "A:l7", "<A/>" },
    { "a long beyond an int takes its place", "type=integer Unit=string", "A:l3000000000; A=5; Unit=x",
      "<A Unit='x' type='integer'/>" },
    { "the first of two", "type=string", "A=one; A=two", "<A>one</A>" },
    { "nobody knows it", "type=string", "B=5; /A=5; R/B=5", "<A type='string'/>" },
    { "attributes", "type=double x=integer y=xs:string z=xs:dateTime", "A=1; y=5; x=-2.9; z=2024-05-06T07:08:09",
      "<A x='-2' y='5' z='2024-05-06T07:08:09'>1</A>" },
    { "an attribute ahead of its element", "type=double x=xs:string", "x=v; A=1", "<A type='double' x='v'/>" },
    { "a given double for an attribute", "type=string x=xs:double", "x:d25^1", "<A type='string' x='2.5'/>" },
    { "a number beyond an integer attribute", "type=string x=xs:integer", "x=1e10",
      "<A type='string' x='xs:integer'/>" },
    { "a unit", "type=double Unit=xs:string", "A=1@kHz", "<A Unit='kHz'>1</A>" },
    { "a unit that is not asked for", "type=double", "A=1@kHz", "<A>1</A>" },
    { "no unit", "type=double Unit=xs:string", "A=1", "<A Unit='xs:string'>1</A>" },
    { "the unit of the last that matched", "type=boolean Unit=xs:string", "A:btrue@m; A:btrue@s",
      "<A Unit='s'>true</A>" },
    { "a default goes", "type=double default=3", "A=1", "<A>1</A>" },
    { "a default stays", "type=double default=3", "B=1", "<A default='3' type='double'/>" },
    { "the first stranger stamps", "type=double DateTime=xs:dateTime", "B=1; A=1",
      "<A DateTime='now' type='double'/>" },
    { "the element's item comes first", "type=double DFDateTime=xs:dateTime", "A=1; B=1", "<A DFDateTime='now'>1</A>" },
    { "a stamp goes first", "type=double DateTime=xs:dateTime", "A=1; DateTime=2024-05-06T07:08:09",
      "<A DateTime='now'>1</A>" },
    { "the first item may fill it", "type=double DateTime=xs:dateTime", "DateTime=2024-05-06T07:08:09; B=1",
      "<A DateTime='2024-05-06T07:08:09' type='double'/>" },
    { "behind a stamp all is out of reach", "type=double DFDateTime=xs:dateTime Unit=xs:string", "Unit=u",
      "<A DFDateTime='now' Unit='xs:string' type='double'/>" },
    { "an item by the name of a default", "type=double default=xs:string", "default=d; B=1",
      "<A default='d' type='double'/>" },
};

// The same for a root with other content; "deleted" lets each value be used once.
constexpr const char *kBool = "xs:boolean";
constexpr const char *kText = "xs:string";
struct ListRow
{
    const char *m_sName;
    const char *m_sParents; // each with one L
    const char *m_sType;
    bool m_bDeleteAfterUse;
    const char *m_sItems;
    const char *m_sReport;
};
constexpr ListRow kListRows[] = {
    { "a name fits below every parent", "ST", kText, false, "L=v", "<S><L>v</L></S><T><L>v</L></T>" },
    { "a name is used up", "ST", kText, true, "L=v; L=w", "<S><L>v</L></S><T><L type='string'/></T>" },
    { "parent and child", "ST", kText, false, "T/L=v", "<S><L type='string'/></S><T><L>v</L></T>" },
    { "they are used up by their whole name", "STS", kText, true, "S/L=v; L=w",
      "<S><L>v</L></S><T><L>w</L></T><S><L type='string'/></S>" },
    { "the root's parent is the document", "S", kText, true, "#document/R=v; L=v", "<S><L>v</L></S>" },
    { "the last item looked at decides what goes: a pair", "ST", kBool, true, "L:btrue; S/L=v",
      "<S><L>true</L></S><T><L>true</L></T>" },
    { "the last item looked at decides: a stranger", "SS", kBool, true, "S/L:btrue; Z=v",
      "<S><L>true</L></S><S><L>true</L></S>" },
    { "three of one", "S", kText, false, "L=v*3", "<S><L>v</L><L>v</L><L>v</L></S>" },
    { "four are too many", "S", kText, false, "L=v*4", "<S><L>v</L></S>" },
};

} // namespace

class TestValueResolution : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void FillsOneElement_data();
    void FillsOneElement();
    void ServesParentsAndLists_data();
    void ServesParentsAndLists();
    void StampsTimeElements();
    void TracesAUnitThatIsNoText();

private:
    /// Runs a control over `items` and gives what stands below the root.
    static QString Report(const ControlRun &run, VCReporting &control, const QString &items)
    {
        AddItems(control, items);
        return control.SlotToReport() ? run.LatestReport().remove(QStringLiteral("<R>")).remove(QStringLiteral("</R>"))
                                      : QStringLiteral("failed");
    }
    static Decorate SetAttributes(const QString &attributes)
    {
        return [attributes](QDomElement &element) {
            if (element.hasAttribute(QStringLiteral("type"))) {
                element.removeAttribute(QStringLiteral("type"));
                for (const QString &attribute : attributes.split(QLatin1Char(' '))) {
                    element.setAttribute(attribute.section(QLatin1Char('='), 0, 0),
                                         attribute.section(QLatin1Char('='), 1));
                }
            }
        };
    }
};

using WatchedControl = Watched<VCReporting>;
static std::unique_ptr<WatchedControl> MakeWatched(const ControlRun &run, bool deleteAfterUse = false)
{
    return std::make_unique<WatchedControl>(run.SchemaPath(), run.ReportFolder(), nullptr, true, nullptr,
                                            deleteAfterUse, QPixmap());
}

void TestValueResolution::FillsOneElement_data()
{
    QTest::addColumn<int>("row");
    for (int i = 0; i < static_cast<int>(std::size(kElementRows)); ++i) {
        QTest::newRow(kElementRows[i][0]) << i;
    }
}

void TestValueResolution::FillsOneElement()
{
    QFETCH(int, row);
    const ControlRun run;
    const auto control = MakeWatched(run);
    control->m_fnDecorate = SetAttributes(QString::fromUtf8(kElementRows[row][1]));
    QCOMPARE(Report(run, *control, QString::fromUtf8(kElementRows[row][2])), QString::fromUtf8(kElementRows[row][3]));
}

void TestValueResolution::ServesParentsAndLists_data()
{
    QTest::addColumn<int>("index");
    for (int i = 0; i < static_cast<int>(std::size(kListRows)); ++i) {
        QTest::newRow(kListRows[i].m_sName) << i;
    }
}

void TestValueResolution::ServesParentsAndLists()
{
    QFETCH(int, index);
    const ListRow &row = kListRows[index];
    QString content;
    for (const char *parent = row.m_sParents; *parent != '\0'; ++parent) {
        content += QStringLiteral("<xs:element name='%1'><xs:complexType><xs:sequence><xs:element name='L' type='%2' "
                                  "maxOccurs='3'/></xs:sequence></xs:complexType></xs:element>")
                       .arg(QLatin1Char(*parent))
                       .arg(QLatin1String(row.m_sType));
    }
    const ControlRun run(content);
    const auto control = run.MakeControl(row.m_bDeleteAfterUse);
    QCOMPARE(Report(run, *control, QString::fromUtf8(row.m_sItems)), QString::fromUtf8(row.m_sReport));
}

void TestValueResolution::StampsTimeElements()
{
    const ControlRun run(QStringLiteral("<xs:element name='DateTime' type='xs:dateTime'/>"
                                        "<xs:element name='DFDateTime' type='xs:dateTime'/>"));
    const auto control = run.MakeControl();
    QCOMPARE(Report(run, *control, QString()), QStringLiteral("<DateTime>now</DateTime><DFDateTime>now</DFDateTime>"));
    QCOMPARE(Report(run, *control, QStringLiteral("DateTime=2024-05-06T07:08:09")),
             QStringLiteral("<DateTime>2024-05-06T07:08:09</DateTime><DFDateTime>now</DFDateTime>"));
}

void TestValueResolution::TracesAUnitThatIsNoText()
{
    const ControlRun run;
    const auto control = MakeWatched(run);
    control->m_fnDecorate = SetAttributes(QStringLiteral("type=double Unit=xs:double"));
    const TraceCapture log;
    QCOMPARE(Report(run, *control, QStringLiteral("A=1@m")), QStringLiteral("<A Unit='xs:double'>1</A>"));
    QVERIFY(TraceCapture::Lines().contains(QStringLiteral(
        "VCReporting::XmlUpdate|ErrorEvent|ErrorID == CURRENT_TYPE_IS_NOT_STRING: m_iIndex is not valid.")));
}

QTEST_MAIN(TestValueResolution)
#include "tst_valueresolution.moc"

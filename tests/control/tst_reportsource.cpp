#include "support/controlrun.h"

#include "events/xmlevent.h"
#include "report/reportoutcome.h"

#include <QApplication>
#include <QDialog>
#include <QLabel>
#include <QPushButton>
#include <QTextEdit>
#include <QtTest>

#include <stdexcept>

namespace {

constexpr const char *kTexts = "<xs:element name='A' type='xs:string' maxOccurs='3'/>";
constexpr const char *kKinds = "<xs:element name='D' type='xs:double'/><xs:element name='I' type='xs:integer'/>"
                               "<xs:element name='T' type='xs:string'/><xs:element name='B' type='xs:boolean'/>"
                               "<xs:element name='W' type='xs:dateTime'/><xs:element name='C' type='xs:time'/>";
constexpr const char *kPairs = "<xs:element name='S'><xs:complexType><xs:sequence><xs:element name='L' "
                               "type='xs:string'/></xs:sequence></xs:complexType></xs:element><xs:element name='T'>"
                               "<xs:complexType><xs:sequence><xs:element name='L' type='xs:string'/></xs:sequence>"
                               "</xs:complexType></xs:element>";
constexpr const char *kSpectra =
    "<xs:element name='S' minOccurs='0' maxOccurs='unbounded'><xs:complexType><xs:sequence>"
    "<xs:element name='B' type='xs:string' minOccurs='0' maxOccurs='9'/></xs:sequence>"
    "<xs:attribute name='Id' type='xs:string'/></xs:complexType></xs:element>";
// Nothing in P decides on it: X/L takes it out, and the walk goes back to X, and passes over Y and Z twice.
constexpr const char *kBack =
    "<xs:element name='P' minOccurs='0'><xs:complexType><xs:sequence><xs:element name='Q'><xs:complexType/>"
    "</xs:element></xs:sequence></xs:complexType></xs:element><xs:element name='X'><xs:complexType><xs:sequence>"
    "<xs:element name='L' type='xs:string'/></xs:sequence></xs:complexType></xs:element>"
    "<xs:element name='Y' type='xs:string'/><xs:element name='Z' type='xs:string'/>";

QVariant Text(const ReportPlace &place)
{
    return place.GetText();
}

[[noreturn]] int Throw(const ReportPlace &)
{
    throw std::runtime_error("torn");
}

/// Adds sources and containers from "name*count=value". The value is one of the words below, or a text of an item
/// behind "item"; without one it is a container. The count may be "S": the S around it, from 1.
class Sources
{
public:
    Sources(VCReporting &control, const QString &items)
        : m_Control(control)
    {
        for (const QString &item : items.split(QStringLiteral("; "), Qt::SkipEmptyParts)) {
            const QString name = item.section(QLatin1Char('='), 0, 0);
            AddOne(name.section(QLatin1Char('*'), 0, 0), name.section(QLatin1Char('*'), 1),
                   item.section(QLatin1Char('='), 1));
        }
    }
    int m_iAsked = 0;

private:
    void AddOne(const QString &name, const QString &count, const QString &value)
    {
        const ReportSource source = [this, value](const ReportPlace &place) { return GetValue(value, place); };
        const ReportCount counting = [count](const ReportPlace &place) {
            const int nested = 1 + place.GetIndex(QStringLiteral("S"));
            return count == QLatin1String("throw") ? Throw(place)
                : count == QLatin1String("S")      ? nested
                                                   : count.toInt();
        };
        const int exponent = value == QLatin1String("2500") ? 3 : 0;
        if (value.isEmpty()) {
            m_Control.AddReportContainer(name, counting);
        } else if (value.startsWith(QLatin1String("item"))) {
            m_Control.AddExplicitReportData(name, value, 1, QString(), 0, QString());
        } else if (count.isEmpty()) {
            m_Control.AddReportSource(name, source, 1, QString(), exponent, QString());
        } else {
            m_Control.AddReportSource(name, source, counting, QString(), exponent, QString());
        }
    }
    QVariant GetValue(const QString &value, const ReportPlace &place)
    {
        static const QHash<QString, QVariant> values {
            { QStringLiteral("none"), QVariant() },
            { QStringLiteral("list"), QVariantList() },
            { QStringLiteral("true"), true },
            { QStringLiteral("2500"), 2500 },
            { QStringLiteral("-3.9"), -3.9 },
            { QStringLiteral("1234567890123"), 1234567890123LL },
            { QStringLiteral("when"), QDateTime(QDate(2024, 5, 6), QTime(7, 8, 9)) },
            { QStringLiteral("clock"), QTime(7, 8, 9) },
        };
        ++m_iAsked;
        if (value == QLatin1String("clear")) {
            m_Control.ClearReportData();
        }
        return value == QLatin1String("throw") ? Throw(place) : values.value(value, place.GetText());
    }

    VCReporting &m_Control;
};

struct Row
{
    const char *m_sName;
    const char *m_sSchema;
    bool m_bValid;
    const char *m_sItems;
    int m_iAsked;
    const char *m_sReport;
};

constexpr Row kRows[] = {
    { "each repetition has its own", kTexts, false, "A*3=place", 3, "<A>/R/A</A><A>/R/A[2]</A><A>/R/A[3]</A>" },
    { "nested, with attributes", kSpectra, true, "S*2; B*S=place; Id=place", 5,
      "<S Id='/R/S/@Id'><B>/R/S/B</B></S><S Id='/R/S[2]/@Id'><B>/R/S[2]/B</B><B>/R/S[2]/B[2]</B></S>" },
    { "every kind goes its way", kKinds, false, "D=2500; I=-3.9; T=1234567890123; B=true; W=when; C=clock", 6,
      "<D>2.5</D><I>-3</I><T>1234567890123</T><B>true</B><W>2024-05-06T07:08:09</W><C>07:08:09</C>" },
    { "a bool is no text", kTexts, false, "A=true", 1, "<A type='string'/>" },
    { "nothing is no value", kTexts, false, "A*2=none", 2, "<A type='string'/><A type='string'/>" },
    { "nor is what no report can hold", kTexts, false, "A=list", 1, "<A type='string'/>" },
    { "one behind it may know more", kTexts, false, "A=none; A=item", 1, "<A>item</A>" },
    { "parent and child", kPairs, false, "T/L=place", 1, "<S><L type='string'/></S><T><L>/R/T/L</L></T>" },
    { "nobody is asked again", kSpectra, false, "S*2; B=place; Id=place", 4,
      "<S Id='/R/S/@Id'><B>/R/S/B</B></S><S Id='/R/S[2]/@Id'><B>/R/S[2]/B</B></S>" },
    { "nor where the walk goes back", kBack, false, "L=none; Y=place; Z=place", 3,
      "<X><L type='string'/></X><Y>/R/Y</Y><Z>/R/Z</Z>" },
    { "an empty container stays", kSpectra, true, "S*2", 0, "<S/><S/>" },
    { "a container that isn't there", kSpectra, true, "S*-1; B=place", 0, "" },
    { "a source that throws", kTexts, false, "A=throw", 1, "<A type='string'/>" },
    { "a count that throws", kTexts, false, "A*throw=place", 1, "<A>/R/A</A>" },
    { "a source that empties the list", kTexts, false, "A*3=clear", 1,
      "<A>/R/A</A><A type='string'/><A type='string'/>" },
};

/// The outcome in a few words.
QString Words(const ReportOutcome &outcome)
{
    static const char *const states[] = { "open", "saved", "not saved", "dropped" };
    QString words = QLatin1String(states[static_cast<int>(outcome.GetState())]);
    for (const ReportOutcome::RefusedValue &refused : outcome.GetRefusedValues()) {
        words += QStringLiteral(" %1 %2 %3").arg(refused.m_sPlace, refused.m_sValue, QString::number(refused.m_iError));
    }
    return words + QLatin1String(outcome.IsSchemaRead() ? "" : " unread");
}

/// Does something with each element's node ahead of the control, as an own receiver may.
class Hooked : public VCReporting
{
public:
    using VCReporting::VCReporting;
    void XmlUpdate(XmlEvent *event) override
    {
        if (event->GetType() == XmlEvent::EVENT_ELEM_BEGIN) {
            m_fnHook(static_cast<ElemBeginEvent *>(event)->GetElementNode());
        }
        VCReporting::XmlUpdate(event);
    }
    std::function<void(const QDomNode &)> m_fnHook;
};

/// A control without a button, what its signals say, and, with the folder missing, no way to save.
struct Desk
{
    explicit Desk(const QString &schema)
        : m_oRun(schema)
        , m_pControl(std::make_unique<Hooked>(m_oRun.SchemaPath(), m_oRun.ReportFolder(), nullptr, false, nullptr,
                                              false, QPixmap()))
    {
        m_pControl->m_fnHook = [](const QDomNode &) {};
        QObject::connect(m_pControl.get(), &VCReporting::ReportSuccessful,
                         [this] { m_sHeard += QStringLiteral(" good"); });
        QObject::connect(m_pControl.get(), &VCReporting::ReportNotSuccessful,
                         [this] { m_sHeard += QStringLiteral(" bad"); });
        QObject::connect(m_pControl.get(), &VCReporting::ReportFinished, [this](const ReportOutcome &outcome) {
            const bool isExplained =
                outcome.GetSaveError().isEmpty() == (outcome.GetState() != ReportOutcome::State::NotSaved);
            m_sHeard += QLatin1Char(' ') + (isExplained ? Words(outcome) : QStringLiteral("no reason"));
        });
    }
    QDialog *Dialog() const
    {
        for (QWidget *widget : QApplication::topLevelWidgets()) {
            if (widget->inherits("CommentDialogImpl") && widget->isVisible()) {
                return qobject_cast<QDialog *>(widget);
            }
        }
        return nullptr;
    }

    ControlRun m_oRun;
    QString m_sHeard;
    std::unique_ptr<Hooked> m_pControl;
};

} // namespace

class TestReportSource : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void FillsByPlace_data();
    void FillsByPlace();
    void LeavesTheListWithItsReport();
    void MayEndTheControl();
    void MayChangeTheDocument();
    void TellsTheOutcome_data();
    void TellsTheOutcome();
    void TellsOfAnException();
    void TellsTheOutcomeAtTheDialogsEnd();
    void KeepsAnUnsavedDialog();
};

void TestReportSource::FillsByPlace_data()
{
    QTest::addColumn<int>("index");
    for (int i = 0; i < static_cast<int>(std::size(kRows)); ++i) {
        QTest::newRow(kRows[i].m_sName) << i;
    }
}

void TestReportSource::FillsByPlace()
{
    QFETCH(int, index);
    const Row &row = kRows[index];
    const ControlRun run(QString::fromUtf8(row.m_sSchema));
    const auto control = run.MakeControl();
    control->SetValidOutput(row.m_bValid);
    Sources sources(*control, QString::fromUtf8(row.m_sItems));
    QVERIFY(control->SlotToReport());
    const QString report = QStringLiteral("<R>%1</R>").arg(QString::fromUtf8(row.m_sReport));
    QCOMPARE(run.LatestReport(), *row.m_sReport == '\0' ? QStringLiteral("<R/>") : report);
    QCOMPARE(sources.m_iAsked, row.m_iAsked);
}

void TestReportSource::LeavesTheListWithItsReport()
{
    const ControlRun run(QString::fromUtf8(kTexts));
    const auto control = run.MakeControl(true);
    Sources sources(*control, QStringLiteral("A*2=place; A=item"));
    QVERIFY(control->SlotToReport());
    QCOMPARE(run.LatestReport(), QStringLiteral("<R><A>/R/A</A><A>/R/A[2]</A></R>"));
    QVERIFY(control->SlotToReport());
    QCOMPARE(run.LatestReport(), QStringLiteral("<R><A type='string'/></R>"));
}

void TestReportSource::MayEndTheControl()
{
    for (const bool isCount : { true, false }) {
        const ControlRun run(QString::fromUtf8(kTexts));
        VCReporting *control = run.MakeControl().release();
        const auto end = [control](const ReportPlace &) {
            delete control;
            return 1;
        };
        control->AddReportSource(QStringLiteral("A"), isCount ? ReportSource(Text) : end, isCount ? end : ReportCount(),
                                 QString(), 0, QString());
        QVERIFY(!control->SlotToReport());
        QVERIFY(run.Reports().isEmpty());
    }
}

void TestReportSource::MayChangeTheDocument()
{
    Desk desk(QString::fromUtf8(kPairs));
    QDomNode node;
    desk.m_pControl->m_fnHook = [&node](const QDomNode &announced) { node = announced; };
    const auto removing = [&node](const ReportPlace &place) {
        QDomNode parent = node.parentNode();
        parent.parentNode().removeChild(parent);
        return Text(place);
    };
    desk.m_pControl->AddReportSource(QStringLiteral("L"), removing, 1, QString(), 0, QString());
    QVERIFY(desk.m_pControl->SlotToReport());
    QVERIFY(desk.m_oRun.LatestReport().startsWith(QLatin1String("<R")));
}

void TestReportSource::TellsTheOutcome_data()
{
    QTest::addColumn<QString>("schema");
    QTest::addColumn<int>("count");
    QTest::addColumn<QString>("folder");
    QTest::addColumn<QString>("heard");
    const QString texts = QString::fromUtf8(kTexts);
    QTest::newRow("saved") << texts << 2 << "reports"
                           << " good saved";
    QTest::newRow("a count that the schema refuses") << texts << 4 << "reports"
                                                     << " good saved /R/A 4 16";
    QTest::newRow("no times") << texts << 0 << "reports"
                              << " good saved /R/A 0 16";
    QTest::newRow("no folder") << texts << 1 << ""
                               << " good not saved";
    QTest::newRow("no schema") << "<" << 1 << "reports"
                               << " bad saved unread";
}

void TestReportSource::TellsTheOutcome()
{
    QFETCH(QString, schema);
    QFETCH(int, count);
    QFETCH(QString, folder);
    const Desk desk(schema);
    desk.m_pControl->AddReportSource(QStringLiteral("A"), Text, count, QString(), 0, QString());
    desk.m_pControl->AddReportSource(QStringLiteral("A"), nullptr, count, QString(), 0, QString()); // not added
    if (folder.isEmpty()) {
        QVERIFY(QDir(desk.m_oRun.ReportFolder()).removeRecursively());
    }
    desk.m_pControl->SlotToReport();
    QTEST(desk.m_sHeard, "heard");
    // A wrong suffix begins no report.
    desk.m_pControl->SetSchema(QStringLiteral("a.xml"));
    QVERIFY(!desk.m_pControl->SlotToReport());
    QTEST(desk.m_sHeard, "heard");
}

void TestReportSource::TellsOfAnException()
{
    const Desk desk(QString::fromUtf8(kTexts));
    desk.m_pControl->m_fnHook = [](const QDomNode &) { throw std::runtime_error("torn"); };
    QVERIFY_EXCEPTION_THROWN(desk.m_pControl->SlotToReport(), std::runtime_error);
    QCOMPARE(desk.m_sHeard, QStringLiteral(" not saved"));
}

void TestReportSource::TellsTheOutcomeAtTheDialogsEnd()
{
    Desk desk(QString::fromUtf8(kTexts));
    desk.m_pControl->SetShowCommentDialog(true);
    QVERIFY(desk.m_pControl->SlotToReport());
    QPointer<QDialog> first = desk.Dialog();
    QVERIFY(desk.m_pControl->SlotToReport());
    QCOMPARE(desk.m_sHeard, QStringLiteral(" good good"));
    first->findChild<QPushButton *>(QStringLiteral("m_pSaveButton"))->click();
    QCOMPARE(desk.m_sHeard, QStringLiteral(" good good saved"));
    desk.Dialog()->reject();
    QCOMPARE(desk.m_sHeard, QStringLiteral(" good good saved dropped"));
    QCOMPARE(desk.m_oRun.Reports().size(), 1);
    // One that ends in front of the signal waits for it; one that ends behind its control is heard by nobody.
    desk.m_sHeard.clear();
    const auto closing =
        connect(desk.m_pControl.get(), &VCReporting::ReportSuccessful, [&desk] { desk.Dialog()->close(); });
    QVERIFY(desk.m_pControl->SlotToReport());
    QCOMPARE(desk.m_sHeard, QStringLiteral(" good saved"));
    disconnect(closing);
    QVERIFY(desk.m_pControl->SlotToReport());
    desk.m_pControl.reset();
    desk.Dialog()->close();
    QCOMPARE(desk.m_sHeard, QStringLiteral(" good saved good"));
    QCOMPARE(desk.m_oRun.Reports().size(), 3);
}

void TestReportSource::KeepsAnUnsavedDialog()
{
    const Desk desk(QString::fromUtf8(kTexts));
    desk.m_pControl->SetShowCommentDialog(true);
    desk.m_pControl->SetKeepUnsavedDialog(true);
    QVERIFY(desk.m_pControl->SlotToReport());
    QVERIFY(QDir(desk.m_oRun.ReportFolder()).removeRecursively());
    QPointer<QDialog> dialog = desk.Dialog();
    auto *save = dialog->findChild<QPushButton *>(QStringLiteral("m_pSaveButton"));
    dialog->close();
    QVERIFY(dialog->isVisible());
    dialog->findChild<QTextEdit *>()->setPlainText(QStringLiteral("windy"));
    save->click();
    dialog->findChild<QPushButton *>(QStringLiteral("m_pNoCommentButton"))->click();
    QVERIFY(dialog->isVisible());
    QCOMPARE(desk.m_sHeard, QStringLiteral(" good"));
    QCOMPARE(dialog->findChild<QTextEdit *>()->toPlainText(), QStringLiteral("windy"));
    QVERIFY(
        dialog->findChild<QLabel *>(QStringLiteral("m_pFailureLabel"))->text().contains(QLatin1String("No such file")));
    QVERIFY(QDir().mkdir(desk.m_oRun.ReportFolder()));
    save->click();
    QVERIFY(dialog->isHidden());
    QCOMPARE(desk.m_sHeard, QStringLiteral(" good saved"));
    QCOMPARE(desk.m_oRun.LatestReport(), QStringLiteral("<R><A type='string'/><Comment>windy</Comment></R>"));
}

QTEST_MAIN(TestReportSource)
#include "tst_reportsource.moc"

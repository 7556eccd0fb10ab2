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

using Setup = void (*)(VCReporting &);

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
    "<xs:element name='B' type='xs:double' minOccurs='0' maxOccurs='9'/></xs:sequence>"
    "<xs:attribute name='Id' type='xs:string'/></xs:complexType></xs:element>";

int s_iAsked = 0; // how often the sources of a row were asked

void Add(VCReporting &control, const char *name, const ReportSource &source, int maxOccurs = 1, int exponent = 0)
{
    const ReportSource counting = [source](const ReportPlace &place) {
        ++s_iAsked;
        return source(place);
    };
    control.AddReportSource(QLatin1String(name), counting, maxOccurs, QString(), exponent, QString());
}

void AddText(VCReporting &control, const char *name, const char *text)
{
    control.AddExplicitReportData(QLatin1String(name), text, 1, QString(), 0, QString());
}

QVariant Text(const ReportPlace &place)
{
    return place.GetText();
}

ReportSource Is(const QVariant &value)
{
    return [value](const ReportPlace &) { return value; };
}

[[noreturn]] int Throw(const ReportPlace &)
{
    throw std::runtime_error("torn");
}

int BandsOf(const ReportPlace &place)
{
    return 2 - place.GetIndex(QStringLiteral("S"));
}

struct Row
{
    const char *m_sName;
    const char *m_sSchema;
    bool m_bValid;
    Setup m_fnSetup;
    int m_iAsked;
    const char *m_sReport;
};

const Row kRows[] = {
    { "each repetition has its own", kTexts, false, [](VCReporting &c) { Add(c, "A", Text, 3); }, 3,
      "<A>/R/A</A><A>/R/A[2]</A><A>/R/A[3]</A>" },
    { "nested, with attributes", kSpectra, true,
      [](VCReporting &c) {
          c.AddReportContainer(QStringLiteral("S"), 2);
          c.AddReportSource(
              QStringLiteral("B"),
              [](const ReportPlace &p) { return p.GetIndex(QStringLiteral("S")) * 10 + p.GetIndex(); }, BandsOf,
              QString(), 1, QString());
          Add(c, "Id", Text);
      },
      2, "<S Id='/R/S/@Id'><B>0</B><B>0.1</B></S><S Id='/R/S[2]/@Id'><B>1</B></S>" },
    { "every kind goes its way", kKinds, false,
      [](VCReporting &c) {
          Add(c, "D", Is(2500), 1, 3);
          Add(c, "I", Is(-3.9));
          Add(c, "T", Is(1234567890123LL));
          Add(c, "B", Is(true));
          Add(c, "W", Is(QDateTime(QDate(2024, 5, 6), QTime(7, 8, 9))));
          Add(c, "C", Is(QTime(7, 8, 9)));
      },
      6, "<D>2.5</D><I>-3</I><T>1234567890123</T><B>true</B><W>2024-05-06T07:08:09</W><C>07:08:09</C>" },
    { "a bool is no text", kTexts, false, [](VCReporting &c) { Add(c, "A", Is(true)); }, 1, "<A type='string'/>" },
    { "nothing is no value", kTexts, false, [](VCReporting &c) { Add(c, "A", Is(QVariant()), 2); }, 2,
      "<A type='string'/><A type='string'/>" },
    { "what no report can hold neither", kTexts, false, [](VCReporting &c) { Add(c, "A", Is(QVariantList())); }, 1,
      "<A type='string'/>" },
    { "a second item may know it", kTexts, false,
      [](VCReporting &c) {
          Add(c, "A", Is(QVariant()));
          AddText(c, "A", "v");
      },
      1, "<A>v</A>" },
    { "parent and child", kPairs, false, [](VCReporting &c) { Add(c, "T/L", Text); }, 1,
      "<S><L type='string'/></S><T><L>/R/T/L</L></T>" },
    { "a container announced again asks nobody again", kSpectra, false,
      [](VCReporting &c) {
          c.AddReportContainer(QStringLiteral("S"), 2);
          Add(c, "B", Is(1));
          Add(c, "Id", Text);
      },
      4, "<S Id='/R/S/@Id'><B>1</B></S><S Id='/R/S[2]/@Id'><B>1</B></S>" },
    { "an empty container stays", kSpectra, true, [](VCReporting &c) { c.AddReportContainer(QStringLiteral("S"), 2); },
      0, "<S/><S/>" },
    { "a container that stands 0 times", kSpectra, true,
      [](VCReporting &c) {
          c.AddReportContainer(QStringLiteral("S"), [](auto &) { return -1; });
          Add(c, "B", Is(1));
      },
      0, "" },
    { "a source that throws", kTexts, false, [](VCReporting &c) { Add(c, "A", Throw); }, 1, "<A type='string'/>" },
    { "a count that throws", kTexts, false,
      [](VCReporting &c) { c.AddReportSource(QStringLiteral("A"), Text, Throw, QString(), 0, QString()); }, 0,
      "<A>/R/A</A>" },
    { "a source that empties the list", kTexts, false,
      [](VCReporting &c) {
          Add(
              c, "A",
              [&c](auto &) {
                  c.ClearReportData();
                  return QVariant(2.5);
              },
              3);
      },
      1, "<A>2.5</A><A type='string'/><A type='string'/>" },
    { "no function", kTexts, false,
      [](VCReporting &c) {
          c.AddReportSource(QStringLiteral("A"), nullptr, 1, QString(), 0, QString());
          c.AddReportSource(QStringLiteral("A"), Text, ReportCount(), QString(), 0, QString());
      },
      0, "<A>/R/A</A>" },
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
    row.m_fnSetup(*control);
    s_iAsked = 0;
    QVERIFY(control->SlotToReport());
    const QString report = QStringLiteral("<R>%1</R>").arg(QString::fromUtf8(row.m_sReport));
    QCOMPARE(run.LatestReport(), *row.m_sReport == '\0' ? QStringLiteral("<R/>") : report);
    QCOMPARE(s_iAsked, row.m_iAsked);
}

void TestReportSource::LeavesTheListWithItsReport()
{
    const ControlRun run(QString::fromUtf8(kTexts));
    const auto control = run.MakeControl(true);
    Add(*control, "A", Text, 2);
    AddText(*control, "A", "plain, and used up with the first");
    AddText(*control, "B", "left");
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
    Add(*desk.m_pControl, "L", [&node](const ReportPlace &place) {
        QDomNode parent = node.parentNode();
        parent.parentNode().removeChild(parent);
        return Text(place);
    });
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
    Add(*desk.m_pControl, "A", Text, count);
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
    connect(desk.m_pControl.get(), &VCReporting::ReportSuccessful, desk.m_pControl.get(),
            [&desk] { desk.Dialog()->close(); });
    QVERIFY(desk.m_pControl->SlotToReport());
    QCOMPARE(desk.m_sHeard, QStringLiteral(" good saved"));
    disconnect(desk.m_pControl.get(), &VCReporting::ReportSuccessful, desk.m_pControl.get(), nullptr);
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

#include "support/desk.h"

#include <QLabel>
#include <QTextEdit>
#include <QtTest>

#include <stdexcept>

namespace {

constexpr const char *kTexts = "<t A max=3/>";
constexpr const char *kKinds = "<e D type=xs:double/><e I type=xs:integer/><t T/><e B type=xs:boolean/>"
                               "<e W type=xs:dateTime/><e C type=xs:time/>";
constexpr const char *kPairs = "<e S><c><q><t L/></q></c></e><e T><c><q><t L/></q></c></e>";
// Nothing in P decides on it: X/L takes it out, and the walk goes back to X, and passes over Y and Z twice.
constexpr const char *kBack = "<e P min=0><c><q><e Q><c/></e></q></c></e><e X><c><q><t L/></q></c></e><t Y/><t Z/>";
constexpr const char *kSpectra = "<e S min=0 max=unbounded><c><q><t B min=0 max=9/></q><a Id type=xs:string/></c></e>";

QVariant Text(const ReportPlace &place)
{
    return place.GetText();
}

[[noreturn]] int Throw(const ReportPlace &)
{
    throw std::runtime_error("torn");
}

int GetCount(const QString &word, const ReportPlace &place)
{
    const int nested = 1 + place.GetIndex(QStringLiteral("S"));
    return word == QLatin1String("throw") ? Throw(place) : word == QLatin1String("S") ? nested : word.toInt();
}

QVariant GetValue(const QString &word, const ReportPlace &place)
{
    static const QHash<QString, QVariant> values {
        { QStringLiteral("none"), QVariant() },
        { QStringLiteral("list"), QVariantList() },
        { QStringLiteral("true"), true },
        { QStringLiteral("json"), QJsonValue(2.5) },
        { QStringLiteral("null"), QJsonValue() },
        { QStringLiteral("byte"), QVariant::fromValue(quint8(200)) },
        { QStringLiteral("2500"), 2500 },
        { QStringLiteral("-3.9"), -3.9 },
        { QStringLiteral("1234567890123"), 1234567890123LL },
        { QStringLiteral("2^53+1"), 9007199254740993LL },
        { QStringLiteral("when"), QDateTime(QDate(2024, 5, 6), QTime(7, 8, 9)) },
        { QStringLiteral("clock"), QTime(7, 8, 9) },
    };
    return word == QLatin1String("throw") ? Throw(place) : values.value(word, place.GetText());
}

/// Adds sources and containers from "name*count=value; ...", and counts how often they are asked. The value is a word
/// of GetValue(), or a text of an item behind "item"; without one it is a container. The count may be "S": the S around
/// it, from 1. "valid" is the mode.
void AddSources(VCReporting &control, const QString &items, int &asked)
{
    for (const QString &item : items.split(QStringLiteral("; "))) {
        const QString name = item.section(QRegularExpression(QStringLiteral("[*=]")), 0, 0);
        const QString count = item.section(QLatin1Char('='), 0, 0).section(QLatin1Char('*'), 1);
        const QString value = item.section(QLatin1Char('='), 1);
        const ReportCount counting = [count](const ReportPlace &place) {
            return count.isEmpty() ? 1 : GetCount(count, place);
        };
        if (name == QLatin1String("valid")) {
            control.SetValidOutput(true);
        } else if (value.isEmpty()) {
            control.AddReportContainer(name, counting);
        } else if (value == QLatin1String("item")) {
            control.AddExplicitReportData(name, value, 1, QString(), 0, QString());
        } else {
            const ReportSource source = [&control, &asked, value](const ReportPlace &place) {
                ++asked;
                if (value == QLatin1String("clear")) {
                    control.ClearReportData();
                }
                return GetValue(value, place);
            };
            control.AddReportSource(name, source, counting, QString(), value == QLatin1String("2500") ? 3 : 0,
                                    QString());
        }
    }
}

// What a schema and sources give: how often these were asked, and the report.
constexpr const char *kRows[][4] = {
    { "each repetition has its own", kTexts, "A*3=place", "3 <R><A>/R/A</A><A>/R/A[2]</A><A>/R/A[3]</A></R>" },
    { "nested, with attributes", kSpectra, "valid; S*2; B*S=place; Id=place",
      "5 <R><S Id='/R/S/@Id'><B>/R/S/B</B></S><S Id='/R/S[2]/@Id'><B>/R/S[2]/B</B><B>/R/S[2]/B[2]</B></S></R>" },
    { "every kind goes its way", kKinds, "D=2500; I=-3.9; T=1234567890123; B=true; W=when; C=clock",
      "6 <R><D>2.5</D><I>-3</I><T>1234567890123</T><B>true</B><W>2024-05-06T07:08:09</W><C>07:08:09</C></R>" },
    { "a long keeps its digits", "<e L type=xs:long/>", "valid; L=2^53+1", "1 <R><L>9007199254740993</L></R>" },
    { "a byte", "<e I type=xs:integer/>", "I=byte", "1 <R><I>200</I></R>" },
    { "a number in JSON", "<e D type=xs:double/><t T/>", "D=json; T=json", "2 <R><D>2.5</D><T>2.5</T></R>" },
    { "nothing in JSON", kTexts, "A=null", "1 <R><A type='string'/></R>" },
    { "a bool is no text", kTexts, "A=true", "1 <R><A type='string'/></R>" },
    { "nothing is no value", kTexts, "A*2=none", "2 <R><A type='string'/><A type='string'/></R>" },
    { "nor is what no report can hold", kTexts, "A=list", "1 <R><A type='string'/></R>" },
    { "one behind it may know more", kTexts, "A=none; A=item", "1 <R><A>item</A></R>" },
    { "so for an attribute", kSpectra, "S*1; B=place; Id=none; Id=item", "2 <R><S Id='item'><B>/R/S/B</B></S></R>" },
    { "parent and child", kPairs, "T/L=place", "1 <R><S><L type='string'/></S><T><L>/R/T/L</L></T></R>" },
    { "nobody is asked again where the walk goes back", kBack, "L=none; Y=place; Z=place",
      "3 <R><X><L type='string'/></X><Y>/R/Y</Y><Z>/R/Z</Z></R>" },
    { "an empty container stays", kSpectra, "valid; S*2", "0 <R><S/><S/></R>" },
    { "a container that isn't there", kSpectra, "valid; S*-1; B=place", "0 <R/>" },
    { "a source that throws", kTexts, "A=throw", "1 <R><A type='string'/></R>" },
    { "a count that throws", kTexts, "A*throw=place", "1 <R><A>/R/A</A></R>" },
    { "a source that empties the list", kTexts, "A*3=clear",
      "1 <R><A>/R/A</A><A type='string'/><A type='string'/></R>" },
};

// How many A a schema is asked for, and what is heard of it, and of a press that begins no report.
constexpr const char *kOutcomeRows[][4] = {
    { "saved", kTexts, "2", "prepare good saved prepare" },
    { "a count that the schema refuses", kTexts, "4", "prepare good saved /R/A 4 16 prepare" },
    { "no times", kTexts, "0", "prepare good saved /R/A 0 16 prepare" },
    { "no folder", kTexts, "1", "prepare good not saved prepare" },
    { "no schema", "<", "1", "prepare bad saved unread prepare" },
};

} // namespace

class TestReportSource : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void FillsByPlace_data() { AddRows(kRows); }
    void FillsByPlace()
    {
        QFETCH(QStringList, row);
        const ControlRun run(row.at(0));
        const auto control = run.MakeControl();
        int asked = 0;
        AddSources(*control, row.at(1), asked);
        QVERIFY(control->SlotToReport());
        QCOMPARE(QStringLiteral("%1 %2").arg(asked).arg(run.LatestReport()), row.at(2));
    }

    void LeavesTheListWithItsReport()
    {
        const ControlRun run(QString::fromUtf8(kTexts));
        const auto control = run.MakeControl(true);
        int asked = 0;
        AddSources(*control, QStringLiteral("A*2=place; A=item"), asked);
        QVERIFY(control->SlotToReport());
        QCOMPARE(run.LatestReport(), QStringLiteral("<R><A>/R/A</A><A>/R/A[2]</A></R>"));
        QVERIFY(control->SlotToReport());
        QCOMPARE(run.LatestReport(), QStringLiteral("<R><A type='string'/></R>"));
    }

    void MayChangeTheDocument()
    {
        const Desk desk(QString::fromUtf8(kPairs));
        QDomNode node;
        desk.m_pControl->m_fnHook = [&node](XmlEvent *event) {
            if (event->GetType() == XmlEvent::EVENT_ELEM_BEGIN) {
                node = static_cast<ElemBeginEvent *>(event)->GetElementNode();
            }
        };
        const auto removing = [&node](const ReportPlace &place) {
            QDomNode parent = node.parentNode();
            parent.parentNode().removeChild(parent);
            return Text(place);
        };
        desk.m_pControl->AddReportSource(QStringLiteral("L"), removing, 1, QString(), 0, QString());
        QVERIFY(desk.m_pControl->SlotToReport());
        QVERIFY(desk.LatestReport().startsWith(QLatin1String("<R")));
    }

    void TellsTheOutcome_data() { AddRows(kOutcomeRows); }
    void TellsTheOutcome()
    {
        QFETCH(QStringList, row);
        Desk desk(row.at(0));
        const int count = row.at(1).toInt();
        desk.m_pControl->AddReportSource(QStringLiteral("A"), Text, count, QString(), 0, QString());
        desk.m_pControl->AddReportSource(QStringLiteral("A"), nullptr, count, QString(), 0, QString()); // not added
        if (row.at(2).contains(QLatin1String("not"))) {
            QVERIFY(QDir(desk.ReportFolder()).removeRecursively());
        }
        desk.m_pControl->SlotToReport();
        // A wrong suffix begins no report.
        desk.m_pControl->SetSchema(QStringLiteral("a.xml"));
        QVERIFY(!desk.m_pControl->SlotToReport());
        QCOMPARE(desk.Heard(), row.at(2));
    }

    void TellsTheOutcomeAtTheDialogsEnd()
    {
        Desk desk;
        desk.m_pControl->SetShowCommentDialog(true);
        QVERIFY(desk.m_pControl->SlotToReport());
        const QPointer<QDialog> first = Dialog();
        QVERIFY(desk.m_pControl->SlotToReport());
        QCOMPARE(desk.Heard(), QStringLiteral("prepare good prepare good"));
        Press(first, "m_pSaveButton");
        QCOMPARE(desk.Heard(), QStringLiteral("saved"));
        Dialog()->reject();
        QCOMPARE(desk.Heard(), QStringLiteral("dropped"));
        QCOMPARE(desk.Reports().size(), 1);
        // A dialog that ends ahead of the signal waits for it; of one that ends behind its control nobody hears.
        const auto closing = connect(desk.m_pControl.get(), &VCReporting::ReportSuccessful, [] { Dialog()->close(); });
        QVERIFY(desk.m_pControl->SlotToReport());
        QCOMPARE(desk.Heard(), QStringLiteral("prepare good saved"));
        disconnect(closing);
        QVERIFY(desk.m_pControl->SlotToReport());
        desk.m_pControl.reset();
        Dialog()->close();
        QCOMPARE(desk.Heard(), QStringLiteral("prepare good"));
        QCOMPARE(desk.Reports().size(), 3);
    }

    void KeepsAnUnsavedDialog()
    {
        Desk desk;
        desk.m_pControl->SetShowCommentDialog(true);
        desk.m_pControl->SetKeepUnsavedDialog(true);
        QVERIFY(desk.m_pControl->SlotToReport());
        QVERIFY(QDir(desk.ReportFolder()).removeRecursively());
        const QPointer<QDialog> dialog = Dialog();
        dialog->close();
        QVERIFY(dialog->isVisible());
        auto *comment = dialog->findChild<QTextEdit *>();
        comment->setPlainText(QStringLiteral("windy"));
        Press(dialog, "m_pSaveButton");
        Press(dialog, "m_pNoCommentButton");
        QVERIFY(dialog->isVisible());
        QCOMPARE(desk.Heard(), QStringLiteral("prepare good"));
        QCOMPARE(comment->toPlainText(), QStringLiteral("windy"));
        const auto *failure = dialog->findChild<QLabel *>(QStringLiteral("m_pFailureLabel"));
        QTRY_VERIFY(failure->isVisible() && failure->text().contains(QLatin1String("No such file")));
        QVERIFY(QDir().mkdir(desk.ReportFolder()));
        Press(dialog, "m_pSaveButton");
        QVERIFY(dialog->isHidden());
        QCOMPARE(desk.Heard(), QStringLiteral("saved"));
        QCOMPARE(desk.LatestReport(), QStringLiteral("<R><A type='string'/><Comment>windy</Comment></R>"));
    }
};

QTEST_MAIN(TestReportSource)
#include "tst_reportsource.moc"

#include "support/controlrun.h"

#include "host/quilmar.h"

namespace {

// What an item or a list of them makes of <A>, the root's only element, of a type and with attributes.
constexpr const char *kElementRows[][4] = {
    { "a number", "double", "A=12.5^1", "<A>1.25</A>" },
    { "a number cut for an integer", "integer", "A=-3.9", "<A>-3</A>" },
    { "a number as text", "string", "A=12.50^1", "<A>12.50</A>" },
    { "a number beyond an integer", "integer", "A=3e9", "<A type='integer'/>" },
    { "the same as text", "string", "A=3e9", "<A>3e9</A>" },
    { "no number at all", "string", "A=nan", "<A>nan</A>" },
    { "a text as a date", "dateTime", "A=2024-05-06T07:08:09", "<A>2024-05-06T07:08:09</A>" },
    { "an unreadable date", "dateTime", "A=soon", "<A/>" },
    { "an item without a source", "string", "A=", "<A/>" },
    { "a given text as a date", "dateTime", "A:t2024-05-06T07:08:09", "<A>2024-05-06T07:08:09</A>" },
    { "a given double as text", "string", "A:d250^2", "<A>2.5</A>" },
    { "a given bool", "boolean", "A:btrue", "<A>true</A>" },
    { "a given bool for a text", "string", "A:btrue", "<A type='string'/>" },
    { "a given long is not scaled", "integer", "A:l7^2", "<A>7</A>" },
    { "a given long for a text", "string", "A:l7", "<A/>" },
    { "a long beyond an int takes its place", "integer Unit=string", "A:l3000000000; A=5; Unit=x",
      "<A Unit='x' type='integer'/>" },
    { "the first of two", "string", "A=one; A=two", "<A>one</A>" },
    { "nobody knows it", "string", "B=5; /A=5; R/B=5", "<A type='string'/>" },
    { "attributes", "double x=integer y=string z=dateTime", "A=1; y=5; x=-2.9; z=2024-05-06T07:08:09",
      "<A x='-2' y='5' z='2024-05-06T07:08:09'>1</A>" },
    { "an attribute ahead of its element", "double x=string", "x=v; A=1", "<A type='double' x='v'/>" },
    { "a given double for an attribute", "string x=double", "x:d25^1", "<A type='string' x='2.5'/>" },
    { "a number beyond an integer attribute", "string x=integer", "x=1e10", "<A type='string' x='xs:integer'/>" },
    { "a unit", "double Unit=string", "A=1@kHz", "<A Unit='kHz'>1</A>" },
    { "a unit that is not asked for", "double", "A=1@kHz", "<A>1</A>" },
    { "a unit that is no text", "double Unit=double", "A=1@m", "<A Unit='xs:double'>1</A>" },
    { "no unit", "double Unit=string", "A=1", "<A Unit='xs:string'>1</A>" },
    { "the unit of the last that matched", "boolean Unit=string", "A:btrue@m; A:btrue@s", "<A Unit='s'>true</A>" },
    { "the first stranger stamps", "double DateTime=dateTime", "B=1; A=1", "<A DateTime='now' type='double'/>" },
    { "the element's item comes first", "double DFDateTime=dateTime", "A=1; B=1", "<A DFDateTime='now'>1</A>" },
    { "a stamp goes first", "double DateTime=dateTime", "A=1; DateTime=2024-05-06T07:08:09",
      "<A DateTime='now'>1</A>" },
    { "the first item may fill it", "double DateTime=dateTime", "DateTime=2024-05-06T07:08:09; B=1",
      "<A DateTime='2024-05-06T07:08:09' type='double'/>" },
    { "behind a stamp all is out of reach", "double DFDateTime=dateTime Unit=string", "Unit=u",
      "<A DFDateTime='now' Unit='xs:string' type='double'/>" },
    // Values of the host's tree; with "~" a selection's number and text.
    { "a number is scaled", "double", "A<Frequency^3", "<A>5</A>" },
    { "its text is not", "string", "A<Frequency^3", "<A>5000 Hz</A>" },
    { "a negative exponent multiplies", "double", "A<Frequency^-1", "<A>50000</A>" },
    { "a selection counts", "double", "A<2~Medium^1", "<A>0.2</A>" },
    { "and has a text", "string", "A<2~Medium^1", "<A>Medium</A>" },
    { "a text is no number", "double", "A<Station/Remark", "<A type='double'/>" },
    { "a node has its name", "string", "A<Station", "<A>Station</A>" },
    { "a value beside a path is dropped", "double", "A<Nothing", "<A type='double'/>" },
    { "a choice of kHz", "double", "A<2~100 kHz", "<A>100000</A>" },
    { "a choice by its frequency", "double", "A<100000~100 kHz", "<A>100000</A>" },
    { "a choice of MHz", "double", "A<1000~1 MHz", "<A>1000</A>" },
    { "capitals don't count", "double", "A<3~2.5 mHz", "<A>2500000</A>" },
    { "no blank", "double", "A<4~3GHz", "<A>3000000000</A>" },
    { "a blank for a prefix", "double", "A<1~50 Hz", "<A>50</A>" },
    { "no prefix", "double", "A<1~50Hz", "<A>50</A>" },
    { "no unit of frequencies", "double", "A<7~25 khz", "<A>7</A>" },
    // The last two characters are taken for the unit, whatever they are, and go wherever they stand.
    { "a unit ahead", "double", "A<1~Hz: 30", "<A type='double'/>" },
    { "a unit at each end", "double", "A<1~HzHz12 kHz", "<A>12000</A>" },
};

// The same for one L below each of the parents; behind "!" each value is used once.
constexpr const char *kListRows[][4] = {
    { "a name fits below every parent", "ST string", "L=v", "<S><L>v</L></S><T><L>v</L></T>" },
    { "a name is used up", "!ST string", "L=v; L=w", "<S><L>v</L></S><T><L type='string'/></T>" },
    { "they are used up by their whole name", "!STS string", "S/L=v; L=w",
      "<S><L>v</L></S><T><L>w</L></T><S><L type='string'/></S>" },
    { "the root's parent is the document", "!S string", "#document/R=v; L=v", "<S><L>v</L></S>" },
    { "the last item looked at decides what goes: a pair", "!ST boolean", "L:btrue; S/L=v",
      "<S><L>true</L></S><T><L>true</L></T>" },
    { "the last item looked at decides: a stranger", "!SS boolean", "S/L:btrue; Z=v",
      "<S><L>true</L></S><S><L>true</L></S>" },
    { "two of one", "S string", "L=v*2", "<S><L>v</L><L>v</L></S>" },
};

/// Adds an item from "name=fixed text", "name<path" or "name:t text", ":d double", ":b bool", ":l long" (explicit),
/// with "^exponent", "*occurrences" and "@unit" behind.
void AddItem(VCReporting &control, const QString &item, values::MemoryTree &tree)
{
    static const QRegularExpression form(
        QStringLiteral("^([^=<:]*)(=|<|:[tdbl])([^^*@]*)(?:\\^(-?\\d+))?(?:\\*(\\d+))?(?:@(.*))?$"));
    const QStringList parts = form.match(item).capturedTexts() << QString() << QString() << QString();
    const QString &kind = parts.at(2);
    const QString &value = parts.at(3);
    const int exponent = parts.at(4).toInt();
    const int occurs = qMax(1, parts.at(5).toInt());
    const auto add = [&](auto given) {
        control.AddExplicitReportData(parts.at(1), given, occurs, QString(), exponent, parts.at(6));
    };
    if (kind == QLatin1String("=")) {
        control.AddReportData(parts.at(1), QString(), value, occurs, QString(), exponent, parts.at(6));
    } else if (kind == QLatin1String("<")) {
        const QStringList selection = value.split(QLatin1Char('~'));
        tree.SetSelection(QStringLiteral("Selection"), selection.front().toDouble(), selection.back());
        control.AddReportData(parts.at(1), selection.size() == 2 ? QStringLiteral("Selection") : value,
                              QStringLiteral("12.5"), occurs, QString(), exponent, parts.at(6));
    } else if (kind == QLatin1String(":d")) {
        add(value.toDouble());
    } else if (kind == QLatin1String(":b")) {
        add(value == QLatin1String("true"));
    } else if (kind == QLatin1String(":l")) {
        add(value.toLong());
    } else {
        add(value);
    }
}

/// What a control makes of the items: the content of the report's root.
QString Report(const QString &content, const QString &items, bool deleteAfterUse = false)
{
    values::MemoryTree tree;
    tree.SetNumber(QStringLiteral("Frequency"), 5000.0, QStringLiteral("Hz"));
    tree.SetText(QStringLiteral("Station/Remark"), QStringLiteral("7"));
    values::Tree::Install(&tree);
    const ControlRun run(content);
    const auto control = run.MakeControl(deleteAfterUse);
    for (const QString &item : items.split(QStringLiteral("; "), Qt::SkipEmptyParts)) {
        AddItem(*control, item, tree);
    }
    const QString report = control->SlotToReport() ? run.LatestReport() : QString();
    return report.mid(3, report.size() - 7);
}

} // namespace

class TestValueResolution : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void FillsOneElement_data() { AddRows(kElementRows); }
    void FillsOneElement()
    {
        QFETCH(QStringList, row);
        QStringList attributes = row.at(0).split(QLatin1Char(' '));
        const QString type = attributes.takeFirst();
        QString content;
        for (const QString &attribute : attributes) {
            content +=
                QStringLiteral("<a %1/>").arg(QString(attribute).replace(QLatin1Char('='), QLatin1String(" type=xs:")));
        }
        QCOMPARE(Report(QStringLiteral("<e A><c><xs:simpleContent><x xs:%1>%2</x></xs:simpleContent></c></e>")
                            .arg(type, content),
                        row.at(1)),
                 row.at(2));
    }

    void ServesParentsAndLists_data() { AddRows(kListRows); }
    void ServesParentsAndLists()
    {
        QFETCH(QStringList, row);
        const bool deleteAfterUse = row.at(0).startsWith(QLatin1Char('!'));
        QString content;
        for (const QChar parent : row.at(0).section(QLatin1Char(' '), 0, 0).mid(deleteAfterUse ? 1 : 0)) {
            content += QStringLiteral("<e %1><c><q><e L type=xs:%2 max=3/></q></c></e>")
                           .arg(parent)
                           .arg(row.at(0).section(QLatin1Char(' '), 1));
        }
        QCOMPARE(Report(content, row.at(1), deleteAfterUse), row.at(2));
    }

    void KeepsWhatItFoundWhenItWasAdded()
    {
        auto tree = std::make_unique<values::MemoryTree>();
        values::Tree::Install(tree.get());
        tree->SetNumber(QStringLiteral("A"), 1.0);
        const ControlRun run(QStringLiteral("<e A type=xs:double/><e B type=xs:double/>"));
        const auto control = run.MakeControl();
        AddItem(*control, QStringLiteral("A<A"), *tree);
        AddItem(*control, QStringLiteral("B<B"), *tree);
        tree->SetNumber(QStringLiteral("A"), 123.0);
        tree->SetNumber(QStringLiteral("B"), 1.0);
        values::Tree::Install(nullptr);
        QVERIFY(control->SlotToReport());
        QCOMPARE(run.LatestReport(), QStringLiteral("<R><A>123</A><B type='double'/></R>"));
    }

    void StampsTimeElements()
    {
        const QString times = QStringLiteral("<e DateTime type=xs:dateTime/><e DFDateTime type=xs:dateTime/>");
        QCOMPARE(Report(times, QString()), QStringLiteral("<DateTime>now</DateTime><DFDateTime>now</DFDateTime>"));
        QCOMPARE(Report(times, QStringLiteral("DateTime=2024-05-06T07:08:09")),
                 QStringLiteral("<DateTime>2024-05-06T07:08:09</DateTime><DFDateTime>now</DFDateTime>"));
    }
};

QTEST_MAIN(TestValueResolution)
#include "tst_valueresolution.moc"

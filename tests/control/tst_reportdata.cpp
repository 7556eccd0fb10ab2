#include "control/reportdata.h"
#include "host/quilmar.h"

#include <QtTest>

namespace {

constexpr double kUntouched = 65535.0;

ReportData MakeItem(const QString &path, const QString &value, int exponent = 0)
{
    return ReportData(QStringLiteral("Name"), path, value, 1, QStringLiteral("note"), exponent, QStringLiteral("u"),
                      false);
}

struct Source
{
    const char *m_sName;
    const char *m_sPath;
    const char *m_sValue;
    int m_iExponent;
    double m_dNumber;
    const char *m_sText;
};
constexpr const char *kNoText = "untouched";
constexpr Source kSources[] = {
    { "nothing", "", "", 0, kUntouched, kNoText },
    { "a number is scaled, its text isn't", "Receiver/Frequency", "", 3, 5.0, "5000 Hz" },
    { "a negative exponent multiplies", "Receiver/Frequency", "", -1, 50000.0, "5000 Hz" },
    { "a selection counts", "Receiver/Detector", "", 1, 0.2, "Medium" },
    { "a text in the tree is no number", "Receiver/Remark", "", 0, kUntouched, "7" },
    { "a node has its name", "Receiver", "", 0, kUntouched, "Receiver" },
    { "a value beside a path is dropped", "Receiver/Nothing", "12.5", 0, kUntouched, kNoText },
    { "a fixed number is scaled as a number alone", "", "12.5", 1, 1.25, "12.5" },
    { "a fixed text is no number", "", "12.5 m", 1, kUntouched, "12.5 m" },
};

struct Frequency
{
    const char *m_sText;
    double m_dRaw;
    double m_dNumber;
};
constexpr Frequency kFrequencies[] = {
    { "100 kHz", 2, 100000 },
    { "100 kHz", 100000, 100000 },
    { "1 MHz", 1000, 1000 },
    { "2.5 mHz", 3, 2.5e6 },
    { "3GHz", 4, 3e9 },
    { "50 Hz", 1, 50 },
    { "50Hz", 1, 50 },
    { "25 khz", 7, 7 },
    // The last two characters are taken for the unit, whatever they are, and go wherever they stand.
    { "Hz: 30", 1, kUntouched },
    { "HzHz12 kHz", 1, 12000 },
    { "auto Hz", 1, kUntouched },
    { "Hz", 1, kUntouched },
};

} // namespace

class TestReportData : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { values::Tree::Install(nullptr); }
    void ReadsItsSource_data();
    void ReadsItsSource();
    void ReadsFrequencies();
    void KeepsWhatItFoundAtConstruction();
    void ExplicitDataOpensAndKeepsItsKind();

private:
    std::unique_ptr<values::MemoryTree> m_pTree;
};

void TestReportData::init()
{
    m_pTree = std::make_unique<values::MemoryTree>();
    m_pTree->SetNumber(QStringLiteral("Receiver/Frequency"), 5000.0, QStringLiteral("Hz"));
    m_pTree->SetSelection(QStringLiteral("Receiver/Detector"), 2.0, QStringLiteral("Medium"));
    m_pTree->SetText(QStringLiteral("Receiver/Remark"), QStringLiteral("7"));
    values::Tree::Install(m_pTree.get());
}

void TestReportData::ReadsItsSource_data()
{
    QTest::addColumn<int>("row");
    for (int i = 0; i < static_cast<int>(std::size(kSources)); ++i) {
        QTest::newRow(kSources[i].m_sName) << i;
    }
}

void TestReportData::ReadsItsSource()
{
    QFETCH(int, row);
    const Source &source = kSources[row];
    ReportData item =
        MakeItem(QString::fromUtf8(source.m_sPath), QString::fromUtf8(source.m_sValue), source.m_iExponent);
    double number = kUntouched;
    QString text = QString::fromUtf8(kNoText);
    bool flag = true;
    long whole = 3;
    QCOMPARE(item.GetDataValue(number), source.m_dNumber != kUntouched);
    QCOMPARE(number, source.m_dNumber);
    QCOMPARE(item.GetDataValue(text), source.m_sText != kNoText);
    QCOMPARE(text, QString::fromUtf8(source.m_sText));
    QCOMPARE(item.IsOpen(), source.m_sText != kNoText);
    QVERIFY(!item.GetDataValue(flag) && flag && !item.GetDataValue(whole) && whole == 3);
}

void TestReportData::ReadsFrequencies()
{
    for (const Frequency &row : kFrequencies) {
        m_pTree->SetSelection(QStringLiteral("Filter"), row.m_dRaw, QString::fromUtf8(row.m_sText));
        double value = kUntouched;
        const bool isNumber = MakeItem(QStringLiteral("Filter"), QString()).GetDataValue(value);
        QVERIFY2(value == row.m_dNumber && isNumber == (value != kUntouched), row.m_sText);
    }
}

void TestReportData::KeepsWhatItFoundAtConstruction()
{
    ReportData item = MakeItem(QStringLiteral("Receiver/Frequency"), QString(), 2);
    ReportData late = MakeItem(QStringLiteral("Receiver/Level"), QString());
    ReportData copy = MakeItem(QString(), QStringLiteral("x"));
    copy = item;
    m_pTree->SetNumber(QStringLiteral("Receiver/Frequency"), 123.0);
    m_pTree->SetNumber(QStringLiteral("Receiver/Level"), 1.0);
    values::Tree::Install(nullptr);

    double number = 0.0;
    QVERIFY(copy.GetDataValue(number));
    QCOMPARE(number, 1.23);
    QCOMPARE(copy.GetVTObject(), item.GetVTObject());
    QCOMPARE(copy.GetExponent(), 2);
    QVERIFY(!late.GetDataValue(number));
    QVERIFY(!MakeItem(QStringLiteral("Receiver/Frequency"), QString()).IsOpen());
}

void TestReportData::ExplicitDataOpensAndKeepsItsKind()
{
    QCOMPARE(ExplicitReportData("µ").m_Kind, EXPLICIT_STRING);
    QCOMPARE(ExplicitReportData("µ").m_sText, QStringLiteral("µ"));
    ReportData item = MakeItem(QString(), QString());
    bool flag = false;
    long whole = 0;
    double number = kUntouched;
    QString text;
    item.SetExplicitData(true);
    QVERIFY(item.GetDataValue(flag) && flag && !item.GetDataValue(whole));
    item.SetExplicitData(7L);
    QVERIFY(item.GetDataValue(whole) && whole == 7 && !item.GetDataValue(flag));
    item.SetExplicitData(2.5);
    QVERIFY(!item.GetDataValue(number) && item.GetExplicitData().m_Kind == EXPLICIT_DOUBLE);
    item.SetExplicitData("text");
    QVERIFY(!item.GetDataValue(text));

    ReportData closed = MakeItem(QString(), QString());
    closed.SetExplicitData(ExplicitReportData());
    QVERIFY(closed.IsOpen());
}

QTEST_GUILESS_MAIN(TestReportData)
#include "tst_reportdata.moc"

#include "control/reportdata.h"
#include "host/quilmar.h"

#include <QtTest>

#include <cmath>

namespace {

constexpr double kUntouched = 65535.0;

ReportData MakeItem(const QString &path, const QString &value, int exponent = 0)
{
    return ReportData(QStringLiteral("Name"), path, value, 1, QStringLiteral("note"), exponent, QStringLiteral("u"),
                      false);
}

} // namespace

class TestReportData : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { values::Tree::Install(nullptr); }
    void ReadsItsSource_data();
    void ReadsItsSource();
    void ReadsFrequencies_data();
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
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("value");
    QTest::addColumn<int>("exponent");
    QTest::addColumn<bool>("isOpen");
    QTest::addColumn<double>("number");
    QTest::addColumn<QString>("text");

    const auto row = [](const char *name, const char *path, const char *value, int exponent, bool isOpen, double number,
                        const char *text) {
        QTest::newRow(name) << QString::fromLatin1(path) << QString::fromLatin1(value) << exponent << isOpen << number
                            << QString::fromLatin1(text);
    };
    row("nothing", "", "", 0, false, kUntouched, "untouched");
    row("a number is scaled, its text isn't", "Receiver/Frequency", "", 3, true, 5.0, "5000 Hz");
    row("a negative exponent multiplies", "Receiver/Frequency", "", -1, true, 50000.0, "5000 Hz");
    row("a selection counts", "Receiver/Detector", "", 1, true, 0.2, "Medium");
    row("a text in the tree is no number", "Receiver/Remark", "", 0, true, kUntouched, "7");
    row("a node has its name", "Receiver", "", 0, true, kUntouched, "Receiver");
    row("a value beside a path is dropped", "Receiver/Nothing", "12.5", 0, false, kUntouched, "untouched");
    row("a fixed number is scaled as a number alone", "", "12.5", 1, true, 1.25, "12.5");
    row("a fixed text is no number", "", "12.5 m", 1, true, kUntouched, "12.5 m");
}

void TestReportData::ReadsItsSource()
{
    QFETCH(QString, path);
    QFETCH(QString, value);
    QFETCH(int, exponent);
    ReportData item = MakeItem(path, value, exponent);
    double number = kUntouched;
    QString text = QStringLiteral("untouched");
    bool flag = true;
    long whole = 3;

    QTEST(item.IsOpen(), "isOpen");
    const bool hasNumber = item.GetDataValue(number);
    QTEST(number, "number");
    QCOMPARE(hasNumber, number != kUntouched);
    const bool hasText = item.GetDataValue(text);
    QTEST(text, "text");
    QCOMPARE(hasText, text != QLatin1String("untouched"));
    QVERIFY(!item.GetDataValue(flag) && flag);
    QVERIFY(!item.GetDataValue(whole) && whole == 3);
}

void TestReportData::ReadsFrequencies_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<double>("raw");
    QTest::addColumn<double>("number");

    const auto row = [](const char *text, double raw, double number) {
        QTest::addRow("\"%s\" beside %g", text, raw) << QString::fromLatin1(text) << raw << number;
    };
    row("100 kHz", 2, 100000);
    row("100 kHz", 100000, 100000);
    row("1 MHz", 1000, 1000);
    row("2.5 mHz", 3, 2.5e6);
    row("3GHz", 4, 3e9);
    row("50 Hz", 1, 50);
    row("50Hz", 1, 50);
    row("25 khz", 7, 7);
    // The last two characters are taken for the unit, whatever they are, and go wherever they stand.
    row("Hz: 30", 1, kUntouched);
    row("HzHz12 kHz", 1, 12000);
    row("auto Hz", 1, kUntouched);
    row("Hz", 1, kUntouched);
}

void TestReportData::ReadsFrequencies()
{
    QFETCH(QString, text);
    QFETCH(double, raw);
    QFETCH(double, number);
    m_pTree->SetSelection(QStringLiteral("Filter"), raw, text);
    double value = kUntouched;
    QCOMPARE(MakeItem(QStringLiteral("Filter"), QString()).GetDataValue(value), number != kUntouched);
    QCOMPARE(value, number);
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
    QCOMPARE(ExplicitReportData(1.5).m_Kind, EXPLICIT_DOUBLE);

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
    QVERIFY(!item.GetDataValue(number));
    item.SetExplicitData("text");
    QVERIFY(!item.GetDataValue(text));

    ReportData closed = MakeItem(QString(), QString());
    closed.SetExplicitData(ExplicitReportData());
    QVERIFY(closed.IsOpen());
}

QTEST_GUILESS_MAIN(TestReportData)
#include "tst_reportdata.moc"

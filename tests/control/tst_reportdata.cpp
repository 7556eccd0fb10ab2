#include "control/reportdata.h"
#include "host/quilmar.h"

#include <QTest>

namespace {

constexpr double kNone = 65535.0;

struct Source
{
    const char *m_sPath;
    const char *m_sValue;
    int m_iExponent;
    double m_dNumber;
    const char *m_sText; // null if there is none
};
constexpr Source kSources[] = {
    { "", "", 0, kNone, nullptr },
    { "Frequency", "", 3, 5.0, "5000 Hz" },
    { "Frequency", "", -1, 50000.0, "5000 Hz" },
    { "Detector", "", 1, 0.2, "Medium" },
    // A text in the tree is no number.
    { "Station/Remark", "", 0, kNone, "7" },
    { "Station", "", 0, kNone, "Station" },
    // A value beside a path is dropped.
    { "Nothing", "12.5", 0, kNone, nullptr },
    { "", "12.5", 1, 1.25, "12.5" },
    { "", "12.5 m", 1, kNone, "12.5 m" },
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
    { "Hz: 30", 1, kNone },
    { "HzHz12 kHz", 1, 12000 },
    { "Hz", 1, kNone },
};

ReportData MakeItem(const char *path, const char *value = "", int exponent = 0)
{
    return ReportData(QStringLiteral("Name"), QLatin1String(path), QLatin1String(value), 1, QStringLiteral("note"),
                      exponent, QStringLiteral("u"), false);
}

} // namespace

class TestReportData : public QObject
{
    Q_OBJECT

private:
    values::MemoryTree m_oTree;

private Q_SLOTS:
    void init()
    {
        m_oTree.SetNumber(QStringLiteral("Frequency"), 5000.0, QStringLiteral("Hz"));
        m_oTree.SetSelection(QStringLiteral("Detector"), 2.0, QStringLiteral("Medium"));
        m_oTree.SetText(QStringLiteral("Station/Remark"), QStringLiteral("7"));
        values::Tree::Install(&m_oTree);
    }

    void ReadsItsSource()
    {
        for (const Source &source : kSources) {
            ReportData item = MakeItem(source.m_sPath, source.m_sValue, source.m_iExponent);
            double number = kNone;
            QString text;
            bool flag = false;
            QCOMPARE(item.GetDataValue(number), source.m_dNumber != kNone);
            QCOMPARE(number, source.m_dNumber);
            QCOMPARE(item.GetDataValue(text), source.m_sText != nullptr);
            QCOMPARE(text, QString::fromUtf8(source.m_sText));
            QCOMPARE(item.IsOpen(), source.m_sText != nullptr);
            QVERIFY(!item.GetDataValue(flag));
        }
    }

    void ReadsFrequencies()
    {
        for (const Frequency &row : kFrequencies) {
            m_oTree.SetSelection(QStringLiteral("Filter"), row.m_dRaw, QString::fromUtf8(row.m_sText));
            double value = kNone;
            const bool isNumber = MakeItem("Filter").GetDataValue(value);
            QVERIFY2(value == row.m_dNumber && isNumber == (value != kNone), row.m_sText);
        }
    }

    void KeepsWhatItFoundAtConstruction()
    {
        ReportData item = MakeItem("Frequency", "", 2);
        ReportData late = MakeItem("Level");
        m_oTree.SetNumber(QStringLiteral("Frequency"), 123.0);
        m_oTree.SetNumber(QStringLiteral("Level"), 1.0);
        values::Tree::Install(nullptr);
        double number = 0.0;
        QVERIFY(item.GetDataValue(number) && !late.GetDataValue(number));
        QCOMPARE(number, 1.23);
        QVERIFY(!MakeItem("Frequency").IsOpen());
    }

    void ExplicitDataOpensAndKeepsItsKind()
    {
        QCOMPARE(ExplicitReportData("µ").m_sText, QStringLiteral("µ"));
        ReportData item = MakeItem("");
        bool flag = false;
        long whole = 0;
        QString text;
        item.SetExplicitData(true);
        QVERIFY(item.IsOpen() && item.GetDataValue(flag) && flag && !item.GetDataValue(whole));
        item.SetExplicitData(7L);
        QVERIFY(item.GetDataValue(whole) && whole == 7 && !item.GetDataValue(flag));
        item.SetExplicitData("text");
        QVERIFY(!item.GetDataValue(text) && item.GetExplicitData().m_Kind == EXPLICIT_STRING);
    }
};

QTEST_GUILESS_MAIN(TestReportData)
#include "tst_reportdata.moc"

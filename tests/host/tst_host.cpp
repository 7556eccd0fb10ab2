#include "support/tracecapture.h"

#include "host/quilmar.h"
#include "host/trace.h"

#include <QDateTime>
#include <QTest>

using values::MemoryTree;

/// What the library and its users rely on in the stand-in for a host.
class TestHost : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void TracesWhatItIsTold()
    {
        const TraceCapture log;
        _Q_Trace(QStringLiteral("50 %s µV 中"), QStringLiteral("domparser"), 65535);
        _Q_TraceOld(QStringLiteral("%s|%s|%ld %d|%f4.2dB"), L"µV", static_cast<const wchar_t *>(nullptr), 3000000000L,
                    -7, 2.345678);
        // Nothing tells what an unknown directive takes: from there on the format stays as it is.
        _Q_TraceOld(QStringLiteral("%d %x %s"), 1, 2, L"a");
        QVERIFY(!trace::CheckCallback<int>(nullptr, "XMLReader", QStringLiteral("xmlreader"), 9));
        QCOMPARE(TraceCapture::Lines(),
                 QStringList({ QStringLiteral("50 %s µV 中"), QStringLiteral("µV||3000000000 -7|2.35dB"),
                               QStringLiteral("1 %x %s"), QStringLiteral("XMLReader: pCallback is NULL!") }));
    }

    void BuildsMessagesWhenItsBitIsSetOnly()
    {
        for (const int mask : { 0, ~32, 32, -1 }) {
            const TraceCapture log;
            ErrorHandler::SetTraceMask(mask);
            int built = 0;
            trace::Write(QStringLiteral("xmlreader"), 12, [&built] { return QString::number(++built); });
            QCOMPARE(built, mask == 32 || mask == -1 ? 1 : 0);
            QCOMPARE(TraceCapture::Lines().size(), built);
        }
    }

    void TellsTheTime()
    {
        const QDateTime moment(QDate(2024, 2, 29), QTime(7, 8, 9, 250));
        const Orvo::DateTime time(static_cast<quint64>(moment.toMSecsSinceEpoch()));
        QCOMPARE(time.toString(QStringLiteral("yyyy-MM-dd_hh-mm-ss-z")), QStringLiteral("2024-02-29_07-08-09-25"));
        const qint64 before = QDateTime::currentMSecsSinceEpoch();
        const auto now = static_cast<qint64>(OrvoOS::Create().GetTime());
        QVERIFY(before <= now && now <= QDateTime::currentMSecsSinceEpoch());
    }

    void KeepsValuesOfThreeKinds()
    {
        MemoryTree tree;
        QVERIFY(tree.SetNumber(QStringLiteral("R/T/Level"), 123456789.123456, QStringLiteral("Hz")));
        QVERIFY(tree.SetSelection(QStringLiteral("R/Filter"), 3, QStringLiteral("100 kHz")));
        QVERIFY(tree.SetText(QStringLiteral("R/Name"), QStringLiteral("North")));
        values::ValueBase *level = tree.FindValue(QStringLiteral("R/T/Level"));
        QCOMPARE(dynamic_cast<values::IValueNumeric *>(level)->GetNumber(), 123456789.123456);
        QVERIFY(dynamic_cast<values::ValueSelection *>(level) == nullptr);
        QCOMPARE(level->GetName() + level->GetPathName() + level->GetText(),
                 QStringLiteral("LevelR/T/Level123456789.123 Hz"));
        auto *filter = dynamic_cast<values::ValueSelection *>(tree.FindValue(QStringLiteral("R/Filter")));
        QCOMPARE(filter->GetText() + QString::number(filter->GetSelectionNumber()), QStringLiteral("100 kHz3"));
        QCOMPARE(dynamic_cast<values::ValueItem *>(tree.FindItem(QStringLiteral("R/Name")))->FindValue(QString()),
                 tree.FindValue(QStringLiteral("R/Name")));
        QVERIFY(tree.FindValue(QStringLiteral("R")) == nullptr && tree.FindItem(QStringLiteral("r")) == nullptr);

        QStringList names;
        for (values::TreeItem *item : tree.AddNode(QStringLiteral("R"))->GetTreeItems()) {
            names << item->GetItemName();
        }
        QCOMPARE(names, QStringList({ QStringLiteral("T"), QStringLiteral("Filter"), QStringLiteral("Name") }));

        // A value keeps its place and its kind for good.
        QVERIFY(tree.SetNumber(QStringLiteral("R/T/Level"), 2));
        QCOMPARE(tree.FindValue(QStringLiteral("R/T/Level")), level);
        QCOMPARE(level->GetText(), QStringLiteral("2"));
        for (const char *path : { "R/T/Level", "R", "R/Name/c", "", "a//c", "/a", "a/" }) {
            QVERIFY2(!tree.SetText(QLatin1String(path), QString()), path);
        }
        QVERIFY(tree.AddNode(QStringLiteral("R/Name/c")) == nullptr);
    }

    void IsInstalledUntilItIsDestroyed()
    {
        auto tree = std::make_unique<MemoryTree>();
        values::Tree::Install(tree.get());
        std::make_unique<MemoryTree>().reset();
        QCOMPARE(values::Tree::Instance(), tree.get());
        tree.reset();
        QVERIFY(values::Tree::Instance() == nullptr);
    }
};

QTEST_GUILESS_MAIN(TestHost)
#include "tst_host.moc"

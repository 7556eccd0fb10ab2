#include "support/tracecapture.h"

#include "host/quilmar.h"
#include "host/trace.h"

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
        int built = 0;
        for (const int mask : { 0, ~32, 32, -1 }) {
            const TraceCapture log;
            ErrorHandler::SetTraceMask(mask);
            trace::Write(QString(), 12, [&built] { return QString::number(++built); });
            QCOMPARE(built, mask == 32 ? 1 : mask == -1 ? 2 : 0);
            QCOMPARE(TraceCapture::Lines().size(), built == 0 ? 0 : 1);
        }
    }

    void RefusesPathsThatLeadNowhere()
    {
        MemoryTree tree;
        QVERIFY(tree.SetNumber(QStringLiteral("R/Level"), 1));
        for (const char *wrong : { "R/Level", "R", "R/Level/c", "", "a//c", "/a", "a/" }) {
            QVERIFY2(!tree.SetText(QLatin1String(wrong), QString()), wrong);
        }
        QVERIFY(tree.AddNode(QStringLiteral("R/Level/c")) == nullptr);
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

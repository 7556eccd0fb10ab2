#include "host/trace.h"
#include "host/veldra.h"

#include <QDateTime>
#include <QTest>

#include <limits>

namespace {

struct Message
{
    QtMsgType m_eType = QtDebugMsg;
    QByteArray m_sCategory;
    QByteArray m_sFile;
    int m_iLine = -1;
    QString m_sText;
};

Message g_oLast;

void Keep(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    g_oLast = { type, context.category, context.file, context.line, text };
}

/// What a host's own message handler sees of a call that traces.
template <typename Call>
Message Seen(Call call)
{
    g_oLast = Message();
    const QtMessageHandler before = qInstallMessageHandler(Keep);
    call();
    qInstallMessageHandler(before);
    return g_oLast;
}

class FixedClock : public IOrvoOS
{
public:
    explicit FixedClock(quint64 time)
        : m_iTime(time)
    {
    }
    quint64 GetTime() override { return m_iTime; }

private:
    quint64 m_iTime;
};

struct Mask
{
    explicit Mask(int mask) { ErrorHandler::SetTraceMask(mask); }
    ~Mask() { ErrorHandler::SetTraceMask(0); }
    Q_DISABLE_COPY(Mask)
};

} // namespace

class HostServicesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void tracesThroughQtsLogging();
    void formatsOldTraces();
    void buildsMessagesWhenTracingIsOnOnly_data();
    void buildsMessagesWhenTracingIsOnOnly();
    void tracesANullCallback();
    void tellsTheTimeOfTheClockInPlace();
};

void HostServicesTest::tracesThroughQtsLogging()
{
    const Message seen =
        Seen([] { _Q_Trace(QStringLiteral("50 %s \u00B5V \u4E2D"), QStringLiteral("domparser"), 65535); });
    QCOMPARE(seen.m_sCategory, QByteArray("tagwright"));
    QCOMPARE(seen.m_eType, QtInfoMsg);
    QCOMPARE(seen.m_sFile, QByteArray("domparser"));
    QCOMPARE(seen.m_iLine, 65535);
    QCOMPARE(seen.m_sText, QStringLiteral("50 %s \u00B5V \u4E2D"));
}

void HostServicesTest::formatsOldTraces()
{
    const auto text = [](auto... arguments) { return Seen([&] { _Q_TraceOld(arguments...); }).m_sText; };
    const QString unknown = QStringLiteral("%1 and %d");
    QCOMPARE(text(QStringLiteral("%s|%s|"), L"\u00B5V", static_cast<const wchar_t *>(nullptr)),
             QStringLiteral("\u00B5V||"));
    QCOMPARE(text(QStringLiteral("%ld %d"), std::numeric_limits<long>::min(), -7),
             QStringLiteral("%1 -7").arg(std::numeric_limits<long>::min()));
    QCOMPARE(text(QStringLiteral("%f4.2dB"), 2.345678), QStringLiteral("2.35dB"));
    QCOMPARE(text(QStringLiteral("%f4.2 %d"), -1234.5, 3), QStringLiteral("-1234.50 3"));
    // Nothing tells what an unknown directive takes: from there on the format stays as it is.
    QCOMPARE(text(QStringLiteral("%d %x %s"), 1, 2, L"a"), QStringLiteral("1 %x %s"));
    QCOMPARE(text(unknown, 5), unknown);
    QCOMPARE(text(QStringLiteral("100 %")), QStringLiteral("100 %"));
    QCOMPARE(text(QString()), QString());
}

void HostServicesTest::buildsMessagesWhenTracingIsOnOnly_data()
{
    QTest::addColumn<int>("mask");
    QTest::addColumn<int>("built");
    QTest::newRow("at the start") << ErrorHandler::Instance().GetTraceMask() << 0;
    QTest::newRow("other bits") << ~trace::kTraceBit << 0;
    QTest::newRow("its bit") << 32 << 1;
    QTest::newRow("all bits") << -1 << 1;
}

void HostServicesTest::buildsMessagesWhenTracingIsOnOnly()
{
    QFETCH(int, mask);
    const Mask set(mask);
    int built = 0;
    const Message seen = Seen(
        [&built] { trace::Write(QStringLiteral("xmlreader"), 12, [&built] { return QString::number(++built); }); });
    QTEST(built, "built");
    QCOMPARE(seen.m_sText, built == 0 ? QString() : QStringLiteral("1"));
}

void HostServicesTest::tracesANullCallback()
{
    const Mask set(32);
    int callback = 0;
    const Message seen = Seen([&callback] {
        QVERIFY(trace::CheckCallback(&callback, "Silent", QStringLiteral("none"), 1));
        QVERIFY(!trace::CheckCallback<int>(nullptr, "XMLReader", QStringLiteral("xmlreader"), 9));
    });
    QCOMPARE(seen.m_sText, QStringLiteral("XMLReader: pCallback is NULL!"));
    QCOMPARE(seen.m_sFile, QByteArray("xmlreader"));
}

void HostServicesTest::tellsTheTimeOfTheClockInPlace()
{
    const QDateTime moment(QDate(2024, 2, 29), QTime(7, 8, 9, 250));
    FixedClock clock(static_cast<quint64>(moment.toMSecsSinceEpoch()));
    OrvoOS::SetClock(&clock);
    const Orvo::DateTime time(OrvoOS::Create().GetTime());
    QCOMPARE(time.toString(QStringLiteral("yyyy-MM-dd_hh-mm-ss-z")), QStringLiteral("2024-02-29_07-08-09-25"));
    QCOMPARE(time.toString(QStringLiteral("yyyy/MM/dd hh:mm:ss")), QStringLiteral("2024/02/29 07:08:09"));

    OrvoOS::SetClock(nullptr);
    const qint64 before = QDateTime::currentMSecsSinceEpoch();
    const auto now = static_cast<qint64>(OrvoOS::Create().GetTime());
    QVERIFY(before <= now && now <= QDateTime::currentMSecsSinceEpoch());
}

QTEST_GUILESS_MAIN(HostServicesTest)

#include "tst_hostservices.moc"

#include <QProcess>
#include <QTest>

/// Loading and unloading, in programs of their own that aren't linked to the library, before an application exists.
class LibraryLoadTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void loadsRegistersAndUnloads_data();
    void loadsRegistersAndUnloads();
};

void LibraryLoadTest::loadsRegistersAndUnloads_data()
{
    QTest::addColumn<QString>("program");
    QTest::newRow("the host's libraries linked") << QStringLiteral(LOAD_PROGRAM);
    QTest::newRow("nothing linked") << QStringLiteral(BARE_LOAD_PROGRAM);
}

void LibraryLoadTest::loadsRegistersAndUnloads()
{
    QFETCH(QString, program);
    QProcess process;
    process.start(program, { QStringLiteral(TAGWRIGHT_LIBRARY) });
    QVERIFY(process.waitForFinished());
    QCOMPARE(process.readAllStandardOutput(), QByteArray("all well\n"));
    QCOMPARE(process.exitStatus(), QProcess::NormalExit);
    QCOMPARE(process.exitCode(), 0);
}

QTEST_GUILESS_MAIN(LibraryLoadTest)

#include "tst_libraryload.moc"

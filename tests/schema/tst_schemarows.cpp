#include "support/schemafiles.h"
#include "support/schemareading.h"
#include "support/tracecapture.h"

#include <QtTest>

/// Schemas in, templates, tables and traces out: the rows of data/*.rows, and the examples of the manual for authors.
///
/// A row is a title behind "## ", declarations, and a line "=> " with the template, or "=> failed". Lines behind it
/// begin with the name of a table or with "trace", and hold the table, or what the trace contains. Several files are
/// written as schemafiles::Write takes them.
class TestSchemaRows : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void comeOutAsTold_data();
    void comeOutAsTold();
};

namespace {

QString ReadAll(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

} // namespace

void TestSchemaRows::comeOutAsTold_data()
{
    QTest::addColumn<QString>("schema");
    QTest::addColumn<QStringList>("expected");
    const QDir dir(QStringLiteral(TEST_DATA_DIR));
    for (const QString &name : dir.entryList({ QStringLiteral("*.rows") })) {
        for (const QString &row :
             (QLatin1Char('\n') + ReadAll(dir.filePath(name))).split(QStringLiteral("\n## ")).mid(1)) {
            const QStringList parts = row.section(QLatin1Char('\n'), 1).trimmed().split(QStringLiteral("\n=>"));
            QTest::newRow(qPrintable(name + QLatin1Char(' ') + row.section(QLatin1Char('\n'), 0, 0)))
                << parts.at(0) << parts.at(1).split(QLatin1Char('\n'));
        }
    }
    const QStringList examples = ReadAll(QStringLiteral(EXAMPLE_SCHEMA_DIR "/../../docs/schema-subset.md"))
                                     .split(QStringLiteral("```xml schema\n"))
                                     .mid(1);
    QVERIFY(examples.size() > 10);
    for (int i = 0; i < examples.size(); ++i) {
        const QStringList parts = examples.at(i).split(QStringLiteral("```"));
        QVERIFY(parts.at(2).startsWith(QLatin1String("xml template\n")));
        QTest::newRow(qPrintable(QStringLiteral("example %1").arg(i + 1)))
            << parts.at(0) << QStringList { ToText(ReadTemplate(parts.at(2).mid(12))) };
    }
}

void TestSchemaRows::comeOutAsTold()
{
    QFETCH(QString, schema);
    QFETCH(QStringList, expected);
    const QTemporaryDir dir;
    const TraceCapture capture;
    const QString top = schema.contains(QLatin1String(".xsd: ")) ? schemafiles::Write(dir, schema) : QString();
    SchemaReading reading(top);
    const bool isRead = top.isEmpty() ? reading.Read(schema) : reading.m_oReader.ReadFile(top);
    const QString root = expected.takeFirst().trimmed();
    QCOMPARE(isRead, root != QLatin1String("failed"));
    QCOMPARE(reading.m_oHandler.GetDocument()->firstChild().isProcessingInstruction(), isRead);
    QCOMPARE(reading.Template(), isRead ? root : QString());
    for (const QString &line : std::as_const(expected)) {
        const QString name = line.section(QLatin1Char(' '), 0, 0);
        const QString text = line.section(QLatin1Char(' '), 1);
        if (name == QLatin1String("trace")) {
            QVERIFY2(capture.Text().contains(text), qPrintable(capture.Text()));
        } else {
            QCOMPARE(reading.Table(name), text);
        }
    }
}

QTEST_GUILESS_MAIN(TestSchemaRows)

#include "tst_schemarows.moc"

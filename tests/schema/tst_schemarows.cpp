#include "support/schemafiles.h"
#include "support/schemareading.h"

#include <QDir>
#include <QRegularExpression>
#include <QtTest>

/// Runs the rows of data/*.rows: a schema in, its template and tables out.
///
/// A row is a title behind "## ", declarations, a line "---", the template, and where it matters the tables in lines
/// "occurs ..." and "choices ...". Several files are written as schemafiles::Write takes them. What stands above a
/// file's first row is a frame for all its rows, with %1 for their declarations.
class TestSchemaRows : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void comeOutAsTold_data();
    void comeOutAsTold();
};

namespace {

void AddRows(const QString &path)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QStringList rows = QString::fromUtf8(file.readAll()).split(QRegularExpression(QStringLiteral("(^|\n)## ")));
    const QString frame = rows.takeFirst().trimmed();
    for (const QString &row : std::as_const(rows)) {
        const QString title = QFileInfo(path).baseName() + QStringLiteral(": ") + row.section(QLatin1Char('\n'), 0, 0);
        const QStringList parts = row.section(QLatin1Char('\n'), 1).split(QStringLiteral("\n---\n"));
        QCOMPARE(parts.size(), 2);
        QTest::newRow(qPrintable(title)) << (frame.isEmpty() ? parts.at(0) : frame.arg(parts.at(0)))
                                         << parts.at(1).trimmed().split(QLatin1Char('\n'));
    }
}

} // namespace

void TestSchemaRows::comeOutAsTold_data()
{
    QTest::addColumn<QString>("schema");
    QTest::addColumn<QStringList>("expected");
    const QDir dir(QStringLiteral(TEST_DATA_DIR));
    const QStringList names = dir.entryList({ QStringLiteral("*.rows") });
    QVERIFY(!names.isEmpty());
    for (const QString &name : names) {
        AddRows(dir.filePath(name));
    }
}

void TestSchemaRows::comeOutAsTold()
{
    QFETCH(QString, schema);
    QFETCH(QStringList, expected);
    const QTemporaryDir dir;
    const QString top = schema.contains(QLatin1String(".xsd: ")) ? schemafiles::Write(dir, schema) : QString();
    SchemaReading reading(top);
    QVERIFY(top.isEmpty() ? reading.Read(schema) : reading.ReadFile(top));
    QCOMPARE(reading.Template(), expected.takeFirst());
    for (const QString &line : std::as_const(expected)) {
        const bool isChoices = line.startsWith(QLatin1String("choices"));
        QCOMPARE(isChoices ? reading.Choices() : reading.Occurs(), line.section(QLatin1Char(' '), 1));
    }
}

QTEST_GUILESS_MAIN(TestSchemaRows)

#include "tst_schemarows.moc"

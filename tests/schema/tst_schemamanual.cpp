#include "support/schemareading.h"

#include <QRegularExpression>
#include <QtTest>

/// The examples of the manual for schema authors are what the reader does.
class TestSchemaManual : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void examplesAreTrue_data();
    void examplesAreTrue();
};

void TestSchemaManual::examplesAreTrue_data()
{
    QTest::addColumn<QString>("schema");
    QTest::addColumn<QString>("expected");
    QFile file(QStringLiteral(EXAMPLE_SCHEMA_DIR "/../../docs/schema-subset.md"));
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QString manual = QString::fromUtf8(file.readAll());
    const QRegularExpression pair(QStringLiteral("```xml schema\\n(.*?)```\\s+```xml template\\n(.*?)```"),
                                  QRegularExpression::DotMatchesEverythingOption);
    int pairs = 0;
    for (auto match = pair.globalMatch(manual); match.hasNext(); ++pairs) {
        const QStringList texts = match.next().capturedTexts();
        QTest::newRow(qPrintable(QStringLiteral("example %1").arg(pairs + 1))) << texts.at(1) << texts.at(2);
    }
    QCOMPARE(pairs, manual.count(QLatin1String("```xml schema")));
    QVERIFY(pairs > 10);
}

void TestSchemaManual::examplesAreTrue()
{
    QFETCH(QString, schema);
    QFETCH(QString, expected);
    QDomDocument document;
    QVERIFY(document.setContent(expected));
    SchemaReading reading;
    QVERIFY(reading.Read(schema));
    QCOMPARE(reading.Template(), QStringLiteral("? ") + SchemaReading::Describe(document));
}

QTEST_GUILESS_MAIN(TestSchemaManual)

#include "tst_schemamanual.moc"

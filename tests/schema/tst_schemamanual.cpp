#include "support/schemareading.h"

#include <QRegularExpression>
#include <QtTest>

/// The examples of the manual for schema authors are what the reader does.
class TestSchemaManual : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void examplesAreTrue();
};

void TestSchemaManual::examplesAreTrue()
{
    QFile file(QStringLiteral(EXAMPLE_SCHEMA_DIR "/../../docs/schema-subset.md"));
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QString manual = QString::fromUtf8(file.readAll());
    const QRegularExpression pair(QStringLiteral("```xml schema\\n(.*?)```\\s+```xml template\\n(.*?)```"),
                                  QRegularExpression::DotMatchesEverythingOption);
    int pairs = 0;
    for (auto match = pair.globalMatch(manual); match.hasNext(); ++pairs) {
        const QStringList texts = match.next().capturedTexts();
        QDomDocument expected;
        QVERIFY2(expected.setContent(texts.at(2)), qPrintable(texts.at(2)));
        SchemaReading reading;
        QVERIFY2(reading.Read(texts.at(1)), qPrintable(texts.at(1)));
        QCOMPARE(reading.Template(), QStringLiteral("? ") + SchemaReading::Describe(expected));
    }
    QCOMPARE(pairs, manual.count(QLatin1String("```xml schema")));
    QVERIFY(pairs > 10);
}

QTEST_GUILESS_MAIN(TestSchemaManual)

#include "tst_schemamanual.moc"

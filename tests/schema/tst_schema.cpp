#include "checkedschema.h"
#include "support/limitedprocess.h"
#include "support/schemafiles.h"
#include "support/schemareading.h"
#include "support/schematext.h"
#include "support/tracecapture.h"

#include "dom/nodewalk.h"

#include <QtTest>

#include <sys/stat.h>

namespace {

/// What comes out otherwise than told; empty if nothing does.
QString Difference(const QString &top, QStringList expected)
{
    const TraceCapture capture;
    SchemaReading reading(top);
    const bool isRead = reading.m_oReader.ReadFile(top);
    const QString root = expected.takeFirst().trimmed();
    QString told = reading.Template();
    if (root.endsWith(QLatin1String("elements"))) {
        int elements = 0;
        for (dom::NodeWalk walk(*reading.m_oHandler.GetDocument()); !walk.AtEnd(); walk.Next()) {
            elements += walk.Node().isElement() ? 1 : 0;
        }
        told = QStringLiteral("%1 elements").arg(elements);
    }
    told.prepend(QLatin1String(isRead ? "" : "failed"));
    if (told != root || reading.m_oHandler.GetDocument()->firstChild().isProcessingInstruction() != isRead) {
        return QLatin1String("=> ") + told;
    }
    for (const QString &line : std::as_const(expected)) {
        const QString name = line.section(QLatin1Char(' '), 0, 0);
        const QString text = line.section(QLatin1Char(' '), 1);
        const bool isTrace = name == QLatin1String("trace");
        const QString found = isTrace ? capture.Text() + reading.m_oReader.GetRefusal() : reading.Table(name);
        if (isTrace ? !found.contains(text) : found != text) {
            return name + QLatin1Char(' ') + found;
        }
    }
    return QString();
}

} // namespace

/// Schemas in, templates, tables and traces out: the rows of data/*.rows, and the examples of the manual for authors.
///
/// A row is a title behind "## ", declarations, and "=> " with the template, the number of its elements, or "failed".
/// Lines behind it begin with the name of a table or with "trace", and hold the table, or what the trace
/// contains. Several files are written as schemafiles::Write takes them. The declarations are written short: see
/// Expanded().
class TestSchema : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void comesOutAsTold_data()
    {
        QTest::addColumn<QString>("schema");
        QTest::addColumn<QStringList>("expected");
        const QDir dir(QStringLiteral(TEST_DATA_DIR), QStringLiteral("*.rows"));
        for (const QString &name : dir.entryList()) {
            const QString rows = QString::fromUtf8('\n' + FileBytes(dir.filePath(name)));
            QVERIFY(rows.contains(QLatin1String("\n## ")));
            for (const QString &row : rows.split(QStringLiteral("\n## ")).mid(1)) {
                const QStringList parts =
                    row.section(QLatin1Char('\n'), 1).trimmed().split(QRegularExpression(QStringLiteral("\\s=>")));
                QTest::newRow(qPrintable(name + QLatin1Char(' ') + row.section(QLatin1Char('\n'), 0, 0)))
                    << schemafiles::Repeated(Expanded(parts.at(0))) << parts.at(1).split(QLatin1Char('\n'));
            }
        }
        const QStringList examples =
            QString::fromUtf8(FileBytes(QStringLiteral(EXAMPLE_SCHEMA_DIR "/../../docs/schema-subset.md")))
                .split(QStringLiteral("```xml schema\n"))
                .mid(1);
        QVERIFY(dir.count() > 0 && examples.size() > 10);
        for (int i = 0; i < examples.size(); ++i) {
            const QStringList parts = examples.at(i).split(QStringLiteral("```"));
            QVERIFY(parts.at(2).startsWith(QLatin1String("xml template\n")));
            QTest::newRow(qPrintable(QStringLiteral("example %1").arg(i + 1)))
                << parts.at(0) << QStringList { ToText(ReadTemplate(parts.at(2).mid(12))) };
        }
    }

    /// Any file at all may stand where a schema should: hostile rows run in a child with a small stack and little
    /// memory and time.
    void comesOutAsTold()
    {
        QFETCH(QString, schema);
        QFETCH(QStringList, expected);
        const QTemporaryDir dir;
        const QString top = schemafiles::Write(dir, schema);
        if (QByteArray(QTest::currentDataTag()).startsWith("hostile")) {
            const auto result = limitedprocess::Run([&] { return Difference(top, expected).toUtf8(); });
            QCOMPARE(result.m_sReason + QString::fromUtf8(result.m_sOutput), QString());
            const auto checked = limitedprocess::Run([&top] {
                const CheckedSchema file(top);
                return file.GetError().toUtf8() + QByteArray::number(int(file.GetFindings().size()));
            });
            QCOMPARE(checked.m_sReason, QString());
            // A schema that fails is told of.
            QVERIFY(!expected.first().startsWith(QLatin1String("failed")) || checked.m_sOutput != "0");
        } else {
            QCOMPARE(Difference(top, expected), QString());
        }
    }

    void includesWhatCanBeReadOnce()
    {
        const QTemporaryDir dir;
        const QString top = schemafiles::Write(
            dir, Expanded(QStringLiteral("include fifo.xsd;include .;include link.xsd;<e r><c><e x max=2/></c></e>")));
        QVERIFY(mkfifo(QFile::encodeName(dir.filePath(QStringLiteral("fifo.xsd"))).constData(), 0600) == 0);
        QVERIFY(QFile::link(top, dir.filePath(QStringLiteral("link.xsd"))));
        const QStringList expected = { QStringLiteral("<r><x/></r>"), QStringLiteral("occurs x:2=r") };
        const auto result = limitedprocess::Run([&] { return Difference(top, expected).toUtf8(); });
        QCOMPARE(result.m_sReason + QString::fromUtf8(result.m_sOutput), QString());
    }

    void readsNothingWithoutCallback()
    {
        XmlSchemaHandler handler(nullptr, QStringLiteral("a.xsd"));
        QVERIFY(handler.startElement({}, {}, QStringLiteral("xs:element"), QXmlAttributes()) && !handler.endDocument());
        QVERIFY(handler.GetDocument()->firstChild().isNull());
    }

    void goesOnWithGivenTables()
    {
        SchemaReading first(QStringLiteral("a.xsd"));
        QVERIFY(first.m_oReader.ReadText(Expanded(QStringLiteral("<c T><e x max=2/></c>"))));
        MissingMap missing;
        OccursMap occurs;
        TypeMap types;
        ChoiceMap choices;
        first.m_oHandler.GetMaps(missing, occurs, types, choices);
        XmlSchemaHandler handler(&first, QStringLiteral("a.xsd"), missing, occurs, types, choices);
        dom::GuardedReader reader;
        reader.setContentHandler(&handler);
        QVERIFY(reader.ReadText(QStringLiteral("<xs:element name='r' type='T'/>")));
        QCOMPARE(ToText(*handler.GetDocument()), QStringLiteral("<r><x/></r>"));
    }

    void includesNothingWithoutDirectory()
    {
        const QTemporaryDir dir;
        const QString top = schemafiles::Write(dir, Expanded(QStringLiteral("top.xsd: include t.xsd;\nt.xsd: <e a/>")));
        SchemaReading elsewhere(QStringLiteral("top.xsd"));
        QVERIFY(elsewhere.m_oReader.ReadFile(top));
        QCOMPARE(elsewhere.Table(QStringLiteral("types")), QString());
    }
};

QTEST_GUILESS_MAIN(TestSchema)

#include "tst_schema.moc"

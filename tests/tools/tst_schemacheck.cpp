#include "checkedschema.h"
#include "support/schemafiles.h"
#include "support/scriptedreceiver.h"

#include "report/xmlcreatereport.h"

#include <QtTest>

/// tagwright-schema: each rule by a schema that breaks it and one that narrowly doesn't, and the program around them.
///
/// A row of data/rules.rows holds what is found, then the schema with "^" ahead of the tag at which the first of these
/// is found, then the other schema. "\n" stands between files, "{n|text}" for n times the text with a number for "#",
/// and "raw:" ahead of a whole file.
class TestSchemaCheck : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void rulesAreTrue_data();
    void rulesAreTrue();
    void everyRuleHasItsRow();
    void theManualListsTheRules();
    void aNewcomerGetsALineForEachTrap();
    void whatIsMendedValidates();
    void theProgramSaysIt_data();
    void theProgramSaysIt();
};

namespace {

QString ReadAll(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

QList<QStringList> Rows()
{
    QList<QStringList> rows;
    for (const QString &line : ReadAll(QStringLiteral(TEST_DATA_DIR "/rules.rows")).split(QLatin1Char('\n'))) {
        if (!line.isEmpty()) {
            rows.append(line.split(QStringLiteral(" | ")));
        }
    }
    return rows;
}

QString Expand(const QString &text)
{
    const QStringList parts = QString(text)
                                  .replace(QLatin1String("\\n"), QLatin1String("\n"))
                                  .split(QRegularExpression(QStringLiteral("[{}]")));
    QString expanded;
    for (int i = 0; i < parts.size(); ++i) {
        const int times = i % 2 == 0 ? 1 : parts.at(i).section(QLatin1Char('|'), 0, 0).toInt();
        for (int n = 0; n < times; ++n) {
            expanded += i % 2 == 0
                ? parts.at(i)
                : parts.at(i).section(QLatin1Char('|'), 1).replace(QLatin1Char('#'), QString::number(n));
        }
    }
    return expanded;
}

QString Write(const QTemporaryDir &dir, QString text)
{
    if (!text.startsWith(QLatin1String("raw:"))) {
        return schemafiles::Write(dir,
                                  text.contains(QLatin1String(".xsd: ")) ? text : QLatin1String("top.xsd: ") + text);
    }
    QFile file(dir.filePath(QStringLiteral("top.xsd")));
    return file.open(QIODevice::WriteOnly) && file.write(text.mid(4).toUtf8()) > 0 ? file.fileName() : QString();
}

// The rules that are broken, in the order of their names, and "line:column" of where one of them is.
QStringList RulesIn(const CheckedSchema &schema)
{
    QStringList rules;
    for (const Finding &finding : schema.GetFindings()) {
        rules.append(QLatin1String(finding.m_pRule->m_sIdentifier));
    }
    rules.sort();
    return rules;
}

QStringList PlacesOf(const CheckedSchema &schema, const QString &rule)
{
    QStringList places;
    for (const Finding &finding : schema.GetFindings()) {
        const SchemaNode &node = schema.GetModel().At(finding.m_iNode);
        if (rule == QLatin1String(finding.m_pRule->m_sIdentifier)) {
            places.append(QStringLiteral("%1:%2").arg(node.m_iLine).arg(node.m_iColumn));
        }
    }
    return places;
}

} // namespace

void TestSchemaCheck::rulesAreTrue_data()
{
    QTest::addColumn<QStringList>("row");
    for (const QStringList &row : Rows()) {
        QTest::newRow(qPrintable(row.first() + QLatin1String(" ") + row.at(1).left(60))) << row;
    }
}

void TestSchemaCheck::rulesAreTrue()
{
    QFETCH(QStringList, row);
    QStringList expected = row.first().split(QLatin1Char(','));
    const QString rule = expected.first();
    expected.sort();
    const QTemporaryDir breaking;
    const QString text = Expand(row.at(1));
    const CheckedSchema found(Write(breaking, QString(text).remove(QLatin1Char('^'))));
    QCOMPARE(found.GetError(), QString());
    QCOMPARE(RulesIn(found), expected);
    if (text.contains(QLatin1Char('^'))) {
        // The tags of xs:schema go around each file, and its name stands ahead of it.
        const QString line = text.left(text.indexOf(QLatin1Char('^')))
                                 .section(QLatin1Char('\n'), -1)
                                 .section(QLatin1String(".xsd: "), -1);
        const int column = line.startsWith(QLatin1String("raw:")) ? line.size() - 3 : line.size() + 13;
        QVERIFY2(PlacesOf(found, rule).contains(QStringLiteral("1:%1").arg(column)),
                 qPrintable(found.Line(found.GetFindings().front(), false)));
    }
    const QTemporaryDir keeping;
    const CheckedSchema other(Write(keeping, Expand(row.at(2))));
    QCOMPARE(other.GetError(), QString());
    QCOMPARE(PlacesOf(other, rule), QStringList());
}

void TestSchemaCheck::everyRuleHasItsRow()
{
    QSet<QString> rules;
    for (const QStringList &row : Rows()) {
        rules.insert(row.first().section(QLatin1Char(','), 0, 0));
    }
    for (const Rule &rule : AllRules()) {
        QVERIFY2(rules.contains(QLatin1String(rule.m_sIdentifier)), rule.m_sIdentifier);
    }
}

void TestSchemaCheck::theManualListsTheRules()
{
    const QString manual = ReadAll(QStringLiteral(MANUAL));
    QVERIFY(manual.contains(RulesAsManual()));
    for (const Rule &rule : AllRules()) {
        const QString heading = QLatin1String(rule.m_sHeading);
        QVERIFY2(manual.contains(QStringLiteral("\n**%1**").arg(heading))
                     || manual.contains(QStringLiteral("# %1\n").arg(heading)),
                 rule.m_sHeading);
    }
}

void TestSchemaCheck::aNewcomerGetsALineForEachTrap()
{
    QStringList rules { QStringLiteral("first-ref"),          QStringLiteral("flat-type"),
                        QStringLiteral("hundreds"),           QStringLiteral("inline-attribute-type"),
                        QStringLiteral("name-prefix"),        QStringLiteral("named-occurs"),
                        QStringLiteral("optional-attribute"), QStringLiteral("unchecked-facet"),
                        QStringLiteral("user-restriction"),   QStringLiteral("valueless-type") };
    rules.sort();
    QCOMPARE(RulesIn(CheckedSchema(QStringLiteral(TEST_DATA_DIR "/newcomer.xsd"))), rules);
}

void TestSchemaCheck::whatIsMendedValidates()
{
    const QString schema = QStringLiteral(TEST_DATA_DIR "/mended.xsd");
    QCOMPARE(RulesIn(CheckedSchema(schema)), QStringList());
    const QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("report.xml"));
    ScriptedReceiver receiver;
    XmlCreateReport report(&receiver);
    receiver.m_fnElement = [&report](ElemBeginEvent &event) {
        const QXmlAttributes attributes = event.GetElementAttributes();
        if (event.GetElementName() == QLatin1String("Signal")) {
            report.SetElementMaxOccurs(QStringLiteral("Signal"), 3);
        }
        for (const char *name : { "Version", "Status" }) {
            if (attributes.index(QLatin1String(name)) >= 0) {
                report.SetAttributeValue(QLatin1String(name), QStringLiteral("known"));
            }
        }
        if (attributes.value(QStringLiteral("type")) == QLatin1String("double")) {
            report.SetXmlValue(4.5);
        } else if (attributes.index(QStringLiteral("type")) >= 0) {
            report.SetXmlValue(QStringLiteral("text"));
        }
    };
    QVERIFY(report.CreateXmlFromSchema(schema, path, false));
    QCOMPARE(ReadAll(path).count(QLatin1String("<Frequency>4.5<")), 3);
    const QString judge = QStandardPaths::findExecutable(QStringLiteral("xmllint"));
    if (judge.isEmpty()) {
        QSKIP("xmllint isn't here to judge the report");
    }
    QCOMPARE(QProcess::execute(judge, { QStringLiteral("--noout"), QStringLiteral("--schema"), schema, path }), 0);
}

void TestSchemaCheck::theProgramSaysIt_data()
{
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<QString>("output");
    QTest::newRow("nothing") << "check good.xsd" << 0 << "^$";
    QTest::newRow("a line")
        << "check sub/bad.xsd" << 1
        << "^sub/bad.xsd:1:13: warning: an element of type \"xs:int\" takes no value: use .* \\[valueless-type\\]\n$";
    QTest::newRow("told only") << "check --only-warn sub/bad.xsd" << 0 << "valueless-type";
    QTest::newRow("disabled") << "check --disable valueless-type sub/bad.xsd good.xsd" << 0 << "^$";
    QTest::newRow("cured") << "check --valid-output sub/optional.xsd" << 0 << "^$";
    QTest::newRow("not cured") << "check sub/optional.xsd" << 1 << "optional-attribute";
    QTest::newRow("a folder, each file once")
        << "check . sub/bad.xsd" << 2 << "^.*sub/bad.xsd:1:13: [^\n]*\n.*sub/optional.*\n$";
    QTest::newRow("json") << "check --format json sub/bad.xsd" << 1 << "\"column\": 13,.*\"rule\": \"valueless-type\"";
    QTest::newRow("no XML") << "check broken.xsd" << 2 << "^broken.xsd:1:[0-9]+: error: ";
    QTest::newRow("no file") << "check none.xsd" << 2 << "^none.xsd:1:1: error: ";
    QTest::newRow("no such rule") << "check --disable x good.xsd" << 2 << "no rule \"x\"";
    QTest::newRow("no command") << "chekc good.xsd" << 2 << "--help";
    QTest::newRow("template") << "template good.xsd" << 0
                              << "^<r>\n  <s> <!-- occurs 1..unbounded -->\n    <v type=\"double\"/>\n  </s>\n</r>\n$";
    QTest::newRow("names") << "names good.xsd" << 0 << "^Place .*\ns +1..unbounded\ns/v +double\n$";
    QTest::newRow("code") << "names --code good.xsd" << 0
                          << "AddReportContainer\\(\"s\", 1\\);.*AddReportSource\\(\"v\", .*GetIndex\\(\"s\"\\)";
}

void TestSchemaCheck::theProgramSaysIt()
{
    QFETCH(QString, arguments);
    QFETCH(int, exitCode);
    QFETCH(QString, output);
    const QTemporaryDir dir;
    schemafiles::Write(
        dir,
        QStringLiteral("good.xsd: include part.xsd;<xs:element name=\"r\"><xs:complexType><xs:sequence><xs:element "
                       "name=\"s\" type=\"T\" maxOccurs=\"unbounded\"/></xs:sequence></xs:complexType></xs:element>\n"
                       "part.xsd: <xs:complexType name=\"T\"><xs:sequence><xs:element name=\"v\" "
                       "type=\"xs:double\"/></xs:sequence></xs:complexType>\n"
                       "broken.xsd: <xs:element\n"
                       "sub/bad.xsd: <xs:element name=\"a\" type=\"xs:int\"/>\n"
                       "sub/optional.xsd: <xs:element name=\"a\"><xs:complexType><xs:attribute name=\"b\" "
                       "type=\"xs:string\"/></xs:complexType></xs:element>"));
    QProcess program;
    program.setWorkingDirectory(dir.path());
    program.setProcessChannelMode(QProcess::MergedChannels);
    program.start(QStringLiteral(SCHEMACHECK), arguments.split(QLatin1Char(' ')));
    QVERIFY(program.waitForFinished());
    const QString text = QString::fromUtf8(program.readAll());
    QVERIFY2(QRegularExpression(output, QRegularExpression::DotMatchesEverythingOption).match(text).hasMatch(),
             qPrintable(text));
    QCOMPARE(program.exitCode(), exitCode);
}

QTEST_GUILESS_MAIN(TestSchemaCheck)

#include "tst_schemacheck.moc"

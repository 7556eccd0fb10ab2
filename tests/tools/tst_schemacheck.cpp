#include "checkedschema.h"
#include "support/rows.h"
#include "support/schemafiles.h"
#include "support/schematext.h"

#include <QProcess>
#include <QtTest>

namespace {

QList<QStringList> RuleRows()
{
    QList<QStringList> rows;
    const QString lines = QString::fromUtf8(FileBytes(QStringLiteral(TEST_DATA_DIR "/rules.rows")));
    for (QString line : lines.split(QLatin1Char('\n'), Qt::SkipEmptyParts)) {
        rows.append(line.replace(QLatin1String("\\n"), QLatin1String("\n")).split(QStringLiteral(" | ")));
    }
    return rows;
}

QString Write(const QTemporaryDir &dir, const QString &text)
{
    return text.startsWith(QLatin1String("raw:"))
        ? WriteFile(dir.filePath(QStringLiteral("top.xsd")), text.mid(4).toUtf8())
        : schemafiles::Write(dir, text);
}

/// The broken rules in the order of their names, with places as "rule line:column" where these are asked for.
QStringList BrokenRules(const CheckedSchema &schema, bool withPlaces = false)
{
    QStringList findings;
    for (const Finding &finding : schema.GetFindings()) {
        const SchemaNode &node = schema.GetModel().At(finding.m_iNode);
        const QString place = QStringLiteral(" %1:%2").arg(node.m_iLine).arg(node.m_iColumn);
        findings.append(QLatin1String(finding.m_pRule->m_sIdentifier) + (withPlaces ? place : QString()));
    }
    findings.sort();
    return findings;
}

// Arguments, the exit code, and what the output matches.
constexpr const char *kProgramRows[][4] = {
    { "nothing", "check good.xsd", "0", "^$" },
    { "a line", "check sub/bad.xsd", "1",
      "^sub/bad.xsd:1:13: warning: an element of type \"xs:int\" takes no value: use .* \\[valueless-type\\]\n$" },
    { "told only", "check --only-warn sub/bad.xsd", "0", "valueless-type" },
    { "disabled", "check --disable valueless-type sub/bad.xsd good.xsd", "0", "^$" },
    { "cured", "check --valid-output sub/optional.xsd", "0", "^$" },
    { "not cured", "check sub/optional.xsd", "1", "optional-attribute" },
    { "a folder, each file once", "check . sub/bad.xsd", "2", "^.*sub/bad.xsd:1:13: [^\n]*\n.*sub/optional.*\n$" },
    { "json", "check --format json sub/bad.xsd", "1", "\"column\": 13,.*\"rule\": \"valueless-type\"" },
    { "no XML", "check broken.xsd", "2", "^broken.xsd:1:[0-9]+: error: " },
    { "no file", "check none.xsd", "2", "^none.xsd:1:1: error: " },
    { "no such rule", "check --disable x good.xsd", "2", "no rule \"x\"" },
    { "no command", "chekc good.xsd", "2", "--help" },
    { "template", "template good.xsd", "0",
      "^<r>\n  <s> <!-- occurs 1..unbounded -->\n    <v type=\"double\"/>\n  </s>\n</r>\n$" },
    { "names", "names good.xsd", "0", "^Place .*\ns +1..unbounded\ns/v +double\n$" },
    { "code", "names --code good.xsd", "0",
      "AddReportContainer\\(\"s\", 1\\);.*AddReportSource\\(\"v\", .*GetIndex\\(\"s\"\\)" },
};

} // namespace

/// tagwright-schema: each rule by a schema that breaks it and one that narrowly doesn't, and the program around them.
///
/// A row of data/rules.rows holds what is found, then the schema with "^" ahead of the tag at which the first of these
/// is found, then the other schema. "\n" stands between files, "raw:" ahead of a whole file, and what repeats is
/// written as schemafiles::Repeated() takes it.
class TestSchemaCheck : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void rulesAreTrue_data()
    {
        QTest::addColumn<QStringList>("row");
        for (const QStringList &row : RuleRows()) {
            QTest::newRow(qPrintable(row.first() + QLatin1String(" ") + row.at(1).left(60))) << row;
        }
    }

    void rulesAreTrue()
    {
        QFETCH(QStringList, row);
        QStringList expected = row.first().split(QLatin1Char(','));
        const QString rule = expected.first();
        expected.sort();
        const QTemporaryDir breaking;
        const QString text = schemafiles::Repeated(row.at(1));
        const CheckedSchema found(Write(breaking, QString(text).remove(QLatin1Char('^'))));
        QCOMPARE(found.GetError(), QString());
        QCOMPARE(BrokenRules(found), expected);
        if (text.contains(QLatin1Char('^'))) {
            // The tags of xs:schema go around each file, and its name stands ahead of it.
            const QString line = text.section(QLatin1Char('^'), 0, 0)
                                     .section(QLatin1Char('\n'), -1)
                                     .section(QLatin1String(".xsd: "), -1);
            const int column = line.startsWith(QLatin1String("raw:")) ? line.size() - 3 : line.size() + 13;
            QVERIFY2(BrokenRules(found, true).contains(QStringLiteral("%1 1:%2").arg(rule).arg(column)),
                     qPrintable(found.Line(found.GetFindings().front(), false)));
        }
        const QTemporaryDir keeping;
        const CheckedSchema other(Write(keeping, schemafiles::Repeated(row.at(2))));
        QCOMPARE(other.GetError(), QString());
        QVERIFY(!BrokenRules(other).contains(rule));
    }

    void everyRuleHasItsRowAndStandsInTheManual()
    {
        QSet<QString> rules;
        for (const QStringList &row : RuleRows()) {
            rules.insert(row.first().section(QLatin1Char(','), 0, 0));
        }
        const QString manual = QString::fromUtf8(FileBytes(QStringLiteral(MANUAL)));
        QVERIFY(manual.contains(RulesAsManual()));
        for (const Rule &rule : AllRules()) {
            QVERIFY2(rules.contains(QLatin1String(rule.m_sIdentifier)), rule.m_sIdentifier);
            const QString heading = QLatin1String(rule.m_sHeading);
            QVERIFY2(manual.contains(QStringLiteral("\n**%1**").arg(heading))
                         || manual.contains(QStringLiteral("# %1\n").arg(heading)),
                     rule.m_sHeading);
        }
    }

    void theProgramSaysIt_data() { AddRows(kProgramRows); }
    void theProgramSaysIt()
    {
        QFETCH(QStringList, row);
        const QTemporaryDir dir;
        schemafiles::Write(dir,
                           Expanded(QStringLiteral("good.xsd: include part.xsd;<e r><c><q><e s type=T max=unbounded/>"
                                                   "</q></c></e>\n"
                                                   "part.xsd: <c T><q><e v type=xs:double/></q></c>\n"
                                                   "broken.xsd: <xs:element\n"
                                                   "sub/bad.xsd: <e a type=xs:int/>\n"
                                                   "sub/optional.xsd: <e a><c><a b type=xs:string/></c></e>")));
        QProcess program;
        program.setWorkingDirectory(dir.path());
        program.setProcessChannelMode(QProcess::MergedChannels);
        program.start(QStringLiteral(SCHEMACHECK), row.at(0).split(QLatin1Char(' ')));
        QVERIFY(program.waitForFinished());
        const QString text = QString::fromUtf8(program.readAll());
        const QRegularExpression output(row.at(2), QRegularExpression::DotMatchesEverythingOption);
        QVERIFY2(output.match(text).hasMatch(), qPrintable(text));
        QCOMPARE(program.exitCode(), row.at(1).toInt());
    }
};

QTEST_GUILESS_MAIN(TestSchemaCheck)

#include "tst_schemacheck.moc"

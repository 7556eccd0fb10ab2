// tagwright-schema: tells the author of a schema what the library makes of it. See packaging/man/schemacheck.1.in.

#include "checkedschema.h"
#include "templateviews.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDirIterator>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMap>
#include <QSet>

#include <algorithm>
#include <cstdio>
#include <unistd.h>

namespace {

enum ExitCode { NothingFound = 0, SomethingFound = 1, NotReadable = 2 };

void Print(FILE *stream, const QString &text)
{
    const QByteArray bytes = text.toUtf8();
    std::fwrite(bytes.constData(), 1, static_cast<std::size_t>(bytes.size()), stream);
}

int FailUsage(const QString &text)
{
    Print(stderr, QCoreApplication::applicationName() + QLatin1String(": ") + text + QLatin1Char('\n'));
    return NotReadable;
}

class Program
{
public:
    Program();
    int Run(const QStringList &arguments);

private:
    QString ReadOptions(const QStringList &arguments);
    int Check(const QStringList &paths);
    int Show(const QString &command, const QString &path);
    void Report(const CheckedSchema &schema);
    bool IsWanted(const Finding &finding) const;

    QCommandLineParser m_oParser;
    QSet<QString> m_lDisabled;
    bool m_bJson = false;
    QJsonArray m_lObjects;
    // A file that several schemas include is told of once.
    QSet<QString> m_lTold;
    int m_iExitCode = NothingFound;
};

Program::Program()
{
    m_oParser.setApplicationDescription(
        QStringLiteral("Tells what the Tagwright library makes of an XSD schema.\n\n"
                       "  check FILE.xsd|FOLDER ...   every trap, one line each: 0 none, 1 some, 2 not readable\n"
                       "  template FILE.xsd           the template that a report fills\n"
                       "  names FILE.xsd              the names that a host can fill\n"
                       "  rules                       the list of the rules, as the manual has it"));
    m_oParser.addHelpOption();
    m_oParser.addVersionOption();
    m_oParser.addOptions({
        { QStringLiteral("format"), QStringLiteral("text (as compilers write) or json"), QStringLiteral("format"),
          QStringLiteral("text") },
        { QStringLiteral("disable"), QStringLiteral("a rule to leave out; may stand several times"),
          QStringLiteral("rule") },
        { QStringLiteral("valid-output"), QStringLiteral("leave out the rules that valid output cures") },
        { QStringLiteral("only-warn"), QStringLiteral("end with 0, whatever is found in schemas that can be read") },
        { QStringLiteral("code"), QStringLiteral("names as lines of C++ to paste") },
    });
    m_oParser.addPositionalArgument(QStringLiteral("command"), QStringLiteral("check, template, names or rules"));
    m_oParser.addPositionalArgument(QStringLiteral("files"), QStringLiteral("schemas, or folders of them"),
                                    QStringLiteral("FILE.xsd ..."));
}

int Program::Run(const QStringList &arguments)
{
    const QString wrong = ReadOptions(arguments);
    if (!wrong.isEmpty()) {
        return FailUsage(wrong);
    }
    const QString command = m_oParser.positionalArguments().value(0);
    const QStringList paths = m_oParser.positionalArguments().mid(1);
    if (command == QLatin1String("check") && !paths.isEmpty()) {
        return Check(paths);
    }
    if ((command == QLatin1String("template") || command == QLatin1String("names")) && paths.size() == 1) {
        return Show(command, paths.first());
    }
    if (command == QLatin1String("rules") && paths.isEmpty()) {
        Print(stdout, RulesAsManual());
        return NothingFound;
    }
    return FailUsage(QStringLiteral("see %1 --help").arg(QCoreApplication::applicationName()));
}

// What is wrong about them; empty if nothing is.
QString Program::ReadOptions(const QStringList &arguments)
{
    if (!m_oParser.parse(arguments)) {
        return m_oParser.errorText();
    }
    if (m_oParser.isSet(QStringLiteral("help")) || m_oParser.isSet(QStringLiteral("version"))) {
        m_oParser.process(arguments);
    }
    const QStringList disabled = m_oParser.values(QStringLiteral("disable"));
    m_lDisabled = QSet<QString>(disabled.begin(), disabled.end());
    const auto unknown =
        std::find_if(disabled.begin(), disabled.end(), [](const QString &rule) { return FindRule(rule) == nullptr; });
    if (unknown != disabled.end()) {
        return QStringLiteral("there is no rule \"%1\"").arg(*unknown);
    }
    const QString format = m_oParser.value(QStringLiteral("format"));
    m_bJson = format == QLatin1String("json");
    return m_bJson || format == QLatin1String("text") ? QString()
                                                      : QStringLiteral("there is no format \"%1\"").arg(format);
}

QStringList FilesOf(const QString &folder)
{
    QStringList files;
    for (QDirIterator entries(folder, { QStringLiteral("*.xsd") }, QDir::Files, QDirIterator::Subdirectories);
         entries.hasNext();) {
        files.append(entries.next());
    }
    files.sort();
    return files;
}

QSet<QString> IncludesOf(const QString &file)
{
    QSet<QString> includes;
    const SchemaModel model(file);
    for (const QString &other : model.GetFiles().mid(1)) {
        includes.insert(QFileInfo(other).canonicalFilePath());
    }
    return includes;
}

// Of the files of a folder those that another one includes are checked with that one; of two that include each other
// the first stays.
QStringList TopFilesOf(const QString &folder)
{
    QMap<QString, QSet<QString>> includes;
    const QStringList files = FilesOf(folder);
    for (const QString &file : files) {
        includes.insert(QFileInfo(file).canonicalFilePath(), IncludesOf(file));
    }
    QStringList tops;
    for (const QString &file : files) {
        const QString path = QFileInfo(file).canonicalFilePath();
        const auto isAbove = [&](const QString &other) {
            return includes[other].contains(path) && !(includes[path].contains(other) && path <= other);
        };
        const QStringList all = includes.keys();
        if (std::none_of(all.begin(), all.end(), isAbove)) {
            tops.append(file);
        }
    }
    return tops;
}

int Program::Check(const QStringList &paths)
{
    QStringList files;
    for (const QString &path : paths) {
        files += QFileInfo(path).isDir() ? TopFilesOf(path) : QStringList { path };
    }
    for (const QString &file : std::as_const(files)) {
        Report(CheckedSchema(file));
    }
    if (m_bJson) {
        Print(stdout, QString::fromUtf8(QJsonDocument(m_lObjects).toJson()));
    }
    return m_iExitCode;
}

bool Program::IsWanted(const Finding &finding) const
{
    const bool isCured =
        m_oParser.isSet(QStringLiteral("valid-output")) && (finding.m_pRule->m_iFlags & Rule::ValidOutput) != 0;
    return !isCured && !m_lDisabled.contains(QLatin1String(finding.m_pRule->m_sIdentifier));
}

void Program::Report(const CheckedSchema &schema)
{
    if (!schema.GetError().isEmpty()) {
        Print(stderr, schema.GetError() + QLatin1Char('\n'));
        m_lObjects.append(QJsonObject { { QStringLiteral("error"), schema.GetError() } });
        m_iExitCode = NotReadable;
    }
    const bool inColours = isatty(STDOUT_FILENO) != 0;
    for (const Finding &finding : schema.GetFindings()) {
        const QString line = schema.Line(finding, inColours);
        if (!IsWanted(finding) || m_lTold.contains(line)) {
            continue;
        }
        m_lTold.insert(line);
        m_iExitCode =
            std::max<int>(m_iExitCode, m_oParser.isSet(QStringLiteral("only-warn")) ? NothingFound : SomethingFound);
        if (m_bJson) {
            m_lObjects.append(schema.Object(finding));
        } else {
            Print(stdout, line + QLatin1Char('\n'));
        }
    }
}

int Program::Show(const QString &command, const QString &path)
{
    ReaderRun run(path, ReaderRun::Undeclared::Fail);
    if (!run.HasTemplate()) {
        const QString error = run.GetError(path);
        return error.isEmpty() ? FailUsage(QStringLiteral("%1 gives no template; \"check\" tells why").arg(path))
                               : FailUsage(error);
    }
    if (command == QLatin1String("template")) {
        Print(stdout, templateviews::Template(run));
        return NothingFound;
    }
    const std::vector<templateviews::Name> names = templateviews::Names(run);
    const bool asCode = m_oParser.isSet(QStringLiteral("code"));
    Print(stdout, asCode ? templateviews::NamesCode(names) : templateviews::NamesTable(names));
    return NothingFound;
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral(TAGWRIGHT_PROGRAM));
    QCoreApplication::setApplicationVersion(QStringLiteral(TAGWRIGHT_VERSION));
    return Program().Run(QCoreApplication::arguments());
}

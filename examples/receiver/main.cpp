#include "consolerun.h"
#include "mainwindow.h"
#include "measurement.h"
#include "operatorlanguage.h"
#include "panelfile.h"
#include "pictures.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

#include <algorithm>

namespace {

/// The example schema, as it lies beside a built or an installed program.
QString FindSchema()
{
    const QDir program(QCoreApplication::applicationDirPath());
    const QString beside = program.filePath(QStringLiteral("schemas/measurement.xsd"));
    return QFileInfo::exists(beside)
        ? beside
        : QDir::cleanPath(program.filePath(QStringLiteral("../share/" DATA_FOLDER "/schemas/measurement.xsd")));
}

/// The control takes a bare name for one beside the program. On a command line it lies in the current folder.
QString ToSchemaPath(const QString &given)
{
    return given.contains(QLatin1Char('/')) ? given : QStringLiteral("./") + given;
}

QString DefaultReportFolder()
{
    QString folder = panelfile::RestoreReportFolder();
    if (folder.isEmpty()) {
        folder =
            QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation) + QStringLiteral("/Receiver reports");
    }
    return folder;
}

QString DefaultPanelPath()
{
    return QStandardPaths::writableLocation(QStandardPaths::AppDataLocation) + QStringLiteral("/panel.xml");
}

struct Options
{
    QString m_sSchema;
    QString m_sReportFolder;
    QString m_sPanelPath;
    QString m_sPictureFolder;
    QString m_sLanguage;
    bool m_bOnce = false;
};

Options ReadOptions(const QStringList &arguments)
{
    const QCommandLineOption schema(QStringLiteral("schema"), QStringLiteral("The XSD file of the reports."),
                                    QStringLiteral("file"), FindSchema());
    const QCommandLineOption out(QStringLiteral("out"), QStringLiteral("The folder of the reports."),
                                 QStringLiteral("folder"), DefaultReportFolder());
    const QCommandLineOption panel(QStringLiteral("panel"),
                                   QStringLiteral("The file that keeps the panel from one start to the next."),
                                   QStringLiteral("file"), DefaultPanelPath());
    const QCommandLineOption language(
        QStringLiteral("language"),
        QStringLiteral("The language of the windows (en, de, fr); the system's if it isn't given."),
        QStringLiteral("code"), QLocale::system().name());
    const QCommandLineOption once(QStringLiteral("once"), QStringLiteral("Make one report without a window."));
    const QCommandLineOption screenshot(QStringLiteral("screenshot"),
                                        QStringLiteral("Draw the windows into PNG files in a folder."),
                                        QStringLiteral("folder"));
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("A small monitoring receiver that makes XML reports."));
    parser.addHelpOption();
    parser.addOptions({ schema, out, panel, language, once, screenshot });
    parser.process(arguments);
    return { ToSchemaPath(parser.value(schema)), parser.value(out),      parser.value(panel),
             parser.value(screenshot),           parser.value(language), parser.isSet(once) };
}

bool IsWithoutWindow(int argc, char **argv)
{
    return std::any_of(argv + 1, argv + argc, [](const char *argument) {
        const QByteArray text(argument);
        return text == "--once" || text == "--help" || text == "-h" || text.startsWith("--screenshot");
    });
}

/// Tells Qt, ahead of the application, what it reads when that is made.
void PrepareQt(int argc, char **argv)
{
    if (IsWithoutWindow(argc, argv) && !qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
        // Works without a display, too.
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
#endif
}

int ShowWindow(Measurement &measurement, const Options &options)
{
    panelfile::Restore(measurement, options.m_sPanelPath);
    MainWindow window(measurement, options.m_sSchema, options.m_sReportFolder, options.m_sPanelPath);
    window.show();
    return QApplication::exec();
}

} // namespace

int main(int argc, char *argv[])
{
    PrepareQt(argc, argv);
    QApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("receiver"));
    const Options options = ReadOptions(QCoreApplication::arguments());
    const OperatorLanguage language(options.m_sLanguage);
    Measurement measurement;
    if (!options.m_sPictureFolder.isEmpty()) {
        return DrawPictures(measurement, options.m_sSchema, options.m_sPictureFolder);
    }
    QDir().mkpath(options.m_sReportFolder);
    if (options.m_bOnce) {
        return RunOnce(measurement, options.m_sSchema, options.m_sReportFolder);
    }
    return ShowWindow(measurement, options);
}

// What docs/embedding.md shows, in its order: embedding STATION.xsd
#include "control/vcreporting.h"
#include "events/xmlevent.h"
#include "host/ostrel.h"
#include "host/quilmar.h"
#include "host/veldra.h"
#include "report/reportoutcome.h"
#include "report/xmlcreatereport.h"
#include "xml/xmlreader.h"
#include "xml/xmlwriter.h"

#include <QApplication>
#include <QDateTime>
#include <QDebug>
#include <QDir>
#include <QFile>
#include <QMainWindow>
#include <QStatusBar>
#include <QTemporaryDir>
#include <QToolBar>
#include <QToolButton>

namespace {

void FillTree(values::MemoryTree &tree)
{
    tree.SetText("Station/Operator", "M. Keller");
    tree.SetNumber("Receiver/Frequency", 98.1e6, "Hz");
    tree.SetNumber("Receiver/Level", 42.5, "dBµV");
    tree.SetSelection("Receiver/Bandwidth", 3, "150 kHz");
    tree.SetText("Antenna/Name", "Log-periodic");
    tree.SetNumber("Antenna/Height", 12.5, "m");
}

VCReporting *MakeControl(QMainWindow &window, const QString &schema, const QString &reportFolder)
{
    QToolBar *toolBar = window.addToolBar("Report");
    auto *control = new VCReporting(schema, reportFolder, toolBar, true, "reporting", false, QPixmap());
    toolBar->addWidget(control);
    return control;
}

void ConnectControl(VCReporting *control, QMainWindow *window)
{
    QObject::connect(control, &VCReporting::PrepareToReport, window, [control] {
        // The last moment to change anything for the report that is about to be made.
        control->DeleteReportData("Sweeps");
        control->AddExplicitReportData("Sweeps", 16, 1, "", 0, "");
    });
    QObject::connect(control, &VCReporting::ReportDirAndSchemaAvailable, window, [window](bool isAvailable) {
        window->setWindowTitle(isAvailable ? "Ready" : "Schema or report folder is missing");
    });
    QObject::connect(control, &VCReporting::ReportSuccessful, window, [] { qInfo("The report has been made"); });
    QObject::connect(control, &VCReporting::ReportNotSuccessful, window, [] { qInfo("The schema can't be read"); });
}

void FollowReports(VCReporting *control, QMainWindow *window)
{
    QObject::connect(control, &VCReporting::ReportFinished, window, [window](const ReportOutcome &outcome) {
        const QString where = outcome.IsSaved() ? outcome.GetPath() : outcome.GetSaveError();
        window->statusBar()->showMessage(outcome.IsComplete() ? where : where + ": look at the values");
        for (const ReportOutcome::RefusedValue &refused : outcome.GetRefusedValues()) {
            qInfo().noquote() << refused.m_sPlace << refused.m_sValue << refused.m_sReason;
        }
    });
}

void AddItems(VCReporting *control)
{
    // name in the schema, path in the tree, fixed text, occurrences, note, power of ten to divide by, unit
    control->AddReportData("Frequency", "Receiver/Frequency", "", 1, "", 6, "MHz");
    control->AddReportData("Level", "Receiver/Level", "", 1, "", 0, "");
    control->AddReportData("Operator", "", "M. Keller", 1, "", 0, "");
}

void AddWholeBranch(VCReporting *control, values::MemoryTree &tree)
{
    // "Name" and "Height", each under its short name.
    control->AddReportData(tree.AddNode("Antenna"));
}

void AddOneOfSeveral(VCReporting *control)
{
    // Only the Height whose parent is called Antenna.
    control->AddReportData("Antenna/Height", "Antenna/Height", "", 1, "", 0, "m");
}

void AddExplicitItems(VCReporting *control)
{
    control->AddExplicitReportData("Operator", "M. Keller", 1, "", 0, "");
    control->AddExplicitReportData("Frequency", 98.1e6, 1, "", 6, "MHz");
    control->AddExplicitReportData("Sweeps", 16, 1, "", 0, "");
    control->AddExplicitReportData("Calibrated", true, 1, "", 0, "");
}

void AddRepeatedItem(VCReporting *control)
{
    // Three Marker elements, each with the same text; the schema must allow three.
    control->AddReportData("Marker", "", "peak", 3, "", 0, "");
}

/// Stands in for the system's clock as long as it lives.
class StationClock : public IOrvoOS
{
public:
    StationClock() { OrvoOS::SetClock(this); }
    ~StationClock() override { OrvoOS::SetClock(nullptr); }

    quint64 GetTime() override
    {
        return static_cast<quint64>(QDateTime(QDate(2024, 5, 17), QTime(9, 30)).toMSecsSinceEpoch());
    }
};

void TraceToFile(QtMsgType, const QMessageLogContext &context, const QString &message)
{
    QFile file("tagwright.log");
    if (qstrcmp(context.category, "tagwright") == 0 && file.open(QIODevice::Append)) {
        file.write(message.toUtf8() + '\n');
    }
}

void SwitchTracesOn()
{
    ErrorHandler::SetTraceMask(32);
    qInstallMessageHandler(TraceToFile);
}

/// A receiver of one's own: as many markers as there are, each with a text of its own.
class MarkerReport : public ITagwright
{
public:
    explicit MarkerReport(const QStringList &markers)
        : m_lMarkers(markers)
    {
    }

    bool Make(const QString &schema, const QString &report)
    {
        XmlCreateReport builder(this);
        m_pBuilder = &builder;
        const bool isRead = builder.CreateXmlFromSchema(schema, report, false);
        m_pBuilder = nullptr;
        return isRead;
    }

    void XmlUpdate(XmlEvent *event) override
    {
        if (event->GetType() == XmlEvent::EVENT_ERROR) {
            m_lErrors.append(static_cast<ErrorEvent *>(event)->GetErrorID());
        } else if (event->GetType() == XmlEvent::EVENT_ELEM_BEGIN) {
            Fill(static_cast<ElemBeginEvent *>(event)->GetElementName());
        }
    }

    ReportOutcome MakeValid(const QString &schema, const QString &report)
    {
        XmlCreateReport builder(this);
        m_pBuilder = &builder;
        builder.SetValidOutput(true);
        builder.CreateXmlFromSchema(schema, report, false);
        m_pBuilder = nullptr;
        return builder.GetOutcome();
    }

    /// The numbers of what did not fit.
    QList<int> m_lErrors;

private:
    void Fill(const QString &name)
    {
        if (name == "Marker" && m_iNext < m_lMarkers.size()) {
            m_pBuilder->SetElementMaxOccurs(name, m_lMarkers.size());
            m_pBuilder->SetXmlValue(m_lMarkers.at(m_iNext++));
        } else if (name == "Frequency") {
            m_pBuilder->SetAttributeValue("Unit", "MHz");
            m_pBuilder->SetXmlValue(98.1);
        } else if (name == "DateTime") {
            m_pBuilder->SetXmlValue(QDateTime::currentDateTime());
        } else if (name == "Level") {
            m_pBuilder->SetXmlValue(400.0);
        } else if (name == "Operator") {
            m_pBuilder->SetXmlValue("M. Keller");
        }
    }

    QStringList m_lMarkers;
    int m_iNext = 0;
    XmlCreateReport *m_pBuilder = nullptr;
};

void SaveBranch(values::MemoryTree &tree, const QString &path)
{
    XMLWriter writer;
    writer.CreateXmlFile(path, "Settings");
    writer.CreateElementsFromNode(tree.AddNode("Receiver"));
    writer.SaveXmlFile();
}

/// Notes the text of each element that it hears of.
class SettingsReader : public ITagwright
{
public:
    bool Read(const QString &path)
    {
        XMLReader reader(this, nullptr);
        reader.SetXmlContent(path);
        return reader.ParseXml();
    }

    void XmlUpdate(XmlEvent *event) override
    {
        if (event->GetType() == XmlEvent::EVENT_ELEM_BEGIN) {
            auto *begin = static_cast<ElemBeginEvent *>(event);
            m_hTexts[begin->GetElementName()] = begin->GetElementNode().toElement().text();
        }
    }

    QMap<QString, QString> m_hTexts;
};

/// The text of a report of the folder; the only one.
QString ReadReport(const QDir &folder)
{
    QFile file(folder.filePath(folder.entryList({ "*.xml" }, QDir::Files).value(0)));
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

bool IsControlReport(const QString &text)
{
    return text.contains("<Operator>M. Keller</Operator>") && text.contains("<Frequency Unit=\"MHz\">98.1</Frequency>")
        && text.contains("<Level>42.5</Level>") && text.contains("<Sweeps>16</Sweeps>")
        && text.contains("<Calibrated>true</Calibrated>") && text.contains("<Height Unit=\"m\">12.5</Height>")
        && text.count("<Marker>peak</Marker>") == 3;
}

bool RunControl(values::MemoryTree &tree, const QString &schema, const QDir &folder)
{
    QMainWindow window;
    VCReporting *control = MakeControl(window, schema, folder.path());
    ConnectControl(control, &window);
    FollowReports(control, &window);
    AddItems(control);
    AddOneOfSeveral(control);
    AddWholeBranch(control, tree);
    AddExplicitItems(control);
    AddRepeatedItem(control);
    control->GetReportButton()->click();
    const bool isTold = window.statusBar()->currentMessage().endsWith("2024-05-17_09-30-00-0.xml");
    return isTold && folder.exists("2024-05-17_09-30-00-0.xml") && IsControlReport(ReadReport(folder));
}

bool RunReceiver(const QString &schema, const QDir &folder)
{
    MarkerReport report({ "first", "second" });
    const bool isRead = report.Make(schema, folder.filePath("markers.xml"));
    const QString text = ReadReport(folder);
    // The level is out of its bounds: 15. It may not be left out, either: 15 and 16, as it has no limits.
    return isRead && text.contains("<Marker>first</Marker>") && text.contains("<Marker>second</Marker>")
        && report.m_lErrors.contains(ITagwright::CURRENT_VALUE_IS_NOT_VALID);
}

QString Describe(const ReportOutcome &outcome)
{
    QStringList lines(outcome.IsSaved() ? "Saved as " + outcome.GetPath() : "Not saved: " + outcome.GetSaveError());
    for (const ReportOutcome::RefusedValue &refused : outcome.GetRefusedValues()) {
        lines += refused.m_sPlace + ": " + refused.m_sValue + " was not written: " + refused.m_sReason;
    }
    for (const QString &place : outcome.GetMissing()) {
        lines += place + " is missing";
    }
    return lines.join('\n');
}

bool RunValid(const QString &schema)
{
    MarkerReport report({ "first", "second" });
    const ReportOutcome outcome = report.MakeValid(schema, "valid.xml");
    return !outcome.IsComplete()
        && Describe(outcome)
        == "Saved as valid.xml\n/StationReport/Level: 400 was not written: it breaks maxInclusive 160\n"
           "/StationReport/Level is missing";
}

bool RunXml(values::MemoryTree &tree, const QString &path)
{
    SaveBranch(tree, path);
    SettingsReader settings;
    return settings.Read(path) && settings.m_hTexts.value("Bandwidth") == "150 kHz";
}

} // namespace

int main(int argc, char *argv[])
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    const QString schema = QFileInfo(application.arguments().value(1)).absoluteFilePath();
    QTemporaryDir place;
    QDir::setCurrent(place.path());
    QDir().mkpath("control");
    QDir().mkpath("receiver");

    TranslationCenter::Instance().SetLocale(QLocale("de"));
    values::MemoryTree tree;
    values::Tree::Install(&tree);
    FillTree(tree);
    StationClock clock;
    SwitchTracesOn();
    const bool isGood = RunControl(tree, schema, QDir("control")) && RunReceiver(schema, QDir("receiver"))
        && RunValid(schema) && RunXml(tree, "settings.xml") && QFile::exists("tagwright.log");
    qInstallMessageHandler(nullptr);
    qInfo(isGood ? "All as the page says" : "Something differs from what the page says");
    return isGood ? 0 : 1;
}

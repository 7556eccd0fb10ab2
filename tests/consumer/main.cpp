// A host's program that uses each of the exported classes once: consumer SCHEMA.xsd DIRECTORY
// It makes a report through the control, reads it with XMLReader and writes its values with XMLWriter.

#include "control/reportdata.h"
#include "control/vcreporting.h"
#include "events/xmlevent.h"
#include "host/quilmar.h"
#include "report/xmlcreatereport.h"
#include "xml/xmlreader.h"
#include "xml/xmlwriter.h"

#include <QApplication>
#include <QDir>
#include <QToolBar>
#include <QtDebug>

#include <memory>

namespace {

class ElementCounter : public ITagwright
{
public:
    void XmlUpdate(XmlEvent *event) override { m_iElements += event->GetType() == XmlEvent::EVENT_ELEM_BEGIN ? 1 : 0; }

    int m_iElements = 0;
};

bool fail(const char *what)
{
    qCritical() << "consumer:" << what;
    return false;
}

bool makeReport(const QString &schema, const QString &directory)
{
    QToolBar toolBar;
    VCReporting control(schema, directory, &toolBar, true, "reporting", false, QPixmap());
    control.AddReportData("Frequency", "Receiver/Frequency", "", 1, "", 6, "MHz");
    control.AddReportData("Level", "Receiver/Level", "", 1, "", 0, "dBuV");
    control.AddExplicitReportData("Operator", "Kim", 1, "", 0, "");
    return control.SlotToReport() || fail("no report");
}

bool readReport(const QString &path)
{
    ElementCounter counter;
    XMLReader reader(&counter, nullptr);
    reader.SetXmlContent(path);
    if (!reader.ParseXml() || counter.m_iElements < 4) {
        return fail("the report can't be read");
    }
    const auto found = reader.GetElement("Frequency", "");
    const bool good = found->size() == 1 && found->front().toElement().text() == "98.1";
    return good || fail("the report holds another frequency");
}

} // namespace

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    if (argc != 3) {
        return 2;
    }
    values::MemoryTree tree;
    values::Tree::Install(&tree);
    tree.SetNumber("Receiver/Frequency", 98.1e6, "Hz");
    tree.SetNumber("Receiver/Level", 42.5, "dBuV");

    const QDir directory(argv[2]);
    if (!makeReport(argv[1], directory.path())) {
        return 1;
    }
    const QStringList reports = directory.entryList({ "*.xml" });
    return reports.size() == 1 && readReport(directory.filePath(reports.front())) ? 0 : 1;
}

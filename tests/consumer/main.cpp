// A host's program: consumer SCHEMA.xsd DIRECTORY
// It makes a report through the control, and reads it with XMLReader.

#include "control/reportdata.h"
#include "control/vcreporting.h"
#include "events/xmlevent.h"
#include "host/quilmar.h"
#include "report/xmlcreatereport.h"
#include "xml/xmlreader.h"
#include "xml/xmlwriter.h"

#include <QApplication>
#include <QDir>
#include <QtDebug>

class ElementCounter : public ITagwright
{
public:
    void XmlUpdate(XmlEvent *event) override { m_iElements += event->GetType() == XmlEvent::EVENT_ELEM_BEGIN ? 1 : 0; }

    int m_iElements = 0;
};

int main(int argc, char *argv[])
{
    const QApplication application(argc, argv);
    if (argc != 3) {
        return 2;
    }
    values::MemoryTree tree;
    values::Tree::Install(&tree);
    tree.SetNumber("Receiver/Frequency", 98.1e6, "Hz");
    const QDir directory(argv[2]);
    VCReporting control(argv[1], directory.path(), nullptr, true, "reporting", false, QPixmap());
    control.AddReportData("Frequency", "Receiver/Frequency", "", 1, "", 6, "MHz");
    control.AddExplicitReportData("Operator", "Kim", 1, "", 0, "");
    const QStringList reports = control.SlotToReport() ? directory.entryList({ "*.xml" }) : QStringList();
    if (reports.size() != 1) {
        qCritical() << "consumer: no report";
        return 1;
    }
    ElementCounter counter;
    XMLReader reader(&counter, nullptr);
    reader.SetXmlContent(directory.filePath(reports.front()));
    const bool isRead = reader.ParseXml() && counter.m_iElements >= 4;
    const auto found = reader.GetElement("Frequency", "");
    if (!isRead || found->size() != 1 || found->front().toElement().text() != "98.1") {
        qCritical() << "consumer: the report can't be read, or holds another frequency";
        return 1;
    }
    return 0;
}

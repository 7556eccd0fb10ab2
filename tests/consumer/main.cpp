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

struct Listener : ITagwright
{
    void XmlUpdate(XmlEvent *) override { }
};

int main(int argc, char *argv[])
{
    const QApplication application(argc, argv);
    values::MemoryTree tree;
    values::Tree::Install(&tree);
    tree.SetNumber("Receiver/Frequency", 98.1e6, "Hz");
    const QDir directory(argv[2]);
    VCReporting control(argv[1], directory.path(), nullptr, true, "reporting", false, QPixmap());
    control.AddReportData("Frequency", "Receiver/Frequency", "", 1, "", 6, "MHz");
    control.AddExplicitReportData("Operator", "Kim", 1, "", 0, "");
    const bool isMade = control.SlotToReport();
    Listener listener;
    XMLReader reader(&listener, nullptr);
    reader.SetXmlContent(directory.filePath(directory.entryList({ "*.xml" }).value(0)));
    const bool isRead = isMade && reader.ParseXml();
    const auto *found = reader.GetElement("Frequency", "");
    if (!isRead || found->size() != 1 || found->front().toElement().text() != "98.1") {
        qCritical() << "consumer: no report, or one that can't be read or holds another frequency";
        return 1;
    }
    return 0;
}

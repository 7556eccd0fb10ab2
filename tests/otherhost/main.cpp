// Makes a report with the other host's tree, clock, trace, translations and button, and looks that each was used.

#include "control/vcreporting.h"
#include "host/ostrel.h"
#include "host/tessaly.h"
#include "host/veldra.h"

#include <QApplication>
#include <QTemporaryDir>
#include <QtDebug>

static int Failures(bool isGood, const char *fault)
{
    if (!isGood) {
        qCritical() << "otherhost:" << fault;
    }
    return isGood ? 0 : 1;
}

int main(int argc, char *argv[])
{
    const QApplication application(argc, argv);
    const QTemporaryDir folder;
    QFile schema(folder.filePath("level.xsd"));
    if (!schema.open(QIODevice::WriteOnly)) {
        return 1;
    }
    schema.write("<xs:schema xmlns:xs='http://www.w3.org/2001/XMLSchema'><xs:element name='Level' type='xs:double'/>"
                 "</xs:schema>");
    schema.close();
    VCReporting control(schema.fileName(), folder.path(), nullptr, true, "reporting", false, QPixmap());
    control.AddReportData("Level", "Sensor/Level", "", 1, "", 0, "");
    int failures = Failures(control.SlotToReport(), "no report was made");
    QFile report(folder.filePath("1970-01-02_00-00-00-0.xml"));
    failures += Failures(report.open(QIODevice::ReadOnly), "the file name is not by the host's clock");
    failures += Failures(report.readAll().contains(">42.5</Level>"), "the report lacks the host's value");
    auto *button = dynamic_cast<VCButton *>(control.GetReportButton());
    failures += Failures(button != nullptr && button->m_iStateChanges > 0, "the host's button was not used");
    failures += Failures(!ErrorHandler::Instance().m_lTraces.isEmpty(), "the host's trace was not used");
    return failures
        + Failures(TranslationCenter::Instance().m_lNames == QStringList("Tagwright"), "the library has no name there");
}

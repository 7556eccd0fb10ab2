// Makes a report with the other host's tree, clock, trace, translations and button, and looks that each was used.

#include "control/vcreporting.h"
#include "host/ostrel.h"
#include "host/quilmar.h"
#include "host/tessaly.h"
#include "host/veldra.h"

#include <QApplication>
#include <QDir>
#include <QTemporaryDir>
#include <QToolBar>

#include <cstdio>

namespace {

int failures = 0;

void Expect(bool condition, const char *what)
{
    if (!condition) {
        std::fprintf(stderr, "otherhost: %s\n", what);
        ++failures;
    }
}

QByteArray ReadFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QString WriteSchema(const QTemporaryDir &folder)
{
    QFile file(folder.filePath("level.xsd"));
    if (file.open(QIODevice::WriteOnly)) {
        file.write("<xs:schema xmlns:xs='http://www.w3.org/2001/XMLSchema'><xs:element name='Report'><xs:complexType>"
                   "<xs:sequence><xs:element name='Level' type='xs:double'/></xs:sequence></xs:complexType>"
                   "</xs:element></xs:schema>");
    }
    return file.fileName();
}

} // namespace

int main(int argc, char *argv[])
{
    Expect(TranslationCenter::Instance().m_lNames == QStringList("Tagwright"), "the library did not register its name");
    QApplication application(argc, argv);
    QTemporaryDir folder;
    QDir(folder.path()).mkdir("reports");

    QToolBar toolBar;
    VCReporting control(WriteSchema(folder), folder.filePath("reports"), &toolBar, true, "reporting", false, QPixmap());
    auto *button = dynamic_cast<VCButton *>(control.GetReportButton());
    Expect(button != nullptr && button->m_iStateChanges > 0 && button->isEnabled(), "the host's button was not used");

    ErrorHandler::Instance().m_iMask = 32;
    control.AddReportData("Level", "Sensor/Level", "", 1, "", 0, "");
    ErrorHandler::Instance().m_iMask = 0;
    Expect(!ErrorHandler::Instance().m_lTraces.isEmpty(), "the host's trace was not used");
    Expect(values::Tree::Instance()->m_iQuestions > 0, "the host's tree was not asked");

    Expect(control.SlotToReport(), "no report was made");
    const QByteArray report = ReadFile(folder.filePath("reports/1970-01-02_00-00-00-0.xml"));
    Expect(!report.isEmpty(), "the file name is not by the host's clock");
    Expect(report.contains("<Level>42.5</Level>"), "the report lacks the host's value");
    return failures;
}

// A host in its smallest form: minimal SCHEMA.xsd REPORT_DIRECTORY
#include "control/vcreporting.h"
#include "host/quilmar.h"
#include "report/reportoutcome.h"

#include <QApplication>
#include <QMainWindow>
#include <QShortcut>
#include <QStatusBar>
#include <QToolBar>
#include <QToolButton>

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    if (argc != 3) {
        qWarning("usage: minimal SCHEMA.xsd REPORT_DIRECTORY");
        return 2;
    }

    // What the host measures. A report takes each value as it stands when the button is pressed.
    values::MemoryTree tree;
    values::Tree::Install(&tree);
    tree.SetNumber("Receiver/Frequency", 98.1e6, "Hz");
    tree.SetNumber("Receiver/Level", 42.5, "dBµV");

    // The control stands on a tool bar. Its button is enabled while schema and directory exist.
    QMainWindow window;
    QToolBar *toolBar = window.addToolBar("Report");
    auto *control = new VCReporting(argv[1], argv[2], toolBar, true, "reporting", false, QPixmap());
    toolBar->addWidget(control);

    // For each element of the schema: its name, where the value comes from, and how it is written.
    // name, path in the tree, fixed text, occurrences, note, power of ten to divide by, unit
    control->AddReportData("Frequency", "Receiver/Frequency", "", 1, "", 6, "MHz");
    control->AddReportData("Level", "Receiver/Level", "", 1, "", 0, "");
    control->AddReportData("Operator", "", "M. Keller", 1, "", 0, "");

    // The key that the button names is the host's to bind.
    auto *key = new QShortcut(QKeySequence("Shift+F10"), &window);
    QObject::connect(key, &QShortcut::activated, control->GetReportButton(), &QToolButton::click);
    QObject::connect(control, &VCReporting::ReportFinished, &window, [&window](const ReportOutcome &outcome) {
        if (!outcome.IsSchemaRead()) {
            window.statusBar()->showMessage(outcome.GetSchemaError());
        } else if (!outcome.IsSaved()) {
            window.statusBar()->showMessage("Not saved: " + outcome.GetSaveError());
        } else {
            window.statusBar()->showMessage(outcome.IsComplete() ? "Report saved" : "Report saved, without all values");
        }
    });
    window.resize(480, 160);
    window.show();
    return application.exec();
}

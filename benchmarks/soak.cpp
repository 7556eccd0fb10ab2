// A control that makes reports for a long time: soak [REPORTS]
// Prints the resident memory at each thousand. It must be flat after the first; the exit code is 1 where it isn't.

#include "workload.h"

#include "control/vcreporting.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QToolBar>

#include <cstdio>
#include <unistd.h>

namespace {

constexpr int kReports = 20000;
constexpr int kStep = 1000;
/// Every so many reports one goes through the comment dialog, which the operator closes.
constexpr int kCommentStep = 50;
/// What the allocator may still take after the first thousand.
constexpr long kToleranceKb = 1024;

long ResidentKb()
{
    QFile file(QStringLiteral("/proc/self/statm"));
    if (!file.open(QIODevice::ReadOnly)) {
        return 0;
    }
    return file.readAll().split(' ').value(1).toLong() * (sysconf(_SC_PAGESIZE) / 1024);
}

void AddItems(VCReporting &control)
{
    for (const auto &fields : { workload::ReportFields(), workload::SignalFields() }) {
        for (const workload::Field &field : fields) {
            control.AddReportData(QString::fromUtf8(field.name), QString(), QString::fromUtf8(field.text), 1, QString(),
                                  0, QString());
        }
    }
}

void CloseDialogs()
{
    for (QWidget *widget : QApplication::topLevelWidgets()) {
        if (widget->isVisible()) {
            widget->close();
        }
    }
}

void RemoveReports(const QString &folder)
{
    for (const QString &file : QDir(folder).entryList({ QStringLiteral("*.xml") }, QDir::Files)) {
        QFile::remove(QDir(folder).filePath(file));
    }
}

bool MakeReports(VCReporting &control, int count)
{
    bool isGood = true;
    for (int i = 0; i < count; ++i) {
        const bool hasComment = i % kCommentStep == 0;
        control.SetShowCommentDialog(hasComment);
        isGood = control.SlotToReport() && isGood;
        if (hasComment) {
            CloseDialogs();
        }
        QCoreApplication::processEvents();
    }
    return isGood;
}

} // namespace

int main(int argc, char *argv[])
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    const int reports = argc > 1 ? QByteArray(argv[1]).toInt() : kReports;
    const QTemporaryDir folder;
    const QString schema = folder.filePath(QStringLiteral("schema.xsd"));
    workload::WriteFile(schema.toStdString(), workload::Schema({}));

    VCReporting control(schema, folder.path(), nullptr, false, "soak", false, QPixmap());
    AddItems(control);
    long first = 0;
    long last = 0;
    for (int done = kStep; done <= reports; done += kStep) {
        if (!MakeReports(control, kStep)) {
            std::printf("a report was not made\n");
            return 1;
        }
        RemoveReports(folder.path());
        last = ResidentKb();
        first = first == 0 ? last : first;
        std::printf("%6d reports  %7ld kB\n", done, last);
        std::fflush(stdout);
    }
    std::printf("after the first thousand: %+ld kB\n", last - first);
    return last - first > kToleranceKb ? 1 : 0;
}

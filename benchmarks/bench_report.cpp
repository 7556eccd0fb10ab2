// Schema to saved report beside the Qt floor, for Signals that the schema itself repeats by minOccurs.

#include "floor.h"
#include "plainreceiver.h"
#include "workload.h"

#include <QCoreApplication>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>
#include <cstdio>
#include <map>

namespace {

QString WriteSchema(const QTemporaryDir &folder, int repeats)
{
    workload::Options options;
    options.minOccurs = repeats;
    QString path = folder.filePath(QStringLiteral("schema.xsd"));
    workload::WriteFile(path.toStdString(), workload::Schema(options));
    return path;
}

void BM_Floor(benchmark::State &state)
{
    const QTemporaryDir folder;
    const int repeats = static_cast<int>(state.range(0));
    const QString schema = WriteSchema(folder, repeats);
    for (auto _ : state) { // NOLINT(clang-analyzer-deadcode.DeadStores): the library counts by it
        RunFloor(schema, folder.filePath(QStringLiteral("report.xml")), repeats);
    }
}

void BM_Report(benchmark::State &state)
{
    const QTemporaryDir folder;
    const QString schema = WriteSchema(folder, static_cast<int>(state.range(0)));
    PlainReceiver receiver(0);
    for (auto _ : state) { // NOLINT(clang-analyzer-deadcode.DeadStores): the library counts by it
        if (!receiver.MakeReport(schema, folder.filePath(QStringLiteral("report.xml")))) {
            state.SkipWithError("the schema can't be read");
        }
    }
}

/// Prints the ratio to the floor behind the usual lines.
class RatioReporter : public benchmark::ConsoleReporter
{
public:
    void ReportRuns(const std::vector<Run> &runs) override
    {
        ConsoleReporter::ReportRuns(runs);
        for (const Run &run : runs) {
            m_hTimes[run.run_name.function_name][run.run_name.args] = run.GetAdjustedRealTime();
        }
    }

    void Finalize() override
    {
        for (const auto &[size, time] : m_hTimes["BM_Report"]) {
            const auto floor = m_hTimes["BM_Floor"].find(size);
            if (floor != m_hTimes["BM_Floor"].end()) {
                std::printf("ratio to the floor, %s repeated containers: %.2f\n", size.c_str(), time / floor->second);
            }
        }
    }

private:
    std::map<std::string, std::map<std::string, double>> m_hTimes;
};

} // namespace

BENCHMARK(BM_Floor)->Arg(10)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Report)->Arg(10)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    RatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    return 0;
}

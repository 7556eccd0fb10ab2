/// How long the reader takes for a large document, beside what it is built on: Qt's SAX parser with an empty handler
/// and the filling of a document. The argument of each is the size of the file in MB.

#include "events/itagwright.h"
#include "xml/xmlreader.h"

#include <QFile>
#include <QTemporaryDir>
#include <QXmlDefaultHandler>
#include <QXmlInputSource>
#include <QXmlSimpleReader>

#include <benchmark/benchmark.h>
#include <map>

namespace {

class Receiver : public ITagwright
{
public:
    void XmlUpdate(XmlEvent * /*event*/) override { ++m_iEvents; }

    int m_iEvents = 0;
};

QByteArray Measurement(int number)
{
    return QStringLiteral("    <measurement id=\"m%1\" station=\"Sued\">\n"
                          "        <time>2024-05-17T09:%2:00</time>\n"
                          "        <frequency unit=\"MHz\">%3.125</frequency>\n"
                          "        <level unit=\"dBuV/m\" detector=\"peak\">-%4.5</level>\n"
                          "        <bearing><azimuth>%5</azimuth><quality>%2</quality></bearing>\n"
                          "    </measurement>\n")
        .arg(number)
        .arg(number % 50 + 10)
        .arg(number % 900 + 100)
        .arg(number % 90)
        .arg(number % 360)
        .toUtf8();
}

/// A report of that many MB, written once for the process.
QString ReportFile(qint64 megabytes)
{
    static QTemporaryDir dir;
    static std::map<qint64, QString> paths;
    QString &path = paths[megabytes];
    if (path.isEmpty()) {
        path = dir.filePath(QStringLiteral("report%1.xml").arg(megabytes));
        QFile file(path);
        file.open(QIODevice::WriteOnly);
        file.write("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<report>\n");
        for (int number = 0; file.pos() < megabytes * 1000 * 1000; ++number) {
            file.write(Measurement(number));
        }
        file.write("</report>\n");
    }
    return path;
}

void SetRate(benchmark::State &state)
{
    state.SetBytesProcessed(state.iterations() * state.range(0) * 1000 * 1000);
}

void SaxWithEmptyHandler(benchmark::State &state)
{
    QFile file(ReportFile(state.range(0)));
    for ([[maybe_unused]] auto _ : state) {
        QXmlDefaultHandler handler;
        QXmlSimpleReader parser;
        parser.setContentHandler(&handler);
        QXmlInputSource source(&file);
        benchmark::DoNotOptimize(parser.parse(&source));
        file.close();
    }
    SetRate(state);
}

void DocumentSetContent(benchmark::State &state)
{
    QFile file(ReportFile(state.range(0)));
    for ([[maybe_unused]] auto _ : state) {
        QDomDocument document;
        file.open(QIODevice::ReadOnly);
        benchmark::DoNotOptimize(document.setContent(&file));
        file.close();
    }
    SetRate(state);
}

void SetXmlContentOfFile(benchmark::State &state)
{
    Receiver receiver;
    const QString path = ReportFile(state.range(0));
    for ([[maybe_unused]] auto _ : state) {
        XMLReader reader(&receiver, nullptr);
        reader.SetXmlContent(path);
    }
    SetRate(state);
}

void ParseXmlOfFile(benchmark::State &state)
{
    Receiver receiver;
    XMLReader reader(&receiver, nullptr);
    reader.SetXmlContent(ReportFile(state.range(0)));
    for ([[maybe_unused]] auto _ : state) {
        benchmark::DoNotOptimize(reader.ParseXml());
    }
    SetRate(state);
}

void ParseXmlOfDocument(benchmark::State &state)
{
    QFile file(ReportFile(state.range(0)));
    QDomDocument document;
    document.setContent(&file);
    Receiver receiver;
    XMLReader reader(&receiver, nullptr);
    reader.SetXmlContent(document);
    for ([[maybe_unused]] auto _ : state) {
        benchmark::DoNotOptimize(reader.ParseXml());
    }
    SetRate(state);
}

/// The whole document is walked: the name is that of its last element, or of many.
void GetElementOfFile(benchmark::State &state, const QString &name)
{
    Receiver receiver;
    XMLReader reader(&receiver, nullptr);
    reader.SetXmlContent(ReportFile(state.range(0)));
    for ([[maybe_unused]] auto _ : state) {
        benchmark::DoNotOptimize(reader.GetElement(name, QString())->size());
    }
    SetRate(state);
}

} // namespace

BENCHMARK(SaxWithEmptyHandler)->Arg(11)->Arg(100)->Unit(benchmark::kMillisecond);
BENCHMARK(ParseXmlOfFile)->Arg(11)->Arg(100)->Unit(benchmark::kMillisecond);
BENCHMARK(ParseXmlOfDocument)->Arg(11)->Unit(benchmark::kMillisecond);
BENCHMARK(DocumentSetContent)->Arg(11)->Arg(100)->Unit(benchmark::kMillisecond);
BENCHMARK(SetXmlContentOfFile)->Arg(11)->Arg(100)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(GetElementOfFile, nothing, QStringLiteral("none"))->Arg(11)->Arg(100)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(GetElementOfFile, many, QStringLiteral("azimuth"))->Arg(11)->Arg(100)->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();

// One measurement in a process of its own: measure CASE N FOLDER
// Prints the seconds that the work took. Small jobs are done several times, and the median counts.

#include "floor.h"
#include "plainreceiver.h"
#include "workload.h"

#include "control/vcreporting.h"
#include "xml/xmlreader.h"

#include <QApplication>
#include <QDateTime>
#include <QDir>
#include <QToolBar>
#include <QVariant>
#include <QVector>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <map>

namespace {

using workload::Measure;

constexpr int kWideRepeats = 10;

class Sink : public ITagwright
{
public:
    void XmlUpdate(XmlEvent *) override { }
};

/// The folder of the run: a schema goes in, a report comes out.
struct Place
{
    QString m_sFolder;

    QString Report() const { return m_sFolder + QStringLiteral("/report.xml"); }
    QString WriteSchema(const std::string &text) const
    {
        QString path = m_sFolder + QStringLiteral("/schema.xsd");
        workload::WriteFile(path.toStdString(), text);
        return path;
    }
};

double Floor(int repeats, const Place &place)
{
    const QString schema = place.WriteSchema(workload::Schema({}));
    return Measure([&] {
        RunFloor(schema, place.Report(), repeats);
        return true;
    });
}

double Plain(int repeats, bool optionalChild, const Place &place)
{
    workload::Options options;
    options.optionalChild = optionalChild;
    const QString schema = place.WriteSchema(workload::Schema(options));
    PlainReceiver receiver(repeats);
    return Measure([&] { return receiver.MakeReport(schema, place.Report()); });
}

double Valid(int repeats, const Place &place)
{
    const QString schema = place.WriteSchema(workload::Schema({}));
    PlainReceiver receiver(repeats);
    return Measure([&] { return receiver.MakeReport(schema, place.Report(), true); });
}

double FloorWide(int declarations, const Place &place)
{
    workload::Options options;
    options.fillers = workload::FillersFor(declarations);
    const QString schema = place.WriteSchema(workload::Schema(options));
    return Measure([&] {
        RunFloor(schema, place.Report(), kWideRepeats, options.fillers);
        return true;
    });
}

double Wide(int declarations, const Place &place)
{
    workload::Options options;
    options.fillers = workload::FillersFor(declarations);
    const QString schema = place.WriteSchema(workload::Schema(options));
    PlainReceiver receiver(kWideRepeats, options.fillers);
    return Measure([&] { return receiver.MakeReport(schema, place.Report()); });
}

double Waiting(int types, const Place &place)
{
    const QString schema = place.WriteSchema(workload::WaitingSchema(types));
    // Done once: only the smaller of the two sizes that are compared is short enough to be repeated, in memory that the
    // first time has warmed.
    return workload::Seconds([&] {
        Sink sink;
        XmlCreateReport report(&sink);
        return report.CreateXmlFromSchema(schema, place.Report(), false);
    });
}

void AddItem(VCReporting &control, const workload::Field &field)
{
    const QString name = QString::fromUtf8(field.name);
    const QString text = QString::fromUtf8(field.text);
    if (field.kind == workload::Kind::Number) {
        control.AddExplicitReportData(name, text.toDouble(), 1, QString(), 0, QString());
    } else if (field.kind == workload::Kind::Integer) {
        control.AddExplicitReportData(name, text.toLong(), 1, QString(), 0, QString());
    } else {
        control.AddExplicitReportData(name, text, 1, QString(), 0, QString());
    }
}

/// The Signal, its six fields and three of the Report's make ten items; what is above belongs to no element.
void AddItems(VCReporting &control, int repeats, int items)
{
    control.AddReportData(QStringLiteral("Signal"), QString(), QString(), repeats, QString(), 0, QString());
    for (const workload::Field &field : workload::SignalFields()) {
        AddItem(control, field);
    }
    for (const char *name : { "Title", "Operator", "Number" }) {
        const auto &fields = workload::ReportFields();
        AddItem(control, *std::find_if(fields.begin(), fields.end(), [name](const workload::Field &field) {
                    return qstrcmp(field.name, name) == 0;
                }));
    }
    for (int i = 10; i < items; ++i) {
        control.AddExplicitReportData(QStringLiteral("Unused%1").arg(i), 1.0, 1, QString(), 0, QString());
    }
}

double Control(int repeats, int items, const Place &place)
{
    const QString schema = place.WriteSchema(workload::Schema({}));
    QToolBar toolBar;
    VCReporting control(schema, place.m_sFolder, &toolBar, true, "reporting", false, QPixmap());
    AddItems(control, repeats, items);
    return Measure([&] { return control.SlotToReport(); });
}

QVariant ToVariant(const workload::Field &field)
{
    const QString text = QString::fromUtf8(field.text);
    switch (field.kind) {
    case workload::Kind::Number:
        return text.toDouble();
    case workload::Kind::Integer:
        return text.toInt();
    case workload::Kind::Time:
        return QDateTime::fromString(text, Qt::ISODate);
    default:
        return text;
    }
}

/// Each Signal has its own number of six values, which a source looks up by its place.
double Sources(int repeats, const Place &place)
{
    const QString schema = place.WriteSchema(workload::Schema({}));
    QToolBar toolBar;
    VCReporting control(schema, place.m_sFolder, &toolBar, true, "reporting", false, QPixmap());
    control.AddReportContainer(QStringLiteral("Signal"), repeats);
    const QString signal = QStringLiteral("Signal");
    for (const workload::Field &field : workload::SignalFields()) {
        const QVector<QVariant> values(repeats, ToVariant(field));
        const auto source = [values, signal](const ReportPlace &at) { return values.at(at.GetIndex(signal)); };
        control.AddReportSource(QString::fromUtf8(field.name), source, 1, QString(), 0, QString());
    }
    return Measure([&] { return control.SlotToReport(); });
}

QString LongReport(int repeats, const Place &place)
{
    RunFloor(place.WriteSchema(workload::Schema({})), place.Report(), repeats);
    return place.Report();
}

double ParseFloor(int repeats, const Place &place)
{
    const QString path = LongReport(repeats, place);
    return Measure([&] {
        RunParseFloor(path);
        return true;
    });
}

double Parse(int repeats, const Place &place)
{
    const QString path = LongReport(repeats, place);
    Sink sink;
    XMLReader reader(&sink, nullptr);
    reader.SetXmlContent(path);
    return Measure([&] { return reader.ParseXml(); });
}

using Case = std::function<double(int, const Place &)>;

const std::map<QString, Case> &Cases()
{
    static const std::map<QString, Case> cases {
        { QStringLiteral("floor"), Floor },
        { QStringLiteral("plain"), [](int n, const Place &place) { return Plain(n, false, place); } },
        { QStringLiteral("optional"), [](int n, const Place &place) { return Plain(n, true, place); } },
        { QStringLiteral("valid"), Valid },
        { QStringLiteral("floorwide"), FloorWide },
        { QStringLiteral("wide"), Wide },
        { QStringLiteral("waiting"), Waiting },
        { QStringLiteral("control10"), [](int n, const Place &place) { return Control(n, 10, place); } },
        { QStringLiteral("control1000"), [](int n, const Place &place) { return Control(n, 1000, place); } },
        { QStringLiteral("sources"), Sources },
        { QStringLiteral("parsefloor"), ParseFloor },
        { QStringLiteral("parse"), Parse },
    };
    return cases;
}

} // namespace

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const auto found = arguments.size() == 4 ? Cases().find(arguments.at(1)) : Cases().end();
    if (found == Cases().end()) {
        std::fprintf(stderr, "usage: measure CASE N FOLDER\n");
        return 2;
    }
    std::printf("%.9f\n", found->second(arguments.at(2).toInt(), Place { arguments.at(3) }));
    return 0;
}

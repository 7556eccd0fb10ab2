// Repeated elements with values of their own, without a display: series SCHEMA.xsd REPORT_DIRECTORY
#include "control/vcreporting.h"
#include "report/reportoutcome.h"

#include <QApplication>
#include <QDateTime>
#include <QDebug>

#include <cmath>

namespace {

struct Spectrum
{
    QDateTime begin;
    QVector<double> levels; // dB, one for each band
};

struct Event
{
    QDateTime time;
    double peak; // dB
    QString kind; // empty: nobody knows
};

const QDateTime kStart(QDate(2024, 5, 17), QTime(9, 30));

void Measure(QVector<Spectrum> &spectra, QVector<Event> &events)
{
    for (int i = 0; i < 20; ++i) {
        spectra.append({ kStart.addSecs(60LL * i), {} });
        for (int band = 0; band < 31; ++band) {
            spectra.last().levels.append(60 - std::abs(band - 17) + 0.1 * i);
        }
    }
    for (int i = 0; i < 1000; ++i) {
        events.append({ kStart.addSecs(i), 70.0 + i % 40, i % 3 == 0 ? "horn" : "" });
    }
}

void AddSite(VCReporting &control)
{
    control.AddExplicitReportData("Site", "Main street 5", 1, "", 0, "");
    control.AddExplicitReportData("Road", "L 3005", 1, "", 0, ""); // of the three sources the one there is
    control.AddExplicitReportData("Temperature", 18.5, 1, "", 0, "");
    control.AddExplicitReportData("Wind", 2.0, 1, "", 0, "");
    control.AddReportSource(
        "Start", [](const ReportPlace &) { return kStart; }, 1, "", 0, "");
}

// What happened, in the order of time.
void AddEvents(VCReporting &control, const QVector<Event> &events)
{
    const auto event = [&events](const ReportPlace &place) { return events.at(place.GetIndex("Event")); };
    control.AddReportContainer("Event", events.size());
    control.AddReportSource(
        "Time", [=](const ReportPlace &place) { return event(place).time; }, 1, "", 0, "");
    control.AddReportSource(
        "Peak", [=](const ReportPlace &place) { return event(place).peak; }, 1, "", 0, "");
    const auto kind = [=](const ReportPlace &place) {
        return event(place).kind.isEmpty() ? QVariant() : event(place).kind;
    };
    control.AddReportSource("Class", kind, 1, "", 0, "");
}

void Tell(const ReportOutcome &outcome)
{
    if (!outcome.IsSchemaRead()) {
        qInfo().noquote() << outcome.GetSchemaError();
    }
    qInfo().noquote() << outcome.GetPath() << (outcome.IsSaved() ? "is saved" : outcome.GetSaveError());
    for (const ReportOutcome::RefusedValue &refused : outcome.GetRefusedValues()) {
        qInfo().noquote() << refused.m_sPlace << refused.m_sValue << "was not written:" << refused.m_sReason;
    }
    for (const QString &place : outcome.GetMissing()) {
        qInfo().noquote() << place << "has no value";
    }
}

} // namespace

int main(int argc, char *argv[])
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    if (argc != 3) {
        qWarning("usage: series SCHEMA.xsd REPORT_DIRECTORY");
        return 2;
    }
    QVector<Spectrum> spectra;
    QVector<Event> events;
    Measure(spectra, events);

    VCReporting control(argv[1], argv[2], nullptr, false, "reporting", false, QPixmap());
    control.SetValidOutput(true);
    AddSite(control);

    // Each value finds its own by its place: Band 7 of Spectrum 3 is spectra[2].levels[6].
    const auto spectrum = [&](const ReportPlace &place) { return spectra.at(place.GetIndex("Spectrum")); };
    control.AddReportContainer("Spectrum", spectra.size());
    control.AddReportSource(
        "Begin", [=](const ReportPlace &place) { return spectrum(place).begin; }, 1, "", 0, "");
    control.AddReportSource(
        "Band", [=](const ReportPlace &place) { return spectrum(place).levels.at(place.GetIndex("Band")); },
        [=](const ReportPlace &place) { return spectrum(place).levels.size(); }, "", 0, "");
    const auto centre = [](const ReportPlace &place) { return std::pow(10, 1.3 + 0.1 * place.GetIndex("Band")); };
    control.AddReportSource("Centre", centre, 1, "", 0, "");

    AddEvents(control, events);

    int result = 1;
    QObject::connect(&control, &VCReporting::ReportFinished, [&result](const ReportOutcome &outcome) {
        result = outcome.IsComplete() ? 0 : 1;
        Tell(outcome);
    });
    control.SlotToReport();
    return result;
}

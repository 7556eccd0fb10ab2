#include "measurement.h"

#include "control/vcreporting.h"
#include "host/veldra.h"

namespace {

enum class Kind { Number, Text, Bandwidth };

/// A place in the tree, with the state in which the program starts.
struct Field
{
    const char *m_sPath;
    Kind m_eKind;
    double m_dNumber;
    /// A number's unit, or the text.
    const char *m_sText;
};

constexpr Field kFields[] = {
    { "Station/Name", Kind::Text, 0.0, "Hilltop North" },
    { "Station/Operator", Kind::Text, 0.0, "M. Keller" },
    { "Station/Country", Kind::Text, 0.0, "DE" },
    { "Station/Latitude", Kind::Number, 48.1374, "°" },
    { "Station/Longitude", Kind::Number, 11.5755, "°" },
    { "Station/Height", Kind::Number, 561.0, "m" },
    { "Receiver/Model", Kind::Text, 0.0, "MR 300" },
    { "Receiver/SerialNumber", Kind::Text, 0.0, "MR300-0417" },
    { "Receiver/Detector", Kind::Text, 0.0, "Average" },
    { "Receiver/Attenuation", Kind::Number, 10.0, "dB" },
    { "Receiver/Preamplifier", Kind::Text, 0.0, "off" },
    { "Receiver/Sweeps", Kind::Number, 16.0, "" },
    { "Receiver/Antenna", Kind::Text, 0.0, "Log-periodic, mast" },
    { "Receiver/Polarisation", Kind::Text, 0.0, "horizontal" },
    { "Receiver/AntennaHeight", Kind::Number, 12.5, "m" },
    { "Weather/Temperature", Kind::Number, 18.5, "°C" },
    { "Weather/Humidity", Kind::Number, 62.0, "%" },
    { "Measurement/Frequency", Kind::Number, 98.1e6, "Hz" },
    { "Measurement/Bandwidth", Kind::Bandwidth, 0.0, "150 kHz" },
    { "Measurement/Level", Kind::Number, 42.5, "dBµV" },
    { "Measurement/Azimuth", Kind::Number, 211.5, "°" },
    { "Measurement/Status", Kind::Text, 0.0, "licensed" },
    { "Measurement/Modulation", Kind::Text, 0.0, "FM" },
    { "Measurement/Depth", Kind::Number, 80.0, "%" },
    { "Measurement/Deviation", Kind::Number, 75e3, "Hz" },
    { "Measurement/AudioFrequency", Kind::Number, 1e3, "Hz" },
};

/// A name of the report, and where its value is. An item without a path has the text as its value.
struct ReportItem
{
    const char *m_sName;
    const char *m_sPath;
    const char *m_sText;
    int m_iExponent;
    const char *m_sUnit;
};

constexpr ReportItem kItems[] = {
    { "SchemaVersion", "", "1.0", 0, "" },
    { "Title", "", "Monitoring report", 0, "" },
    { "Operator", "Station/Operator", "", 0, "" },
    { "Station/Name", "Station/Name", "", 0, "" },
    { "Country", "Station/Country", "", 0, "" },
    { "Latitude", "Station/Latitude", "", 0, "" },
    { "Longitude", "Station/Longitude", "", 0, "" },
    { "Station/Height", "Station/Height", "", 0, "m" },
    { "Model", "Receiver/Model", "", 0, "" },
    { "SerialNumber", "Receiver/SerialNumber", "", 0, "" },
    { "Detector", "Receiver/Detector", "", 0, "" },
    { "Attenuation", "Receiver/Attenuation", "", 0, "" },
    { "Sweeps", "Receiver/Sweeps", "", 0, "" },
    { "Antenna/Name", "Receiver/Antenna", "", 0, "" },
    { "Polarisation", "Receiver/Polarisation", "", 0, "" },
    { "Antenna/Height", "Receiver/AntennaHeight", "", 0, "m" },
    { "Temperature", "Weather/Temperature", "", 0, "°C" },
    { "Humidity", "Weather/Humidity", "", 0, "%" },
};

/// A value that each Signal has its own of.
struct SignalItem
{
    const char *m_sName;
    int m_iField;
    const char *m_sUnit;
};

constexpr SignalItem kSignalItems[] = {
    { "Status", kStatus, "" },   { "Frequency", kFrequency, "MHz" }, { "Bandwidth", kBandwidth, "kHz" },
    { "Level", kLevel, "dBµV" }, { "Azimuth", kAzimuth, "°" },       { "Time", kTime, "" },
};

QString Text(const char *text)
{
    return QString::fromUtf8(text);
}

const Field *FindField(const QString &path)
{
    for (const Field &field : kFields) {
        if (path == QLatin1String(field.m_sPath)) {
            return &field;
        }
    }
    return nullptr;
}

} // namespace

Measurement::Measurement()
{
    values::Tree::Install(&m_oTree);
    for (const Field &field : kFields) {
        if (field.m_eKind == Kind::Number) {
            SetNumber(Text(field.m_sPath), field.m_dNumber);
        } else {
            SetText(Text(field.m_sPath), Text(field.m_sText));
        }
    }
}

Measurement::~Measurement()
{
    values::Tree::Install(nullptr);
}

values::MemoryTree &Measurement::GetTree()
{
    return m_oTree;
}

double Measurement::GetNumber(const QString &path)
{
    auto *number = dynamic_cast<values::IValueNumeric *>(m_oTree.FindValue(path));
    return number == nullptr ? 0.0 : number->GetNumber();
}

QString Measurement::GetText(const QString &path)
{
    values::ValueBase *value = m_oTree.FindValue(path);
    return value == nullptr ? QString() : value->GetText();
}

void Measurement::SetNumber(const QString &path, double number)
{
    const Field *field = FindField(path);
    m_oTree.SetNumber(path, number, field == nullptr ? QString() : Text(field->m_sText));
}

void Measurement::SetText(const QString &path, const QString &text)
{
    const Field *field = FindField(path);
    if (field == nullptr || field->m_eKind == Kind::Text) {
        m_oTree.SetText(path, text);
    } else if (GetBandwidths().contains(text)) {
        m_oTree.SetSelection(path, GetBandwidths().indexOf(text), text);
    }
}

void Measurement::Restore(const QString &path, const QString &text)
{
    const Field *field = FindField(path);
    if (field == nullptr) {
        return;
    }
    if (field->m_eKind != Kind::Number) {
        SetText(path, text);
        return;
    }
    bool isNumber = false;
    const double number = text.section(QLatin1Char(' '), 0, 0).toDouble(&isNumber);
    if (isNumber) {
        SetNumber(path, number);
    }
}

QStringList Measurement::GetBandwidths()
{
    return { QStringLiteral("1 kHz"),   QStringLiteral("9 kHz"),   QStringLiteral("30 kHz"),
             QStringLiteral("150 kHz"), QStringLiteral("500 kHz"), QStringLiteral("2 MHz") };
}

Signal Measurement::GetPresent()
{
    const auto number = [this](const char *path, double scale) {
        return QString::number(GetNumber(Text(path)) / scale, 'g', 12);
    };
    const QString bandwidth = GetText(QStringLiteral("Measurement/Bandwidth"));
    const int scale = bandwidth.endsWith(QLatin1String("MHz")) ? 1000 : 1;
    const Orvo::DateTime now(OrvoOS::Create().GetTime());
    return { number("Measurement/Frequency", 1e6),
             QString::number(bandwidth.section(QLatin1Char(' '), 0, 0).toInt() * scale),
             number("Measurement/Level", 1),
             number("Measurement/Azimuth", 1),
             GetText(QStringLiteral("Measurement/Modulation")),
             GetText(QStringLiteral("Measurement/Status")),
             now.toString(QStringLiteral("yyyy-MM-ddThh:mm:ss")) };
}

void Measurement::FillControl(VCReporting &control)
{
    control.SetValidOutput(true);
    control.SetKeepUnsavedDialog(true);
    // Stands first: the report's own attributes are filled through it, its time stamp among them.
    control.AddReportContainer(QStringLiteral("MonitoringReport"), 1);
    for (const ReportItem &item : kItems) {
        control.AddReportData(Text(item.m_sName), Text(item.m_sPath), Text(item.m_sText), 1, QString(),
                              item.m_iExponent, Text(item.m_sUnit));
    }
    AddSignalSources(control);
    QObject::connect(&control, &VCReporting::PrepareToReport, &control, [this, &control] { PrepareReport(control); });
}

// Each Signal has its own values, found by its place.
void Measurement::AddSignalSources(VCReporting &control)
{
    control.AddReportContainer(QStringLiteral("Signal"), [this](const ReportPlace &) { return m_lReported.size(); });
    for (const SignalItem &item : kSignalItems) {
        const auto source = [this, field = item.m_iField](const ReportPlace &place) -> QVariant {
            bool isNumber = false;
            const QString text = GetSignalText(field, place);
            const double number = text.toDouble(&isNumber);
            return isNumber ? QVariant(number) : QVariant(text);
        };
        control.AddReportSource(Text(item.m_sName), source, 1, QString(), 0, Text(item.m_sUnit));
    }
    // Only the modulation that was found gets values: the alternatives of which nothing is known are left out.
    const auto add = [&](const char *name, const char *path, double scale, const char *unit) {
        const auto source = [this, path, scale](const ReportPlace &place) {
            const bool isFound = place.GetIndex(GetSignalText(kModulation, place)) >= 0;
            return isFound ? QVariant(GetNumber(Text(path)) / scale) : QVariant();
        };
        control.AddReportSource(Text(name), source, 1, QString(), 0, Text(unit));
    };
    add("AM/Depth", "Measurement/Depth", 1, "%");
    add("FM/Deviation", "Measurement/Deviation", 1e3, "kHz");
    add("AudioFrequency", "Measurement/AudioFrequency", 1e3, "kHz");
}

QString Measurement::GetSignalText(int field, const ReportPlace &place) const
{
    return m_lReported.value(place.GetIndex(QStringLiteral("Signal"))).value(field);
}

void Measurement::PrepareReport(VCReporting &control)
{
    m_lReported = m_lSignals.isEmpty() ? QVector<Signal> { GetPresent() } : m_lSignals;
    control.DeleteReportData(QStringLiteral("Preamplifier"));
    control.AddExplicitReportData(QStringLiteral("Preamplifier"),
                                  GetText(QStringLiteral("Receiver/Preamplifier")) == QLatin1String("on"), 1, QString(),
                                  0, QString());
}

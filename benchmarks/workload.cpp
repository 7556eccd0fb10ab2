#include "workload.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>

namespace workload {

namespace {

using Clock = std::chrono::steady_clock;

// Below this a single run is too short to be told from noise.
constexpr double kEnoughSeconds = 0.3;
constexpr int kMostRuns = 41;

constexpr int kChainLength = 20;
// 25 elements and five simple types.
constexpr int kBaseDeclarations = 30;

const char *const kSimpleTypes = R"(  <xs:simpleType name="FrequencyValue">
    <xs:restriction base="xs:double"><xs:minInclusive value="0"/><xs:maxInclusive value="40000"/></xs:restriction>
  </xs:simpleType>
  <xs:simpleType name="BandwidthValue">
    <xs:restriction base="xs:double"><xs:minExclusive value="0"/><xs:maxInclusive value="80000"/></xs:restriction>
  </xs:simpleType>
  <xs:simpleType name="LevelValue">
    <xs:restriction base="xs:double"><xs:minInclusive value="-60"/><xs:maxExclusive value="160"/></xs:restriction>
  </xs:simpleType>
  <xs:simpleType name="CountValue">
    <xs:restriction base="xs:integer"><xs:minInclusive value="0"/><xs:maxInclusive value="100000"/></xs:restriction>
  </xs:simpleType>
  <xs:simpleType name="DetectorName">
    <xs:restriction base="xs:string"><xs:enumeration value="Average"/><xs:enumeration value="Peak"/>
      <xs:enumeration value="RMS"/></xs:restriction>
  </xs:simpleType>
)";

std::string Element(const std::string &name, const std::string &type, const std::string &further = std::string())
{
    return "        <xs:element name=\"" + name + "\" type=\"" + type + "\"" + further + "/>\n";
}

std::string Elements(const std::vector<Field> &fields)
{
    std::string text;
    for (const Field &field : fields) {
        text += Element(field.name, field.type);
    }
    return text;
}

std::string SignalContent(const Options &options)
{
    const std::string note = options.optionalChild ? Element("Note", "xs:string", " minOccurs=\"0\"") : std::string();
    return "<xs:sequence>\n" + Elements(SignalFields()) + note + "</xs:sequence></xs:complexType>\n";
}

std::string SignalElement(const Options &options)
{
    if (options.minOccurs > 0) {
        return Element("Signal", "SignalType",
                       " minOccurs=\"" + std::to_string(options.minOccurs) + "\" maxOccurs=\"unbounded\"");
    }
    return "<xs:element name=\"Signal\" maxOccurs=\"unbounded\"><xs:complexType>" + SignalContent(options)
        + "</xs:element>\n";
}

std::string TypeName(int index)
{
    char name[32];
    std::snprintf(name, sizeof name, "T%06d_%02d", index / kChainLength, index % kChainLength);
    return name;
}

} // namespace

const std::vector<Field> &ReportFields()
{
    static const std::vector<Field> fields {
        { "Title", "xs:string", Kind::Text, "Occupancy of band II" },
        { "Operator", "xs:string", Kind::Text, "M. Keller" },
        { "Time", "xs:dateTime", Kind::Time, "2024-05-17T09:30:00" },
        { "Number", "xs:integer", Kind::Integer, "4711" },
    };
    return fields;
}

const std::vector<Field> &SettingsFields()
{
    static const std::vector<Field> fields {
        { "StartFrequency", "FrequencyValue", Kind::Number, "87.5" },
        { "StopFrequency", "FrequencyValue", Kind::Number, "108" },
        { "StepWidth", "BandwidthValue", Kind::Number, "12.5" },
        { "ResolutionBandwidth", "BandwidthValue", Kind::Number, "25" },
        { "ReferenceLevel", "LevelValue", Kind::Number, "80" },
        { "Detector", "DetectorName", Kind::Text, "RMS" },
        { "Attenuation", "xs:double", Kind::Number, "10" },
        { "Sweeps", "CountValue", Kind::Integer, "120" },
        { "Antenna", "xs:string", Kind::Text, "HE-9" },
        { "Station", "xs:string", Kind::Text, "North" },
        { "Height", "xs:double", Kind::Number, "24.5" },
        { "Remark", "xs:string", Kind::Text, "dry & clear" },
    };
    return fields;
}

const std::vector<Field> &SignalFields()
{
    static const std::vector<Field> fields {
        { "Frequency", "FrequencyValue", Kind::Number, "98.125" },
        { "Bandwidth", "BandwidthValue", Kind::Number, "120.5" },
        { "Level", "LevelValue", Kind::Number, "42.75" },
        { "Count", "CountValue", Kind::Integer, "17" },
        { "Name", "xs:string", Kind::Text, "Radio North" },
        { "Time", "xs:dateTime", Kind::Time, "2024-05-17T09:30:00" },
    };
    return fields;
}

const Field &FillerField(int index)
{
    static const std::vector<Field> fields {
        { "", "FrequencyValue", Kind::Number, "98.125" }, { "", "xs:string", Kind::Text, "North" },
        { "", "CountValue", Kind::Integer, "17" },        { "", "DetectorName", Kind::Text, "RMS" },
        { "", "LevelValue", Kind::Number, "42.75" },
    };
    return fields[static_cast<std::size_t>(index) % fields.size()];
}

std::string FillerName(int index)
{
    return "Filler" + std::to_string(index);
}

std::string Schema(const Options &options)
{
    std::string text = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                       "<xs:schema xmlns:xs=\"http://www.w3.org/2001/XMLSchema\">\n";
    text += kSimpleTypes;
    if (options.minOccurs > 0) {
        text += "<xs:complexType name=\"SignalType\">" + SignalContent(options);
    }
    text += "<xs:element name=\"Report\"><xs:complexType><xs:sequence>\n" + Elements(ReportFields())
        + "<xs:element name=\"Settings\"><xs:complexType><xs:sequence>\n" + Elements(SettingsFields())
        + "</xs:sequence></xs:complexType></xs:element>\n";
    for (int i = 0; i < options.fillers; ++i) {
        text += Element(FillerName(i), FillerField(i).type);
    }
    return text + SignalElement(options) + "</xs:sequence></xs:complexType></xs:element>\n</xs:schema>\n";
}

int FillersFor(int declarations)
{
    return declarations - kBaseDeclarations;
}

std::string WaitingSchema(int types)
{
    std::string text = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                       "<xs:schema xmlns:xs=\"http://www.w3.org/2001/XMLSchema\">\n"
                       "<xs:element name=\"Report\"><xs:complexType><xs:sequence>\n"
        + Element("First", TypeName(0)) + "</xs:sequence></xs:complexType></xs:element>\n";
    for (int i = 0; i < types; ++i) {
        const bool isLast = i % kChainLength == kChainLength - 1 || i == types - 1;
        text += "<xs:complexType name=\"" + TypeName(i) + "\"><xs:sequence>"
            + Element("Part", isLast ? "xs:string" : TypeName(i + 1)) + "</xs:sequence></xs:complexType>\n";
    }
    return text + "</xs:schema>\n";
}

double Seconds(const std::function<bool()> &work)
{
    const Clock::time_point begin = Clock::now();
    if (!work()) {
        std::fprintf(stderr, "the work that is measured has failed\n");
        std::exit(1);
    }
    return std::chrono::duration<double>(Clock::now() - begin).count();
}

double Measure(const std::function<bool()> &work)
{
    std::vector<double> runs;
    double total = 0.0;
    do {
        runs.push_back(Seconds(work));
        total += runs.back();
    } while (total < kEnoughSeconds && runs.size() < kMostRuns);
    std::sort(runs.begin(), runs.end());
    return runs[runs.size() / 2];
}

void WriteFile(const std::string &path, const std::string &text)
{
    std::ofstream file(path, std::ios::binary);
    file << text;
    if (!file.flush()) {
        std::fprintf(stderr, "can't write %s\n", path.c_str());
        std::exit(1);
    }
}

int RunPeer(int argc, char *argv[], const MakePeerReport &makeReport)
{
    if (argc != 4) {
        return 2;
    }
    const int declarations = std::atoi(argv[1]);
    const int repeats = std::atoi(argv[2]);
    const std::string folder = argv[3];
    Options options;
    options.fillers = declarations == 0 ? 0 : FillersFor(declarations);
    const std::string schemaPath = folder + "/schema.xsd";
    WriteFile(schemaPath, Schema(options));
    std::printf("%.9f\n",
                Measure([&] { return makeReport(schemaPath, folder + "/report.xml", options.fillers, repeats); }));
    return 0;
}

} // namespace workload

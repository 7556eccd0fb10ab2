#pragma once

#include <functional>
#include <string>
#include <vector>

/// The report that all candidates make, in plain C++, so that the programs over other libraries share it.
namespace workload {

/// What the value of a field is, for candidates that don't write text alone.
enum class Kind { Text, Number, Integer, Time };

/// One element with simple content.
struct Field
{
    const char *name;
    const char *type;
    Kind kind;
    const char *text;
};

/// Variants of the schema.
struct Options
{
    /// Further elements below the root, behind the settings.
    int fillers = 0;
    /// Each Signal has an optional child that no candidate gives a value.
    bool optionalChild = false;
    /// The Signal's minOccurs; its content is a named type then. 0: once, unbounded, with an anonymous type.
    int minOccurs = 0;
};

/// The Report's fields in front of the settings, those of the settings, and those of each Signal.
const std::vector<Field> &ReportFields();
const std::vector<Field> &SettingsFields();
const std::vector<Field> &SignalFields();
/// The filler number `index`, from 0; its text and type. Its name is FillerName(index).
const Field &FillerField(int index);
std::string FillerName(int index);

/// The schema: 25 elements and five simple types, about 2.6 KB without fillers.
std::string Schema(const Options &options);

/// The fillers that make a schema of that many declarations.
int FillersFor(int declarations);

/// A schema of that many complex types, which wait for each other in chains of 20, each declared in front of what it
/// needs and named so that a sweep in the order of the names completes one type of a chain.
std::string WaitingSchema(int types);

/// The seconds that `work` takes, done once. False from `work` ends the process: a failure must not look fast.
double Seconds(const std::function<bool()> &work);

/// The seconds that `work` takes. A short job is done several times, and the median counts. False as in Seconds.
double Measure(const std::function<bool()> &work);

void WriteFile(const std::string &path, const std::string &text);

/// Makes the report of a schema's file, with that many fillers and Signals. False if it has failed.
using MakePeerReport =
    std::function<bool(const std::string &schemaPath, const std::string &reportPath, int fillers, int repeats)>;

/// The program over another library: DECLARATIONS REPEATS FOLDER. Prints the seconds of a report in one line; the
/// result is that of main().
int RunPeer(int argc, char *argv[], const MakePeerReport &makeReport);

} // namespace workload

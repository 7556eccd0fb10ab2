// The table of figures against their bars: yardstick [--rounds N] [--strict]
// Every measurement runs in a process of its own. The measurements of a round follow each other, so that what disturbs
// the machine meets all of them; a figure is the median, over the rounds, of the ratio within the round.
//   --rounds N   rounds to run, 5 if not given
//   --strict     exit code 1 if a bar is missed

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <map>
#include <string>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace {

namespace fs = std::filesystem;

/// A command and its arguments; the folder to work in is appended.
using Command = std::vector<std::string>;

struct Result
{
    double m_dSeconds = 0.0;
    double m_dPeakMiB = 0.0;
};

enum class Unit { Ratio, MiB };

/// One line of the table: a ratio of two measurements, or the peak memory of one.
struct Line
{
    std::string m_sLabel;
    Command m_lMeasured;
    Command m_lAgainst;
    double m_dBar;
    Unit m_eUnit = Unit::Ratio;
};

Command Ours(const char *which, int n)
{
    return { "measure", which, std::to_string(n) };
}

Command Peer(const char *program, int declarations, int repeats)
{
    return { program, std::to_string(declarations), std::to_string(repeats) };
}

// About 11 MB.
constexpr int kLongReport = 36000;

std::vector<Line> OwnLines()
{
    const Command plain10k = Ours("plain", 10000);
    return {
        { "R = 10, to the floor", Ours("plain", 10), Ours("floor", 10), 1.2 },
        { "R = 1,000, to the floor", Ours("plain", 1000), Ours("floor", 1000), 1.0 },
        { "R = 10,000, to the floor", plain10k, Ours("floor", 10000), 1.2 },
        { "R = 50,000, to the floor", Ours("plain", 50000), Ours("floor", 50000), 1.5 },
        { "R = 50,000, peak memory in MiB", Ours("plain", 50000), {}, 350.0, Unit::MiB },
        { "an unset optional child in each Signal, to without (10,000)", Ours("optional", 10000), plain10k, 1.25 },
        { "valid output, to without (10,000)", Ours("valid", 10000), plain10k, 1.1 },
        { "50,000 to 10,000", Ours("plain", 50000), plain10k, 6.0 },
        { "VCReporting, 10 items, to the plain receiver (10,000)", Ours("control10", 10000), plain10k, 1.3 },
        { "VCReporting, 1,000 items, to the plain receiver (10,000)", Ours("control1000", 10000), plain10k, 1.3 },
        { "10,000 Signals of six values through sources, to the plain receiver", Ours("sources", 10000), plain10k,
          1.3 },
        { "1,000 items to 10 items", Ours("control1000", 10000), Ours("control10", 10000), 1.1 },
        { "503 declarations, R = 10, to the floor", Ours("wide", 503), Ours("floorwide", 503), 2.0 },
        { "5,003 declarations, R = 10, to the floor", Ours("wide", 5003), Ours("floorwide", 5003), 2.0 },
        { "10,000 waiting types to 1,000", Ours("waiting", 10000), Ours("waiting", 1000), 14.0 },
        { "ParseXml of 11 MB, to QXmlSimpleReader", Ours("parse", kLongReport), Ours("parsefloor", kLongReport), 1.5 },
    };
}

std::vector<Line> PeerLines(const char *program, const std::string &name)
{
    std::vector<Line> lines;
    for (const int repeats : { 10, 1000, 10000, 50000 }) {
        lines.push_back(
            { name + ", R = " + std::to_string(repeats), Peer(program, 0, repeats), Ours("floor", repeats), 0.0 });
    }
    for (const int declarations : { 503, 5003 }) {
        lines.push_back({ name + ", " + std::to_string(declarations) + " declarations", Peer(program, declarations, 10),
                          Ours("floorwide", declarations), 0.0 });
    }
    return lines;
}

[[noreturn]] void Fail(const std::string &what)
{
    std::fprintf(stderr, "yardstick: %s\n", what.c_str());
    std::exit(2);
}

std::string Join(const Command &command)
{
    std::string text;
    for (const std::string &part : command) {
        text += (text.empty() ? "" : " ") + part;
    }
    return text;
}

[[noreturn]] void Become(const fs::path &programs, Command command, int output)
{
    dup2(output, STDOUT_FILENO);
    command.front() = (programs / command.front()).string();
    std::vector<char *> arguments;
    for (std::string &part : command) {
        arguments.push_back(part.data());
    }
    arguments.push_back(nullptr);
    execv(arguments.front(), arguments.data());
    _exit(127);
}

Result Run(const fs::path &programs, Command command, const fs::path &folder)
{
    command.push_back(folder.string());
    int ends[2];
    if (pipe(ends) != 0) {
        Fail("no pipe");
    }
    const pid_t child = fork();
    if (child == 0) {
        close(ends[0]);
        Become(programs, command, ends[1]);
    }
    close(ends[1]);
    FILE *output = fdopen(ends[0], "r");
    Result result;
    const bool isRead = std::fscanf(output, "%lf", &result.m_dSeconds) == 1;
    std::fclose(output);
    int status = 0;
    rusage usage {};
    wait4(child, &status, 0, &usage);
    if (!isRead || !WIFEXITED(status) || WEXITSTATUS(status) != 0) {
        Fail("this measurement failed: " + Join(command));
    }
    result.m_dPeakMiB = static_cast<double>(usage.ru_maxrss) / 1024.0;
    return result;
}

using Round = std::map<Command, Result>;

/// Each command once, in the order of the lines.
std::vector<Command> Commands(const std::vector<Line> &lines)
{
    std::vector<Command> commands;
    const auto add = [&commands](const Command &command) {
        if (!command.empty() && std::find(commands.begin(), commands.end(), command) == commands.end()) {
            commands.push_back(command);
        }
    };
    for (const Line &line : lines) {
        add(line.m_lMeasured);
        add(line.m_lAgainst);
    }
    return commands;
}

Round RunRound(const fs::path &programs, const std::vector<Command> &commands, const fs::path &folder)
{
    Round round;
    for (const Command &command : commands) {
        round[command] = Run(programs, command, folder);
    }
    return round;
}

double Median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

double Figure(const Line &line, const std::vector<Round> &rounds)
{
    std::vector<double> figures;
    figures.reserve(rounds.size());
    for (const Round &round : rounds) {
        const Result &measured = round.at(line.m_lMeasured);
        figures.push_back(line.m_eUnit == Unit::MiB ? measured.m_dPeakMiB
                                                    : measured.m_dSeconds / round.at(line.m_lAgainst).m_dSeconds);
    }
    return Median(figures);
}

double Milliseconds(const Command &command, const std::vector<Round> &rounds)
{
    std::vector<double> values;
    values.reserve(rounds.size());
    for (const Round &round : rounds) {
        values.push_back(round.at(command).m_dSeconds * 1000.0);
    }
    return Median(values);
}

/// True if every line with a bar meets it.
bool Print(const std::vector<Line> &lines, const std::vector<Round> &rounds)
{
    bool isMet = true;
    std::printf("| %-70s | %8s | %8s | %-6s | %10s |\n", "What", "Figure", "Bar", "", "ms");
    std::printf("|%s|%s:|%s:|%s|%s:|\n", std::string(72, '-').c_str(), std::string(9, '-').c_str(),
                std::string(9, '-').c_str(), std::string(8, '-').c_str(), std::string(11, '-').c_str());
    for (const Line &line : lines) {
        const double figure = Figure(line, rounds);
        const bool hasBar = line.m_dBar > 0.0;
        const bool isMissed = hasBar && figure > line.m_dBar;
        isMet = isMet && !isMissed;
        char bar[32] = "";
        if (hasBar) {
            std::snprintf(bar, sizeof bar, "%.2f", line.m_dBar);
        }
        const char *verdict = hasBar ? "met" : "";
        std::printf("| %-70s | %8.2f | %8s | %-6s | %10.2f |\n", line.m_sLabel.c_str(), figure, bar,
                    isMissed ? "MISSED" : verdict, Milliseconds(line.m_lMeasured, rounds));
    }
    return isMet;
}

int RoundsFrom(const char *text)
{
    const int rounds = std::atoi(text);
    if (rounds < 1) {
        Fail("--rounds needs a number from 1");
    }
    return rounds;
}

} // namespace

int main(int argc, char *argv[])
{
    int roundCount = 5;
    bool isStrict = false;
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], "--rounds") == 0 && i + 1 < argc) {
            roundCount = RoundsFrom(argv[++i]);
        } else if (std::strcmp(argv[i], "--strict") == 0) {
            isStrict = true;
        } else {
            Fail("usage: yardstick [--rounds N] [--strict]");
        }
    }

    const fs::path programs = fs::read_symlink("/proc/self/exe").parent_path();
    std::vector<Line> lines = OwnLines();
    for (const auto &[program, name] : { std::pair { "peer_libxml2", "libxml2" }, { "peer_xerces", "Xerces-C++" } }) {
        if (fs::exists(programs / program)) {
            const std::vector<Line> peer = PeerLines(program, name);
            lines.insert(lines.end(), peer.begin(), peer.end());
        }
    }

    std::string pattern = (fs::temp_directory_path() / "yardstick-XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr) {
        Fail("no temporary folder");
    }
    std::vector<Round> rounds;
    for (int i = 0; i < roundCount; ++i) {
        std::fprintf(stderr, "round %d of %d\n", i + 1, roundCount);
        rounds.push_back(RunRound(programs, Commands(lines), pattern));
    }
    fs::remove_all(pattern);
    return Print(lines, rounds) || !isStrict ? 0 : 1;
}

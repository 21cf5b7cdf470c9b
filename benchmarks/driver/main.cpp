// The program behind ./bench: starts workers and players in turn, and prints one table.

#include <sys/utsname.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <csignal>
#include <cstdio>
#include <filesystem>
#include <fstream>

#include "driver/groups.h"

namespace {

namespace fs = std::filesystem;

struct Options {
    std::vector<std::string> groups;
    std::string json;
    std::string docs;
    bool quick = false;
    std::string against;
};

constexpr double busy = 0.5;  // load of the last minute

const std::vector<std::string> allGroups{"check", "views", "players", "growth", "micro"};

// The value of the first line of a file that begins with a word.
std::string lineOf(const char* path, const std::string& word) {
    std::ifstream file(path);
    std::string line;
    while (std::getline(file, line)) {
        const std::size_t value = line.find_first_not_of(" \t\"", line.find_first_of(":=") + 1);
        if (line.starts_with(word) && value != std::string::npos) {
            return line.substr(value, line.find_last_not_of('"') + 1 - value);
        }
    }
    return "unknown";
}

// The commit of a checkout, from any folder in it.
std::string describe(const std::string& folder) {
    const auto use = bench::tryProgram({"git", "-C", folder, "describe", "--always", "--dirty", "--abbrev=7"});
    return use ? use->output.substr(0, use->output.find('\n')) : "unknown";
}

void tellMachine(const bench::Run& run, bench::Report& report) {
    utsname kernel{};
    uname(&kernel);
    bench::Worker floor(bench::workerCommand(run, "floor", {.view = zet::RENDER_MODE_FLAT}));
    std::string renderer = floor.ask("about");
    renderer.erase(std::remove(renderer.begin(), renderer.end(), '\n'), renderer.end());
    double load = 0;
    std::ifstream("/proc/loadavg") >> load;
    std::vector<std::pair<std::string, std::string>> machine{
        {"processor", lineOf("/proc/cpuinfo", "model name")},
        {"cores", std::to_string(sysconf(_SC_NPROCESSORS_ONLN))},
        {"memory", lineOf("/proc/meminfo", "MemTotal")},
        {"system", lineOf("/etc/os-release", "PRETTY_NAME") + ", Linux " + kernel.release},
        {"OpenGL ES", renderer},
        {"load before the run", bench::number(load)},
        {"version", describe(run.build)}};
    if (!run.against.empty()) machine.push_back({"version before", run.againstVersion});
    report.setMachine(machine);
    if (load > busy) std::fputs("bench: the machine is busy: these numbers will be too large\n", stderr);
}

bool measure(const Options& options, const bench::Run& run, bench::Report& report) {
    const auto wants = [&](const char* group) {
        return options.groups.empty() ||
               std::find(options.groups.begin(), options.groups.end(), group) != options.groups.end();
    };
    tellMachine(run, report);
    bool same = true;
    if (wants("check")) same = bench::checkPictures(run, report);
    if (wants("views")) bench::measureViews(run, report);
    if (wants("players")) bench::measurePlayers(run, report);
    if (wants("growth")) bench::measureGrowth(run, report);
    if (wants("micro")) bench::measureMicro(run, report);
    return same;
}

// A folder that goes with the program.
class Scratch {
public:
    Scratch() : _path((fs::temp_directory_path() / "zetbench-XXXXXX").string()) {
        if (!mkdtemp(_path.data())) bench::fail("no temporary folder");
    }
    ~Scratch() {
        std::error_code left;
        fs::remove_all(_path, left);
    }
    const std::string& path() const { return _path; }

private:
    std::string _path;
};

// False where a floor draws another picture than the module.
bool runAll(const Options& options) {
    const Scratch scratch;
    const fs::path self = fs::read_symlink("/proc/self/exe");
    const bench::Run run{.quick = options.quick,
                         .against = options.against,
                         .againstVersion = options.against.empty() ? "" : describe(options.against),
                         .build = self.parent_path().parent_path().string(),
                         .scratch = scratch.path()};
    const std::string page = options.docs + "/performance.md";
    if (!options.docs.empty() && !fs::exists(page)) bench::fail("no page " + page);

    bench::Report report;
    const bool same = measure(options, run, report);
    if (!options.json.empty()) report.writeJson(options.json);
    if (!options.docs.empty()) {
        report.writePage(page);
        bench::writePlots(report, options.docs + "/pictures");
    }
    if (!same) std::fputs("bench: a floor draws another picture than the module\n", stderr);
    return same;
}

}  // namespace

int main(int argc, char** argv) {
    Options options;
    CLI::App app("Measures the module and zetplay beside hand-written floors and other players.", "./bench");
    app.add_option("GROUP", options.groups, "check, views, players, growth, micro; all of them without one")
        ->check(CLI::IsMember(allGroups));
    app.add_flag("--quick", options.quick, "A short run, with numbers that jump");
    app.add_option("--against", options.against, "Compare with the module of another checkout, which is built there")
        ->type_name("DIR");
    app.add_option("--json", options.json, "Write all numbers into this file");
    app.add_option("--docs", options.docs,
                   "Write tables and plots of a whole run into this folder's performance.md, pictures/");
    CLI11_PARSE(app, argc, argv);

    if (!options.docs.empty() && (options.quick || !options.groups.empty())) {
        std::fputs("bench: --docs wants all tables of one whole run: no group and no --quick\n", stderr);
        return 2;
    }

    bench::catchSignals();
    try {
        return runAll(options) ? 0 : 1;
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "bench: %s\n", failure.what());
    }
    if (bench::signalCaught()) {
        std::signal(bench::signalCaught(), SIG_DFL);
        std::raise(bench::signalCaught());
    }
    return 1;
}

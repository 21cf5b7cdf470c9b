// Single steps, each with the one that it is compared with in turn.

#include <fstream>
#include <map>
#include <nlohmann/json.hpp>

#include "driver/groups.h"

namespace bench {

namespace {

constexpr double busSetTarget = 200;  // ns, with one observer
constexpr double roundTripTarget = 3;

// Nanoseconds, of one start of bench_micro.
double runOnce(const Run& run, const std::string& name) {
    const std::string path = run.scratch + "/micro.json";
    runProgram({run.build + "/benchmarks/bench_micro", "--benchmark_filter=^" + name + "(/.*)?$",
                "--benchmark_out=" + path, "--benchmark_out_format=json",
                run.quick ? "--benchmark_min_time=0.02" : "--benchmark_min_time=0.1"});
    const std::map<std::string, double> units{{"ns", 1}, {"us", 1e3}, {"ms", 1e6}};
    std::ifstream file(path);
    const auto all = nlohmann::json::parse(file);
    if (all["benchmarks"].size() != 1) fail("bench_micro has no " + name);
    const auto& entry = all["benchmarks"][0];
    return entry["real_time"].get<double>() * units.at(entry["time_unit"].get<std::string>());
}

}  // namespace

void measureMicro(const Run& run, Report& report) {
    const auto add = [&](const std::string& what, const std::string& ours, const std::string& unit, double scale,
                         const std::string& whose, const std::string& theirs, std::optional<double> atMost) {
        std::vector<std::string> names{ours};
        if (!theirs.empty()) names.push_back(theirs);
        const auto times = measureInTurn(run.quick ? 3 : 9, names.size(),
                                         [&](std::size_t turn) { return runOnce(run, names[turn]) / scale; });
        Row row{.table = "micro", .what = what, .value = median(times[0]), .unit = unit};
        if (!theirs.empty()) {
            row.beside = whose;
            row.besideValue = median(times[1]);
            row.ratio = medianRatio(times[0], times[1]);
        }
        row.atMost = atMost;
        report.add(row);
    };
    add("chroma interleave, 1080p", "interleaveChroma", "us", 1e3, "memcpy", "copySameBytes", {});
    add("bus set, no observer", "setUnobserved", "ns", 1, "", "", {});
    add("bus set, one observer", "setObserved", "ns", 1, "", "", busSetTarget);
    add("bus set, eight observers", "setObservedByEight", "ns", 1, "", "", {});
    add("to the render thread and back", "setOnRenderThread", "us", 1e3, "two bare threads", "pingPong",
        roundTripTarget);
    add("snapshot with timestamp, 720p", "snapWithTimestamp", "ms", 1e6, "without", "snap", {});
    add("start to first picture", "startDisplay", "ms", 1e6, "", "", {});
}

}  // namespace bench

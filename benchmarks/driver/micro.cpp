// Reads what bench_micro has measured.

#include <fstream>
#include <map>
#include <nlohmann/json.hpp>

#include "driver/groups.h"

namespace bench {

namespace {

constexpr double busSetTarget = 200;  // ns, with one observer
constexpr double roundTripTarget = 3;

// Medians over the repetitions by name, nanoseconds.
std::map<std::string, double> runBenchmarks(const Run& run) {
    const std::string path = run.scratch + "/micro.json";
    runProgram({run.build + "/benchmarks/bench_micro", "--benchmark_out=" + path, "--benchmark_out_format=json",
                "--benchmark_enable_random_interleaving=true", "--benchmark_report_aggregates_only=true",
                run.quick ? "--benchmark_repetitions=3" : "--benchmark_repetitions=9",
                run.quick ? "--benchmark_min_time=0.02" : "--benchmark_min_time=0.1"});
    std::ifstream file(path);
    const auto all = nlohmann::json::parse(file);
    const std::map<std::string, double> units{{"ns", 1}, {"us", 1e3}, {"ms", 1e6}};
    std::map<std::string, double> medians;
    for (const auto& entry : all["benchmarks"]) {
        if (entry.value("aggregate_name", "") != "median") continue;
        const std::string name = entry["run_name"];
        medians[name.substr(0, name.find('/'))] =
            entry["real_time"].get<double>() * units.at(entry["time_unit"].get<std::string>());
    }
    return medians;
}

}  // namespace

void measureMicro(const Run& run, Report& report) {
    std::map<std::string, double> times = runBenchmarks(run);
    const auto add = [&](const std::string& what, const std::string& ours, const std::string& unit, double scale,
                         const std::string& whose, const std::string& theirs, std::optional<double> atMost) {
        Row row{.table = "micro", .what = what, .value = times.at(ours) / scale, .unit = unit};
        if (!theirs.empty()) {
            row.beside = whose;
            row.besideValue = times.at(theirs) / scale;
            row.ratio = row.value / row.besideValue;
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

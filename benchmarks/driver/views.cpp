// Each view beside its floor, and beside another version of the module where there is one; whether floor and module
// show the same picture; what a frame takes from the heap.

#include <cmath>
#include <fstream>
#include <iterator>
#include <memory>
#include <sstream>

#include "driver/groups.h"

namespace bench {

namespace {

constexpr double floorTarget = 1.05;
// Of the time that the views took when each frame was cut out into a texture of its own first.
constexpr double againstTargets[] = {0.50, 0.25, 0.16, 0.28, 0.28, 0.18, 0.18, 0.29, 0.34, 0.23, 0.24};
constexpr double pictureTarget = 1.0;  // mean over all pixels and colours, of 255 levels

std::vector<unsigned char> grab(const Run& run, Worker& worker) {
    const std::string path = run.scratch + "/grab";
    worker.ask("grab " + path);
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

double meanDifference(const std::vector<unsigned char>& a, const std::vector<unsigned char>& b) {
    if (a.empty() || a.size() != b.size()) fail("no picture of a window");
    double sum = 0;
    for (std::size_t i = 0; i < a.size(); ++i) sum += std::abs(a[i] - b[i]);
    return sum / static_cast<double>(a.size());
}

void addHeap(const Run& run, Worker& module, const char* view, Report& report) {
    std::istringstream answer(module.ask("heap " + std::to_string(run.framesARound)));
    double own = 0;
    double driver = 0;
    double drawn = 0;
    answer >> own >> driver >> drawn;
    report.add({.table = "heap",
                .what = view,
                .value = own / drawn,
                .unit = "a frame",
                .beside = "GL driver",
                .besideValue = driver / drawn,
                .atMost = 0});
}

}  // namespace

std::vector<std::string> workerCommand(const Run& run, const std::string& name, const Scene& scene) {
    const int height = scene.frameHeight != 0 ? scene.frameHeight : scene.view == 0 ? 1080 : 1920;
    std::vector<std::string> command{run.build + "/benchmarks/bench_" + name};
    for (const int number :
         {scene.view, scene.frameWidth, height, scene.windowWidth, scene.windowHeight, scene.displays, scene.faces}) {
        command.push_back(std::to_string(number));
    }
    return command;
}

std::vector<std::vector<double>> measureInTurn(const Run& run, const std::vector<Worker*>& workers) {
    std::vector<std::vector<double>> times(workers.size());
    const std::string question = "run " + std::to_string(run.framesARound);
    for (int round = 0; round < run.rounds; ++round) {
        for (std::size_t i = 0; i < workers.size(); ++i) {
            const std::size_t turn = round % 2 ? workers.size() - 1 - i : i;
            std::istringstream answer(workers[turn]->ask(question));
            double seconds = 0;
            double drawn = 0;
            answer >> seconds >> drawn;
            if (drawn <= 0) fail("a worker has drawn nothing");
            times[turn].push_back(1e3 * seconds / drawn);
        }
    }
    return times;
}

double medianRatio(const std::vector<double>& ours, const std::vector<double>& others) {
    std::vector<double> ratios;
    for (std::size_t i = 0; i < ours.size(); ++i) ratios.push_back(ours[i] / others[i]);
    return median(ratios);
}

bool checkPictures(const Run& run, Report& report) {
    bool same = true;
    for (int view = 0; view <= 10; ++view) {
        Worker module(workerCommand(run, "module", {.view = view}));
        Worker floor(workerCommand(run, "floor", {.view = view}));
        const double difference = meanDifference(grab(run, module), grab(run, floor));
        report.add({.table = "pictures",
                    .what = viewNames[view],
                    .value = difference,
                    .unit = "levels",
                    .atMost = pictureTarget});
        same = same && difference <= pictureTarget;
    }
    return same;
}

void measureViews(const Run& run, Report& report) {
    for (int view = 0; view <= 10; ++view) {
        Worker module(workerCommand(run, "module", {.view = view}));
        Worker floor(workerCommand(run, "floor", {.view = view}));
        std::vector<Worker*> workers{&module, &floor};
        std::unique_ptr<Worker> other;
        if (!run.against.empty()) {
            other = std::make_unique<Worker>(workerCommand(run, "against", {.view = view}));
            workers.push_back(other.get());
        }
        const auto times = measureInTurn(run, workers);
        for (std::size_t i = 1; i < times.size(); ++i) {
            report.add({.table = "views",
                        .what = viewNames[view],
                        .value = median(times[0]),
                        .unit = "ms",
                        .beside = i == 1 ? "floor" : "before",
                        .besideValue = median(times[i]),
                        .ratio = medianRatio(times[0], times[i]),
                        .atMost = i == 1 ? floorTarget : againstTargets[view]});
        }
    }
    for (int view = 0; view <= 10; ++view) {
        Worker module(workerCommand(run, "module", {.view = view}));
        addHeap(run, module, viewNames[view], report);
    }
}

}  // namespace bench

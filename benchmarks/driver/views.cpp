// Each view beside its floor, and beside another version of the module where there is one; whether floor and module
// show the same picture; what a frame takes from the heap.

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <memory>
#include <sstream>

#include "driver/groups.h"

namespace bench {

namespace {

constexpr double floorTarget = 1.05;
// The last commit that cut each frame out into a texture of its own first: the targets are parts of its time.
const char* const againstCommit = "687d3aa";
constexpr double againstTargets[zet::renderModes.size()] = {0.50, 0.25, 0.16, 0.28, 0.28, 0.18,
                                                            0.18, 0.29, 0.34, 0.23, 0.24};
// Floor and module add up the same numbers in another order, so colours may round to another level, and a pixel on the
// edge of a triangle may fall to its other side. A floor that leaves out anything, even a line, exceeds the targets.
constexpr double pictureTarget = 0.1;  // mean over all pixels and colours, of 255 levels
constexpr int wrongLevels = 8;         // a pixel of which a colour is further off counts as wrong
constexpr double wrongTarget = 0.02;   // % of the pixels

std::vector<unsigned char> grab(const Run& run, Worker& worker) {
    const std::string path = run.scratch + "/grab";
    worker.ask("grab " + path);
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

struct Difference {
    double mean = 0;   // levels
    double wrong = 0;  // % of the pixels
};

// Of two pictures of three bytes a pixel.
Difference differenceOf(const std::vector<unsigned char>& a, const std::vector<unsigned char>& b) {
    if (a.empty() || a.size() != b.size()) fail("no picture of a window");
    double sum = 0;
    double wrong = 0;
    for (std::size_t pixel = 0; pixel < a.size(); pixel += 3) {
        int worst = 0;
        for (std::size_t i = pixel; i < pixel + 3; ++i) {
            const int off = std::abs(a[i] - b[i]);
            sum += off;
            worst = std::max(worst, off);
        }
        if (worst > wrongLevels) ++wrong;
    }
    const auto count = static_cast<double>(a.size());
    return {sum / count, 100 * wrong / (count / 3)};
}

void addHeap(const Run& run, Worker& module, const std::string& view, Report& report) {
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
    const int height = scene.frameHeight != 0 ? scene.frameHeight : scene.view == zet::RENDER_MODE_FLAT ? 1080 : 1920;
    std::vector<std::string> command{run.build + "/benchmarks/bench_" + name};
    for (const int number : {int{scene.view}, scene.frameWidth, height, scene.windowWidth, scene.windowHeight,
                             scene.displays, scene.faces}) {
        command.push_back(std::to_string(number));
    }
    return command;
}

std::vector<std::vector<double>> measureInTurn(int rounds, std::size_t count,
                                               const std::function<double(std::size_t)>& measure) {
    std::vector<std::vector<double>> numbers(count);
    for (int round = 0; round < rounds; ++round) {
        for (std::size_t i = 0; i < count; ++i) {
            const std::size_t turn = round % 2 ? count - 1 - i : i;
            numbers[turn].push_back(measure(turn));
        }
    }
    return numbers;
}

std::vector<std::vector<double>> measureInTurn(const Run& run, const std::vector<Worker*>& workers) {
    const std::string question = "run " + std::to_string(run.framesARound);
    return measureInTurn(run.rounds, workers.size(), [&](std::size_t turn) {
        std::istringstream answer(workers[turn]->ask(question));
        double seconds = 0;
        double drawn = 0;
        answer >> seconds >> drawn;
        if (drawn <= 0) fail("a worker has drawn nothing");
        return 1e3 * seconds / drawn;
    });
}

double medianRatio(const std::vector<double>& ours, const std::vector<double>& others) {
    std::vector<double> ratios;
    for (std::size_t i = 0; i < ours.size(); ++i) ratios.push_back(ours[i] / others[i]);
    return median(ratios);
}

bool checkPictures(const Run& run, Report& report) {
    bool same = true;
    for (const zet::RenderModeInfo& view : zet::renderModes) {
        Worker module(workerCommand(run, "module", {.view = view.mode}));
        Worker floor(workerCommand(run, "floor", {.view = view.mode}));
        const auto [mean, wrong] = differenceOf(grab(run, module), grab(run, floor));
        report.add({.table = "pictures",
                    .what = std::string(view.name),
                    .value = mean,
                    .unit = "levels",
                    .atMost = pictureTarget});
        report.add({.table = "pictures",
                    .what = std::string(view.name) + ", wrong pixels",
                    .value = wrong,
                    .unit = "%",
                    .atMost = wrongTarget});
        same = same && mean <= pictureTarget && wrong <= wrongTarget;
    }
    return same;
}

void measureViews(const Run& run, Report& report) {
    for (const zet::RenderModeInfo& view : zet::renderModes) {
        Worker module(workerCommand(run, "module", {.view = view.mode}));
        Worker floor(workerCommand(run, "floor", {.view = view.mode}));
        std::vector<Worker*> workers{&module, &floor};
        std::unique_ptr<Worker> other;
        if (!run.against.empty()) {
            other = std::make_unique<Worker>(workerCommand(run, "against", {.view = view.mode}));
            workers.push_back(other.get());
        }
        const auto times = measureInTurn(run, workers);
        for (std::size_t i = 1; i < times.size(); ++i) {
            Row row{.table = "views",
                    .what = std::string(view.name),
                    .value = median(times[0]),
                    .unit = "ms",
                    .beside = i == 1 ? "floor" : "before",
                    .besideValue = median(times[i]),
                    .ratio = medianRatio(times[0], times[i])};
            if (i == 1) row.atMost = floorTarget;
            if (i == 2 && run.againstVersion == againstCommit) row.atMost = againstTargets[view.mode];
            report.add(row);
        }
    }
    for (const zet::RenderModeInfo& view : zet::renderModes) {
        Worker module(workerCommand(run, "module", {.view = view.mode}));
        addHeap(run, module, std::string(view.name), report);
    }
}

}  // namespace bench

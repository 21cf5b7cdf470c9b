// How the cost of a frame grows: with the frame, with the window, with displays in one process, with faces.

#include <algorithm>
#include <memory>

#include "driver/groups.h"

namespace bench {

namespace {

constexpr double displaysTarget = 1.05;  // for each of eight, compared with one alone

// All workers of the scenes run at once, so that they can take turns.
std::vector<std::vector<double>> measureScenes(const Run& run, const std::vector<Scene>& scenes, bool withFloors) {
    std::vector<std::unique_ptr<Worker>> owned;
    std::vector<Worker*> workers;
    for (const Scene& scene : scenes) {
        owned.push_back(std::make_unique<Worker>(workerCommand(run, "module", scene)));
        if (withFloors) owned.push_back(std::make_unique<Worker>(workerCommand(run, "floor", scene)));
    }
    for (const auto& worker : owned) workers.push_back(worker.get());
    return measureInTurn(run, workers);
}

std::string size(int width, int height) {
    return std::to_string(width) + "x" + std::to_string(height);
}

void addBesideFloors(const Run& run, Report& report, const std::string& table, const std::vector<Scene>& scenes) {
    const auto times = measureScenes(run, scenes, true);
    for (std::size_t i = 0; i < scenes.size(); ++i) {
        const Scene& scene = scenes[i];
        const auto& ours = times[2 * i];
        const auto& floor = times[2 * i + 1];
        report.add({.table = table,
                    .what = table == "frames" ? size(scene.frameWidth, scene.frameHeight)
                                              : size(scene.windowWidth, scene.windowHeight),
                    .value = median(ours),
                    .unit = "ms",
                    .beside = "floor",
                    .besideValue = median(floor),
                    .ratio = medianRatio(ours, floor)});
    }
}

void addDisplays(const Run& run, Report& report) {
    std::vector<Scene> scenes;
    for (const int displays : {1, 2, 4, 8}) {
        scenes.push_back(
            {.frameWidth = 1280, .frameHeight = 720, .windowWidth = 480, .windowHeight = 270, .displays = displays});
    }
    const auto times = measureScenes(run, scenes, false);
    for (std::size_t i = 0; i < scenes.size(); ++i) {
        Row row{.table = "displays",
                .what = std::to_string(scenes[i].displays),
                .value = median(times[i]),
                .unit = "ms",
                .beside = "one",
                .besideValue = median(times[0]),
                .ratio = medianRatio(times[i], times[0])};
        if (scenes[i].displays == 8) row.atMost = displaysTarget;
        report.add(row);
    }
}

void addFaces(const Run& run, Report& report) {
    std::vector<Scene> scenes;
    for (const int faces : {0, 1, 5, 10, 20, 50}) scenes.push_back({.faces = faces});
    const auto times = measureScenes(run, scenes, false);
    for (std::size_t i = 0; i < scenes.size(); ++i) {
        report.add({.table = "faces",
                    .what = std::to_string(scenes[i].faces),
                    .value = median(times[i]),
                    .unit = "ms",
                    .beside = "none",
                    .besideValue = median(times[0]),
                    .ratio = medianRatio(times[i], times[0])});
    }
}

}  // namespace

void measureGrowth(const Run& wanted, Report& report) {
    Run run = wanted;
    run.rounds = std::min(run.rounds, 3);  // many scenes, which differ by more than the rounds do
    std::vector<Scene> frames;
    for (const auto& [width, height] : {std::pair{640, 480}, {1280, 720}, {1920, 1080}, {2560, 1440}, {3840, 2160}}) {
        frames.push_back({.frameWidth = width, .frameHeight = height});
    }
    std::vector<Scene> windows;
    for (const auto& [width, height] : {std::pair{320, 180}, {640, 360}, {1280, 720}, {1920, 1080}}) {
        windows.push_back({.frameHeight = 1080, .windowWidth = width, .windowHeight = height});
    }
    addBesideFloors(run, report, "frames", frames);
    addBesideFloors(run, report, "windows", windows);
    addDisplays(run, report);
    addFaces(run, report);
}

}  // namespace bench

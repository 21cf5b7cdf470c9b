#pragma once

#include <functional>
#include <string>
#include <vector>

#include "driver/process.h"
#include "driver/report.h"
#include "zet/rendermode.h"

namespace bench {

/// How a run is made.
struct Run {
    bool quick = false;
    std::string against;         // another version of the module, for which a worker is there; empty for none
    std::string againstVersion;  // its commit
    std::string build;           // the build's folder
    std::string scratch;         // a folder of its own for large files
    int rounds = quick ? 2 : 5;
    int framesARound = quick ? 20 : 40;  // 30 a second
};

/// Arguments of a worker, see worker/main.cpp. The size of a frame is the view's own where none is given.
struct Scene {
    zet::RenderMode view = zet::RENDER_MODE_FLAT;
    int frameWidth = 1920;
    int frameHeight = 0;
    int windowWidth = 1280;
    int windowHeight = 720;
    int displays = 1;
    int faces = 0;
};

/// A worker of the build: `name` is module, floor or against.
std::vector<std::string> workerCommand(const Run& run, const std::string& name, const Scene& scene);

/// CPU milliseconds a drawn picture of each worker, in all rounds: they take turns, the other way round in every second
/// round.
std::vector<std::vector<double>> measureInTurn(const Run& run, const std::vector<Worker*>& workers);

/// The same for anything that can be measured: `measure` gives the number of the one with an index.
std::vector<std::vector<double>> measureInTurn(int rounds, std::size_t count,
                                               const std::function<double(std::size_t)>& measure);

/// The median of the ratios of the rounds.
double medianRatio(const std::vector<double>& ours, const std::vector<double>& others);

// The groups. Each prints and keeps its rows.
bool checkPictures(const Run& run, Report& report);  // false where a floor draws another picture than the module
void measureViews(const Run& run, Report& report);
void measurePlayers(const Run& run, Report& report);
void measureGrowth(const Run& run, Report& report);
void measureMicro(const Run& run, Report& report);

/// Draws what is in the report as PNG files into the folder.
void writePlots(const Report& report, const std::string& folder);

}  // namespace bench

// zetplay beside the players that people have, on the same raw files: CPU time from start to end a frame, memory, and
// what a paused player still does.

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>

#include "driver/groups.h"

namespace bench {

namespace {

using namespace std::chrono_literals;
namespace fs = std::filesystem;

constexpr double mpvTarget = 0.85;
constexpr double ffplayTarget = 1.00;
constexpr double unrollTarget = 0.60;
constexpr double memoryTarget = 0.60;
constexpr double pausedSwitchesTarget = 5;
constexpr double pausedTimeTarget = 1;  // ms

using Command = std::vector<std::string>;

// A film of both kinds: 30 frames a second, raw, so that no decoder is measured.
std::string makeFilm(const Run& run, const std::string& name, const std::string& size, const std::string& filter,
                     int frames) {
    const std::string path = run.scratch + "/" + name + ".y4m";
    runProgram({"ffmpeg", "-v", "error", "-f", "lavfi", "-i", "testsrc2=rate=30:size=" + size, "-vf", filter,
                "-frames:v", std::to_string(frames), path});
    return path;
}

Command zetplay(const Run& run, const std::string& film, const std::string& view) {
    return {run.build + "/player/zetplay", film, "--view", view, "--stats"};
}

// Every frame is drawn, as zetplay does it, and nothing beside the picture.
Command mpv(const std::string& film, const Command& more = {}) {
    Command command{"mpv",
                    "--no-config",
                    "--no-terminal",
                    "--vo=gpu",
                    "--gpu-context=x11egl",
                    "--no-audio",
                    "--no-osc",
                    "--load-scripts=no",
                    "--framedrop=no",
                    "--geometry=1280x720",
                    "--keepaspect-window=no",
                    film};
    command.insert(command.end(), more.begin(), more.end());
    return command;
}

Command ffplay(const std::string& film) {
    return {"env",          "SDL_RENDER_DRIVER=opengl",
            "ffplay",       "-v",
            "quiet",        "-nostats",
            "-an",          "-autoexit",
            "-noframedrop", "-x",
            "1280",         "-y",
            "720",          film};
}

struct Uses {
    std::vector<double> milliseconds;  // CPU, a drawn frame
    std::vector<double> residentMiB;
    std::vector<double> drawn;  // % of the film's frames
};

// zetplay drops what it has no time for, and says so; the others have been told to draw all.
std::optional<double> toldDrawn(const Use& use) {
    const std::size_t line = use.output.rfind("{\"");
    if (line == std::string::npos) return {};
    const auto stats = nlohmann::json::parse(use.output.substr(line), nullptr, false);
    if (!stats.is_object() || !stats.contains("frames_drawn")) return {};
    return stats["frames_drawn"].get<double>();
}

std::vector<Uses> runInTurn(const std::vector<Command>& players, int frames, int rounds) {
    std::vector<Uses> uses(players.size());
    for (int round = 0; round < rounds; ++round) {
        for (std::size_t turn = 0; turn < players.size(); ++turn) {
            const std::size_t i = round % 2 ? players.size() - 1 - turn : turn;
            const Use use = runProgram(players[i]);
            const double drawn = toldDrawn(use).value_or(frames);
            if (toldDrawn(use)) uses[i].drawn.push_back(100 * drawn / frames);
            uses[i].milliseconds.push_back(1e3 * use.cpuSeconds / drawn);
            uses[i].residentMiB.push_back(use.residentMiB);
        }
    }
    return uses;
}

Row beside(const std::string& what, const std::vector<double>& ours, const std::string& unit, const std::string& whose,
           const std::vector<double>& theirs, double atMost) {
    return {.table = "players",
            .what = what,
            .value = median(ours),
            .unit = unit,
            .beside = whose,
            .besideValue = median(theirs),
            .ratio = medianRatio(ours, theirs),
            .atMost = atMost};
}

// What all threads of a process have done so far.
struct Doings {
    double switches = 0;  // voluntary ones: sleeps
    double milliseconds = 0;
};

Doings doingsOf(pid_t pid) {
    Doings doings;
    for (const auto& task : fs::directory_iterator("/proc/" + std::to_string(pid) + "/task")) {
        std::ifstream status(task.path() / "status");
        std::string word;
        while (status >> word) {
            double count = 0;
            if (word == "voluntary_ctxt_switches:" && status >> count) doings.switches += count;
        }
        double nanoseconds = 0;
        std::ifstream(task.path() / "schedstat") >> nanoseconds;
        doings.milliseconds += 1e-6 * nanoseconds;
    }
    return doings;
}

// In ten seconds. The space bar pauses the player.
Doings doingsPaused(const Command& command) {
    const Program player(command);
    rest(2s);
    if (!tryProgram({"timeout", "20", "xdotool", "search", "--onlyvisible", "--sync", "--pid",
                     std::to_string(player.pid()), "windowfocus", "key", "space"})) {
        fail("no window of " + command.front());
    }
    rest(2s);
    const Doings before = doingsOf(player.pid());
    rest(10s);
    const Doings after = doingsOf(player.pid());
    return {after.switches - before.switches, after.milliseconds - before.milliseconds};
}

void addPaused(const Run& run, const std::string& film, Report& report) {
    Command ours = zetplay(run, film, "flat");
    ours.push_back("--loop");
    const Doings zet = doingsPaused(ours);
    const Doings other = doingsPaused(mpv(film, {"--loop"}));
    const auto add = [&](const std::string& what, const std::string& unit, double Doings::*number, double atMost) {
        report.add({.table = "paused",
                    .what = what,
                    .value = zet.*number,
                    .unit = unit,
                    .beside = "mpv",
                    .besideValue = other.*number,
                    .atMost = atMost});
    };
    add("voluntary switches in 10 s", "", &Doings::switches, pausedSwitchesTarget);
    add("CPU time in 10 s", "ms", &Doings::milliseconds, pausedTimeTarget);
}

}  // namespace

void measurePlayers(const Run& run, Report& report) {
    const int frames = run.quick ? 90 : 300;
    const int rounds = run.quick ? 1 : 3;

    const std::string film = makeFilm(run, "flat", "1920x1080", "null", frames);
    const auto flat = runInTurn({zetplay(run, film, "flat"), mpv(film), ffplay(film)}, frames, rounds);
    report.add(beside("flat", flat[0].milliseconds, "ms", "mpv", flat[1].milliseconds, mpvTarget));
    report.add(beside("flat", flat[0].milliseconds, "ms", "ffplay", flat[2].milliseconds, ffplayTarget));
    report.add(beside("flat, memory", flat[0].residentMiB, "MiB", "mpv", flat[1].residentMiB, memoryTarget));
    if (!flat[0].drawn.empty()) {
        report.add({.table = "players", .what = "flat, frames drawn", .value = median(flat[0].drawn), .unit = "%"});
    }

    const std::string fisheye =
        makeFilm(run, "fisheye", "1920x1920", "v360=equirect:fisheye:h_fov=180:v_fov=180:w=1920:h=1920", frames);
    const auto strip = runInTurn(
        {zetplay(run, fisheye, "panorama"), mpv(fisheye, {"--vf=lavfi=[v360=fisheye:equirect:ih_fov=180:iv_fov=180]"})},
        frames, rounds);
    report.add(beside("fisheye unrolled", strip[0].milliseconds, "ms", "mpv", strip[1].milliseconds, unrollTarget));
    fs::remove(fisheye);
    addPaused(run, film, report);
    fs::remove(film);
}

}  // namespace bench

// A worker: draws pictures of one scene, and tells what that has cost. It is idle until a line on standard input asks
// for something, so that several workers can be measured in turn.
//
// usage: WORKER VIEW FRAMEWIDTH FRAMEHEIGHT WINDOWWIDTH WINDOWHEIGHT [DISPLAYS [FACES]]
//
//   run N       N pictures at 30 a second; answers: CPU seconds of all threads, pictures drawn
//   heap N      the same; answers: heap allocations of the code under test, of the graphics driver, pictures drawn
//   grab FILE   one picture; writes the pixels of the first window, R, G, B; answers: done
//   about       answers: the graphics driver, from a floor

#include <ctime>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <sstream>
#include <string>
#include <thread>

#include "worker/allocations.h"
#include "worker/painter.h"

namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

constexpr auto framePeriod = std::chrono::nanoseconds(1s) / 30;
// After so long without a draw, and so many times as long as each took, no more draws will come.
constexpr std::chrono::nanoseconds quiet = 120ms;
constexpr int quietDraws = 4;
constexpr auto patience = 20s;  // for the first draw
constexpr int warmUp = 6;

double cpuSeconds() {
    timespec now{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + 1e-9 * static_cast<double>(now.tv_nsec);
}

std::vector<std::unique_ptr<bench::XWindow>> openWindows(const bench::Scene& scene) {
    std::vector<std::unique_ptr<bench::XWindow>> windows;
    for (int i = 0; i < scene.displays; ++i) {
        windows.push_back(
            std::make_unique<bench::XWindow>(scene.window, i % 4 * scene.window.width, i / 4 * scene.window.height));
    }
    return windows;
}

class Worker {
public:
    explicit Worker(const bench::Scene& scene) : _windows(openWindows(scene)) {
        // Three: pictures fresh from a decoder are not in the drawing thread's cache either.
        for (int i = 0; i < 3; ++i) _pictures.emplace_back(scene.frame, i);
        _painter = bench::makePainter(scene, _windows);
        play(warmUp);
    }

    void run(int count) {
        const double before = cpuSeconds();
        const long drawn = play(count);
        std::cout << cpuSeconds() - before << ' ' << drawn << std::endl;
    }

    void heap(int count) {
        const bench::Allocations before = bench::allocations();
        bench::countAllocations(true);
        const long drawn = play(count);
        bench::countAllocations(false);
        const bench::Allocations after = bench::allocations();
        std::cout << after.own - before.own << ' ' << after.driver - before.driver << ' ' << drawn << std::endl;
    }

    std::string about() const { return _painter->about(); }

    void grab(const std::string& path) {
        for (auto& window : _windows) window->raise();
        _next = 0;
        play(1);
        const std::vector<std::uint8_t> pixels = _windows.front()->pixels();
        std::ofstream(path, std::ios::binary)
            .write(reinterpret_cast<const char*>(pixels.data()), static_cast<std::streamsize>(pixels.size()));
        std::cout << "done" << std::endl;
    }

private:
    // Returns how many were drawn.
    long play(int count) {
        const long before = _painter->drawn();
        const auto start = Clock::now();
        auto next = start;
        for (int i = 0; i < count; ++i) {
            std::this_thread::sleep_until(next);
            next = std::max(next + framePeriod, Clock::now());  // after a late one the rest keep their distance
            _painter->show(_pictures[_next++ % _pictures.size()]);
        }
        const long each = (_painter->drawn() - before) / static_cast<long>(_windows.size());
        const auto pause = std::max(quiet, quietDraws * (Clock::now() - start) / std::max(each, 1L));
        long drawn = 0;
        do {
            drawn = _painter->drawn();
            std::this_thread::sleep_for(pause);
        } while (_painter->drawn() != drawn || (drawn == before && Clock::now() < start + patience));
        return drawn - before;
    }

    std::vector<std::unique_ptr<bench::XWindow>> _windows;
    std::vector<bench::Picture> _pictures;
    std::size_t _next = 0;
    std::unique_ptr<bench::Painter> _painter;
};

}  // namespace

int main(int argc, char** argv) {
    const auto number = [&](int index, int otherwise) { return index < argc ? std::atoi(argv[index]) : otherwise; };
    if (argc < 6) {
        std::fputs("usage: WORKER VIEW FRAMEWIDTH FRAMEHEIGHT WINDOWWIDTH WINDOWHEIGHT [DISPLAYS [FACES]]\n", stderr);
        return 2;
    }
    Worker worker({.view = number(1, 0),
                   .frame = {number(2, 0), number(3, 0)},
                   .window = {number(4, 0), number(5, 0)},
                   .displays = number(6, 1),
                   .faces = number(7, 0)});
    std::string line;
    while (std::getline(std::cin, line)) {
        std::istringstream words(line);
        std::string command;
        std::string argument;
        words >> command >> std::ws;
        std::getline(words, argument);
        if (command == "run") {
            worker.run(std::atoi(argument.c_str()));
        } else if (command == "heap") {
            worker.heap(std::atoi(argument.c_str()));
        } else if (command == "grab") {
            worker.grab(argument);
        } else if (command == "about") {
            std::cout << worker.about() << std::endl;
        } else {
            std::cerr << "unknown: " << line << '\n';
            return 2;
        }
    }
}

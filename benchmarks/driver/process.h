#pragma once

#include <sys/types.h>

#include <chrono>
#include <cstdio>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace bench {

/// Ends this program with one line. It is caught in `main`, so that everything is cleaned up on the way.
struct Failure : std::runtime_error {
    using std::runtime_error::runtime_error;
};

[[noreturn]] void fail(const std::string& what);

/// From now on SIGINT and SIGTERM make any wait here throw `Failure`, and writing to a child that has ended raises no
/// SIGPIPE.
void catchSignals();

/// The signal that has come; 0 for none.
int signalCaught();

/// Sleeps.
void rest(std::chrono::milliseconds time);

/// A child process that answers a line with a line. Throws `Failure` if the child ends too early.
class Worker {
public:
    explicit Worker(const std::vector<std::string>& command);
    ~Worker();
    Worker(const Worker&) = delete;
    Worker& operator=(const Worker&) = delete;

    std::string ask(const std::string& line);

private:
    std::string _name;
    pid_t _pid = 0;
    std::FILE* _to = nullptr;
    std::FILE* _from = nullptr;
};

/// A program that runs in the background, without input or output.
class Program {
public:
    explicit Program(const std::vector<std::string>& command);
    ~Program();  // ends it
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    pid_t pid() const { return _pid; }

private:
    pid_t _pid;
};

/// What a program has used from its start to its end, children that it waited for included.
struct Use {
    double cpuSeconds = 0;
    double residentMiB = 0;  // at most
    std::string output;      // what it has written, errors too
};

/// Runs the program to its end. Throws `Failure` with its output unless it succeeds.
Use runProgram(const std::vector<std::string>& command);

/// The same; nothing if the program fails.
std::optional<Use> tryProgram(const std::vector<std::string>& command);

}  // namespace bench

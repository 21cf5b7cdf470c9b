#pragma once

#include <sys/types.h>

#include <cstdio>
#include <string>
#include <vector>

namespace bench {

/// A child process that answers a line with a line. Where it ends before it should, so does this program, with one
/// line.
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

/// Runs it to its end, which must be a good one: otherwise this program ends too, with what it has written.
Use runProgram(const std::vector<std::string>& command);

[[noreturn]] void fail(const std::string& what);

}  // namespace bench

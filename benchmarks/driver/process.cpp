#include "driver/process.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <memory>
#include <thread>

namespace bench {

namespace {

volatile std::sig_atomic_t caught = 0;

void failIfSignalled() {
    if (caught) fail("stopped");
}

// For a child that has been told to end, or ends by itself.
void waitForEnd(pid_t pid) {
    if (caught) kill(pid, SIGTERM);
    while (waitpid(pid, nullptr, 0) < 0 && errno == EINTR) {
    }
}

// A child with these as standard input, output and error output.
pid_t start(const std::vector<std::string>& command, int in, int out, int error = STDERR_FILENO) {
    std::vector<char*> words;
    for (const std::string& word : command) words.push_back(const_cast<char*>(word.c_str()));
    words.push_back(nullptr);
    const pid_t pid = fork();
    if (pid < 0) fail("no process for " + command.front());
    if (pid == 0) {
        std::signal(SIGPIPE, SIG_DFL);
        dup2(in, STDIN_FILENO);
        dup2(error, STDERR_FILENO);
        dup2(out, STDOUT_FILENO);
        execvp(words.front(), words.data());
        std::perror(words.front());
        _exit(127);
    }
    return pid;
}

// Without input; output and errors go to one place.
pid_t startAlone(const std::vector<std::string>& command, int out) {
    const int nothing = open("/dev/null", O_RDWR | O_CLOEXEC);
    const pid_t pid = start(command, nothing, out >= 0 ? out : nothing, out >= 0 ? out : nothing);
    close(nothing);
    return pid;
}

std::string contents(std::FILE* file) {
    std::string text;
    std::rewind(file);
    for (int c = std::fgetc(file); c != EOF; c = std::fgetc(file)) text += static_cast<char>(c);
    return text;
}

}  // namespace

void fail(const std::string& what) {
    throw Failure(what);
}

void catchSignals() {
    struct sigaction action {};  // without SA_RESTART: what waits comes back
    action.sa_handler = [](int number) { caught = number; };
    sigaction(SIGINT, &action, nullptr);
    sigaction(SIGTERM, &action, nullptr);
    std::signal(SIGPIPE, SIG_IGN);
}

int signalCaught() {
    return caught;
}

void rest(std::chrono::milliseconds time) {
    const auto end = std::chrono::steady_clock::now() + time;
    while (std::chrono::steady_clock::now() < end) {
        failIfSignalled();
        std::this_thread::sleep_for(std::min(time, std::chrono::milliseconds(100)));
    }
}

Worker::Worker(const std::vector<std::string>& command) : _name(command.front()) {
    int to[2];
    int from[2];
    if (pipe2(to, O_CLOEXEC) != 0 || pipe2(from, O_CLOEXEC) != 0) fail("no pipes");
    _pid = start(command, to[0], from[1]);
    close(to[0]);
    close(from[1]);
    _to = fdopen(to[1], "w");
    _from = fdopen(from[0], "r");
}

Worker::~Worker() {
    std::fclose(_to);
    std::fclose(_from);
    waitForEnd(_pid);
}

std::string Worker::ask(const std::string& line) {
    std::fprintf(_to, "%s\n", line.c_str());
    std::fflush(_to);
    char answer[1000];
    const bool answered = std::fgets(answer, sizeof answer, _from);
    failIfSignalled();
    if (!answered) fail(_name + " has ended before its answer to " + line);
    return answer;
}

Program::Program(const std::vector<std::string>& command) : _pid(startAlone(command, -1)) {}

Program::~Program() {
    kill(_pid, SIGTERM);
    waitForEnd(_pid);
}

namespace {

// Its end is as it comes.
std::pair<int, Use> runToEnd(const std::vector<std::string>& command) {
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::tmpfile(), std::fclose);
    if (!file) fail("no temporary file");
    const pid_t pid = startAlone(command, fileno(file.get()));
    int status = 0;
    rusage usage{};
    while (wait4(pid, &status, 0, &usage) < 0 && errno == EINTR) {
        if (caught) kill(pid, SIGTERM);
    }
    failIfSignalled();
    const auto seconds = [](const timeval& t) {
        return static_cast<double>(t.tv_sec) + 1e-6 * static_cast<double>(t.tv_usec);
    };
    return {status,
            {seconds(usage.ru_utime) + seconds(usage.ru_stime), static_cast<double>(usage.ru_maxrss) / 1024,
             contents(file.get())}};
}

}  // namespace

Use runProgram(const std::vector<std::string>& command) {
    auto [status, use] = runToEnd(command);
    if (status != 0) fail(command.front() + " has failed: " + use.output);
    return use;
}

std::optional<Use> tryProgram(const std::vector<std::string>& command) {
    auto [status, use] = runToEnd(command);
    if (status != 0) return {};
    return use;
}

}  // namespace bench

#include "script/script.h"

#include <sstream>

#include "script/scriptcommands.h"
#include "text/linereader.h"
#include "text/textfile.h"

namespace zetplay {

namespace {

std::string place(const std::string& name, int line) {
    return name + ":" + std::to_string(line) + ": ";
}

}  // namespace

Script::Script(const std::string& path) : _name(path), _standardInput(path == "-") {
    if (_standardInput) {
        _name = "standard input";
        return;
    }
    std::istringstream file(readText(path));
    std::string text;
    for (int line = 1; std::getline(file, text); ++line)
        if (auto step = parse(text, line)) _steps.push_back(std::move(*step));
}

void Script::run(Session& session) const {
    if (_standardInput) return runStandardInput(session);
    for (const ScriptStep& step : _steps) {
        session.drainEvents();
        if (session.stopped()) return;
        runStep(step, session);
    }
}

void Script::runStandardInput(Session& session) const {
    LineReader lines;
    const auto waiting = [&] {
        session.drainEvents();
        return !session.stopped();
    };
    for (int line = 1; const auto text = lines.next(waiting); ++line)
        if (const auto step = parse(*text, line)) runStep(*step, session);
}

void Script::runStep(const ScriptStep& step, Session& session) const {
    try {
        step.run(session);
    } catch (const Failure& failure) {
        throw Failure(place(_name, step.line) + failure.what());
    }
}

std::optional<ScriptStep> Script::parse(const std::string& text, int line) const {
    try {
        auto run = parseScriptLine(text);
        if (!run) return std::nullopt;
        return ScriptStep{line, std::move(*run)};
    } catch (const WrongUsage& wrong) {
        throw WrongUsage(place(_name, line) + wrong.what());
    }
}

}  // namespace zetplay

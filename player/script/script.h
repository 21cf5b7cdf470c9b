#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "session/session.h"

namespace zetplay {

/// One line of a script, ready to run.
struct ScriptStep {
    int line = 0;
    std::function<void(Session&)> run;
};

/// A script file, or standard input as it comes in.
class Script {
public:
    /// Reads and checks the whole file. Throws `WrongUsage` that names file, line and cause, or `Failure` if the file
    /// can't be read. Standard input, "-", is read by `run`.
    explicit Script(const std::string& path);

    /// Runs line after line, until the end or until the session is stopped.
    void run(Session& session) const;

private:
    std::optional<ScriptStep> parse(const std::string& text, int line) const;
    void runStandardInput(Session& session) const;
    void runStep(const ScriptStep& step, Session& session) const;

    std::string _name;
    bool _standardInput;
    std::vector<ScriptStep> _steps;
};

}  // namespace zetplay

#include "script/scriptwords.h"

namespace zetplay {

std::string ScriptWords::text(const char* what) {
    if (!more()) throw WrongUsage(std::string(what) + " is missing");
    return _words[_next++];
}

bool ScriptWords::take(const char* word) {
    if (!more() || _words[_next] != word) return false;
    ++_next;
    return true;
}

double ScriptWords::realDouble(const char* what) {
    const std::string word = text(what);
    const auto value = parseNumber<double>(word);
    if (!value) refuse(word, what);
    return *value;
}

void ScriptWords::end() const {
    if (more()) throw WrongUsage("'" + _words[_next] + "' is one word too many");
}

void ScriptWords::refuse(const std::string& word, const char* what) {
    throw WrongUsage("'" + word + "' is not " + what);
}

}  // namespace zetplay

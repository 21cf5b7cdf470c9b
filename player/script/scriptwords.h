#pragma once

#include <limits>
#include <string>
#include <vector>

#include "session/options.h"
#include "text/words.h"

namespace zetplay {

/// The words behind a command's name, taken from first to last. What does not fit throws `WrongUsage`.
class ScriptWords {
public:
    explicit ScriptWords(std::vector<std::string> words) : _words(std::move(words)) {}

    bool more() const { return _next < _words.size(); }
    /// The next word; `what` names what it should be.
    std::string text(const char* what);
    /// The next word if it is `word`.
    bool take(const char* word);

    int integer(const char* what, int least = std::numeric_limits<int>::min(),
                int most = std::numeric_limits<int>::max()) {
        return number<int>(what, least, most);
    }
    std::int64_t longInteger(const char* what) {
        return number<std::int64_t>(what, std::numeric_limits<std::int64_t>::min(),
                                    std::numeric_limits<std::int64_t>::max());
    }
    /// Any value, infinities and NaN included.
    float real(const char* what) { return static_cast<float>(realDouble(what)); }
    double realDouble(const char* what);
    /// 0 or 1.
    bool flag(const char* what) { return integer(what, 0, 1) != 0; }

    /// Refuses further words.
    void end() const;
    [[noreturn]] static void refuse(const std::string& word, const char* what);

private:
    template <typename Number>
    Number number(const char* what, Number least, Number most) {
        const std::string word = text(what);
        const auto value = parseNumber<Number>(word);
        if (!value || *value < least || *value > most) refuse(word, what);
        return *value;
    }

    std::vector<std::string> _words;
    std::size_t _next = 0;
};

}  // namespace zetplay

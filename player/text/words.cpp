#include "text/words.h"

namespace zetplay {

std::vector<std::string> splitAtCommas(std::string_view text, std::size_t most) {
    std::vector<std::string> pieces;
    for (;;) {
        const std::size_t comma = pieces.size() + 1 == most ? text.npos : text.find(',');
        pieces.emplace_back(text.substr(0, comma));
        if (comma == text.npos) return pieces;
        text.remove_prefix(comma + 1);
    }
}

std::optional<std::vector<std::string>> splitLine(std::string_view line) {
    std::vector<std::string> words;
    bool inWord = false;
    bool quoted = false;
    for (const char c : line) {
        const bool blank = c == ' ' || c == '\t' || c == '\r';
        if (!quoted && blank) {
            inWord = false;
            continue;
        }
        if (!inWord) {
            if (c == '#') break;
            words.emplace_back();
            inWord = true;
        }
        if (c == '"') {
            quoted = !quoted;
        } else {
            words.back() += c;
        }
    }
    if (quoted) return std::nullopt;
    return words;
}

}  // namespace zetplay

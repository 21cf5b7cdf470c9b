#pragma once

#include <charconv>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zetplay {

/// The number that all of `text` is, independent of the locale; "inf" and "nan" are floating-point numbers.
template <typename Number>
std::optional<Number> parseNumber(std::string_view text) {
    Number number{};
    const char* end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(text.data(), end, number);
    if (error != std::errc{} || rest != end) return std::nullopt;
    return number;
}

/// Pieces between commas; with `most` above 0 the last piece keeps the commas that are left.
std::vector<std::string> splitAtCommas(std::string_view text, std::size_t most = 0);

/// Words of a script line. Blanks separate them; a word with blanks is in double quotes; `#` at the start of a word
/// begins a comment. Nothing for a line that leaves a quote open.
std::optional<std::vector<std::string>> splitLine(std::string_view line);

}  // namespace zetplay

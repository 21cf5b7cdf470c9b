#include "bus/metadata.h"

#include <algorithm>
#include <limits>
#include <nlohmann/json.hpp>

#include "media/source.h"
#include "text/textfile.h"
#include "text/words.h"

namespace zetplay {

namespace {

using nlohmann::json;

/// A value and its path in the file: "frames.12.faces[0].age".
struct Place {
    const json& value;
    std::string path;

    [[noreturn]] void refuse(const std::string& wanted) const {
        throw Failure((path.empty() ? "the file" : path) + " is not " + wanted);
    }
    Place member(const std::string& key) const { return {value.at(key), path.empty() ? key : path + "." + key}; }
    Place element(std::size_t i) const { return {value.at(i), path + "[" + std::to_string(i) + "]"}; }
};

void expectObject(const Place& place, std::initializer_list<std::string_view> keys) {
    if (!place.value.is_object()) place.refuse("an object");
    for (const auto& [key, value] : place.value.items())
        if (std::find(keys.begin(), keys.end(), key) == keys.end())
            throw Failure("unknown key '" + key + "'" + (place.path.empty() ? "" : " in " + place.path));
}

template <typename Integer>
Integer integer(const Place& place) {
    constexpr auto least = std::numeric_limits<Integer>::min();
    constexpr auto most = std::numeric_limits<Integer>::max();
    const json& value = place.value;
    const bool fits = value.is_number_unsigned() ? value.get<std::uint64_t>() <= static_cast<std::uint64_t>(most)
                                                 : value.is_number_integer() &&
                                                       value.get<std::int64_t>() >= static_cast<std::int64_t>(least) &&
                                                       value.get<std::int64_t>() <= static_cast<std::int64_t>(most);
    if (!fits) place.refuse(least == 0 ? "a whole number of 0 or more" : "a whole number");
    return value.get<Integer>();
}

std::array<int, 4> four(const Place& place) {
    if (!place.value.is_array() || place.value.size() != 4) place.refuse("an array of four numbers");
    std::array<int, 4> numbers;
    for (std::size_t i = 0; i < 4; ++i) numbers[i] = integer<int>(place.element(i));
    return numbers;
}

/// The elements of the array under `key`, one after the other; none if there is no such key.
template <typename Take>
void eachOf(const Place& place, const char* key, Take take) {
    if (!place.value.contains(key)) return;
    const Place array = place.member(key);
    if (!array.value.is_array()) array.refuse("an array");
    for (std::size_t i = 0; i < array.value.size(); ++i) take(array.element(i));
}

zet::FaceItem face(const Place& place) {
    expectObject(place, {"x", "y", "w", "h", "gender", "age", "name"});
    zet::FaceItem item;
    for (const auto& [key, side] : {std::pair{"x", &item.x}, {"y", &item.y}, {"w", &item.width}, {"h", &item.height}}) {
        if (!place.value.contains(key)) throw Failure(place.path + " has no '" + key + "'");
        *side = integer<int>(place.member(key));
    }
    if (place.value.contains("gender")) item.gender = integer<int>(place.member("gender"));
    if (place.value.contains("age")) item.age = integer<std::uint32_t>(place.member("age"));
    if (place.value.contains("name")) {
        const Place name = place.member("name");
        if (!name.value.is_string() || !setName(item, name.value.get<std::string>()))
            name.refuse("a text of at most 31 characters");
    }
    return item;
}

Annotations entry(const Place& place) {
    expectObject(place, {"lens", "faces", "rects"});
    Annotations annotations;
    if (place.value.contains("lens")) annotations.lens = four(place.member("lens"));
    eachOf(place, "faces", [&](const Place& item) { annotations.faces.push_back(face(item)); });
    eachOf(place, "rects", [&](const Place& item) {
        const auto [x, y, width, height] = four(item);
        annotations.rects.push_back({x, y, width, height, 0});
    });
    if (!annotations.faces.empty() && !annotations.rects.empty())
        throw Failure(place.path + " has faces and rects: a frame carries one of them");
    return annotations;
}

json parse(const std::string& text) {
    try {
        return json::parse(text);
    } catch (const json::exception& wrong) {
        // "[json.exception.parse_error.101] parse error at line 2, column 1: …"
        const std::string cause = wrong.what();
        const std::size_t tag = cause.find("] ");
        throw Failure(tag == cause.npos ? cause : cause.substr(tag + 2));
    }
}

}  // namespace

Metadata::Metadata(const std::string& path) {
    const std::string text = readText(path);
    try {
        const json file = parse(text);
        const Place top{file, ""};
        expectObject(top, {"frames", "default"});
        if (file.contains("default")) _default = entry(top.member("default"));
        if (!file.contains("frames")) return;
        const Place frames = top.member("frames");
        if (!frames.value.is_object()) frames.refuse("an object");
        for (const auto& [key, value] : frames.value.items()) {
            const auto number = parseNumber<std::int64_t>(key);
            if (!number || *number < 0) throw Failure("'" + key + "' in frames is not a frame number");
            _frames[*number] = entry(frames.member(key));
        }
    } catch (const Failure& failure) {
        throw Failure(path + ": " + failure.what());
    }
}

const Annotations& Metadata::of(std::int64_t frame) const {
    const auto found = _frames.find(frame);
    return found == _frames.end() ? _default : found->second;
}

}  // namespace zetplay

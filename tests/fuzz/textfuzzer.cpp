// What zetplay reads as text: metadata files, words of script lines, and lists of numbers. Any bytes are either taken
// or refused with a message, and what is taken keeps the rules of a frame's records.

#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <string>

#include "bus/metadata.h"
#include "media/source.h"
#include "text/words.h"

namespace {

void expect(bool holds) {
    if (!holds) std::abort();
}

void checkFace(const zet::FaceItem& face) {
    expect(std::find(std::begin(face.name), std::end(face.name), '\0') != std::end(face.name));
}

void checkMetadata(const std::string& text) {
    // The reader takes a file name: give it a file in memory.
    static const int file = memfd_create("metadata", 0);
    expect(ftruncate(file, 0) == 0 && pwrite(file, text.data(), text.size(), 0) == static_cast<ssize_t>(text.size()));
    try {
        const zetplay::Metadata metadata("/proc/self/fd/" + std::to_string(file));
        for (const std::int64_t frame : {0, 1, 12}) {
            const zetplay::Annotations& annotations = metadata.of(frame);
            expect(annotations.faces.empty() || annotations.rects.empty());
            for (const zet::FaceItem& face : annotations.faces) checkFace(face);
        }
    } catch (const zetplay::Failure& failure) {
        expect(*failure.what() != '\0');
    }
}

// Words without quotes, blanks and '#' come back from the line that they are joined to.
void checkLine(const std::string& line) {
    const auto words = zetplay::splitLine(line);
    if (!words) return;
    std::string joined;
    bool plain = true;
    for (const std::string& word : *words) {
        plain = plain && !word.empty() && std::none_of(word.begin(), word.end(), [](char c) {
                    return c == '"' || c == '#' || c == ' ' || (c >= '\t' && c <= '\r');
                });
        joined += word + ' ';
    }
    if (plain) expect(zetplay::splitLine(joined) == words);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    checkMetadata(text);
    checkLine(text);
    if (const auto face = zetplay::parseFace(text)) checkFace(*face);
    zetplay::parseLens(text);
    zetplay::parseRect(text);
    return 0;
}

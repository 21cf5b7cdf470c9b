#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "media/image.h"
#include "media/source.h"

namespace zetplay::test {

/// A directory of its own, removed with all that is in it.
class ScratchDirectory {
public:
    ScratchDirectory();
    ~ScratchDirectory();
    std::string path(const std::string& name) const { return (_directory / name).string(); }
    /// Writes a file and gives its path.
    std::string write(const std::string& name, const std::string& content) const;

private:
    std::filesystem::path _directory;
};

/// A .y4m file of these pictures, 25 a second; `form` is their chroma and range.
std::string y4m(int width, int height, const std::string& form, const std::vector<std::string>& pictures);
constexpr const char* fullRange = "C420jpeg XCOLORRANGE=FULL";
/// Copies the pictures of one file into another; the name's ending chooses the container.
void repack(const std::string& from, const std::string& to);

/// A named pipe that gives `content`, at most 64 KB, and then neither data nor an end.
class Pipe {
public:
    Pipe(const std::string& path, const std::string& content);
    ~Pipe();
    Pipe(const Pipe&) = delete;
    Pipe& operator=(const Pipe&) = delete;

private:
    int _file;
};

/// A .y4m video of pictures whose quarters have a colour each.
std::string quarteredVideo(int width, int height, int frames);
/// Red, green and blue, 0 to 255, of a quarter by full-range BT.601; from the top left one row by row.
std::array<double, 3> shownColour(int quarter);

/// Y, U and V of a picture, one behind the other, each with the padding of its lines.
std::vector<std::uint8_t> samplesOf(const Picture& picture);
/// All pictures of a video. Throws `Failure`.
std::vector<Picture> picturesOf(const std::string& path);
Image readPng(const std::string& path);

}  // namespace zetplay::test

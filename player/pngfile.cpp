#include "pngfile.h"

#include <png.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>

#include "source.h"

namespace zetplay {

namespace {

/// A file that is removed again unless it is finished: a half-written picture is worse than none. What is no regular
/// file, such as a device, stays.
class OutFile {
public:
    explicit OutFile(const std::string& path) : _path(path), _file(std::fopen(path.c_str(), "wb")) {
        if (!_file) fail();
    }
    ~OutFile() {
        if (!_file) return;
        struct stat kind {};
        const bool regular = ::fstat(::fileno(_file), &kind) == 0 && S_ISREG(kind.st_mode);
        std::fclose(_file);
        if (regular) ::unlink(_path.c_str());
    }
    OutFile(const OutFile&) = delete;
    OutFile& operator=(const OutFile&) = delete;

    void write(const void* bytes, std::size_t size) {
        if (std::fwrite(bytes, 1, size, _file) != size) fail();
    }
    void finish() {
        if (std::fflush(_file) != 0) fail();
        std::fclose(_file);
        _file = nullptr;
    }

private:
    [[noreturn]] void fail() const { throw Failure(_path + ": " + std::strerror(errno)); }

    std::string _path;
    std::FILE* _file;
};

}  // namespace

void writePng(const std::string& path, const Image& image) {
    png_image format{};
    format.version = PNG_IMAGE_VERSION;
    format.width = static_cast<png_uint_32>(image.width);
    format.height = static_cast<png_uint_32>(image.height);
    format.format = PNG_FORMAT_RGB;
    // Encoded in memory, so that what stops the file is told by the system and not by the codec.
    png_alloc_size_t size = PNG_IMAGE_PNG_SIZE_MAX(format);
    std::vector<std::uint8_t> png(size);
    if (!png_image_write_to_memory(&format, png.data(), &size, 0, image.rgb.data(), 0, nullptr))
        throw Failure(path + ": " + format.message);
    png.resize(size);
    writeBytes(path, png);
}

void writeBytes(const std::string& path, const std::vector<std::uint8_t>& bytes) {
    OutFile file(path);
    file.write(bytes.data(), bytes.size());
    file.finish();
}

}  // namespace zetplay

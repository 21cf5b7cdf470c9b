#include "record/pngfile.h"

#include <fcntl.h>
#include <png.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <system_error>
#include <utility>

#include "media/source.h"

namespace zetplay {

namespace {

/// A file that replaces an older one when it is finished, and is removed otherwise: a half-written picture is worse
/// than none, and worse than the old one. A device or other special file is written directly; so is a file in a
/// directory that takes no new ones.
class OutFile {
public:
    explicit OutFile(const std::string& path) : _path(path) {
        if (openBeside()) return;
        _file = std::fopen(path.c_str(), "wbe");
        if (!_file) fail();
        struct stat kind {};
        if (::fstat(::fileno(_file), &kind) == 0 && S_ISREG(kind.st_mode)) _unfinished = path;
    }
    ~OutFile() {
        if (_file) std::fclose(_file);
        if (!_unfinished.empty()) ::unlink(_unfinished.c_str());
    }
    OutFile(const OutFile&) = delete;
    OutFile& operator=(const OutFile&) = delete;

    void write(const void* bytes, std::size_t size) {
        if (std::fwrite(bytes, 1, size, _file) != size) fail();
    }
    void finish() {
        if (std::fclose(std::exchange(_file, nullptr)) != 0) fail();
        if (!_target.empty() && std::rename(_unfinished.c_str(), _target.c_str()) != 0) fail();
        _unfinished.clear();
    }

private:
    /// Opens a new file in the same directory; false where that is impossible or wrong.
    bool openBeside() {
        if (_path.starts_with("/dev/") || _path.starts_with("/proc/")) return false;  // what a shell has opened
        std::error_code error;
        // A link stays: its target is replaced.
        const bool isLink = std::filesystem::is_symlink(_path, error);
        const std::string target = isLink ? std::filesystem::canonical(_path, error).string() : _path;
        struct stat old {};
        const bool replaces = ::stat(target.c_str(), &old) == 0;
        if (replaces ? !S_ISREG(old.st_mode) || ::access(target.c_str(), W_OK) != 0 : isLink) return false;
        const std::string beside = target + '.' + std::to_string(::getpid()) + ".part";
        const int opened = ::open(beside.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        if (opened < 0 && (errno == ENOSPC || errno == EDQUOT)) fail();
        if (opened < 0) return false;
        if (replaces) ::fchmod(opened, old.st_mode & 07777);
        _target = target;
        _unfinished = beside;
        _file = ::fdopen(opened, "wb");
        return true;
    }
    [[noreturn]] void fail() const { throw Failure(_path + ": " + std::strerror(errno)); }

    const std::string _path;
    std::string _target;      // new name of the finished file; empty if it keeps its own
    std::string _unfinished;  // removed unless it is finished
    std::FILE* _file = nullptr;
};

}  // namespace

void writePng(const std::string& path, const Image& image) {
    png_image format{};
    format.version = PNG_IMAGE_VERSION;
    format.width = static_cast<png_uint_32>(image.width);
    format.height = static_cast<png_uint_32>(image.height);
    format.format = PNG_FORMAT_RGB;
    // Encoded in memory, so that a failure to write is told by the system and not by the codec.
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

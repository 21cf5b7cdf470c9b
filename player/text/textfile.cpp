#include "text/textfile.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>

#include "media/source.h"

namespace zetplay {

std::string readText(const std::string& path) {
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path.c_str(), "rb"), std::fclose);
    std::string text;
    char bytes[65536];
    std::size_t count = 0;
    while (file && (count = std::fread(bytes, 1, sizeof bytes, file.get())) > 0) text.append(bytes, count);
    if (!file || std::ferror(file.get())) throw Failure(path + ": " + std::strerror(errno));
    return text;
}

}  // namespace zetplay

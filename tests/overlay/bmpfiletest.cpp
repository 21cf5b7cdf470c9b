#include "overlay/bmpfile.h"

#include <sys/stat.h>

#include "overlay/material.h"

namespace zet::test {
namespace {

using ZETShow::BmpPicture;
using ZETShow::parseBmp;
using ZETShow::readFile;
using enum ZETShow::BmpVerdict;

constexpr int sizeField = 2, offsetField = 10, widthField = 18, heightField = 22, bitsField = 28;

TEST(BmpFile, tellsSoundFromBrokenFromForeign) {
    const struct {
        const char* name;
        int width, height, bits;
        int size;  // of the file; its header says the same unless a lie replaces it
        std::vector<std::pair<int, std::int64_t>> lies;
        ZETShow::BmpVerdict verdict;
    } cases[] = {
        {"24 bits, bottom row first, rows of 9 bytes", 3, 2, 24, 72, {}, sound},
        {"32 bits, top row first", 4, -2, 32, 86, {}, sound},
        {"45 bytes, the pixel in the header", 1, 1, 24, 45, {{offsetField, 42}}, sound},
        {"44 bytes", 1, 1, 24, 44, {{offsetField, 41}}, foreign},
        {"nothing", 1, 1, 24, 0, {}, foreign},
        {"says a byte less", 4, 2, 24, 78, {{sizeField, 77}}, foreign},
        {"8 bits", 4, 2, 24, 78, {{bitsField, 8}}, foreign},
        {"24 bits in the low byte", 4, 2, 24, 78, {{bitsField, 0x0118}}, foreign},
        {"3 wide, rows padded to 12", 3, 2, 24, 78, {}, broken},
        {"a byte cut off", 4, 2, 24, 77, {}, broken},
        {"pixels begin a size before 4 GiB", 4, 2, 24, 78, {{offsetField, -24}}, broken},
        {"no pixels", 0, 5, 24, 54, {}, broken},
        {"height 0", 4, 2, 24, 78, {{heightField, 0}}, broken},
        {"width and height negative", 4, -2, 24, 78, {{widthField, -4}}, broken},
        {"width 2^31, height lowest", 4, 2, 32, 86, {{widthField, 1 << 31}, {heightField, 1 << 31}}, broken},
        {"pixels wrap 32 bits", 4, 2, 24, 78, {{widthField, 0x20000001}, {heightField, 8}}, broken},
        {"bytes wrap 32 bits", 4, 2, 32, 86, {{widthField, 0x40000008}, {heightField, 1}}, broken},
        // 2^62 + 8 pixels
        {"bytes wrap 64 bits", 4, 2, 32, 86, {{widthField, 3649452082}, {heightField, 1263665316}}, broken},
    };
    for (const auto& c : cases) {
        Bytes file = makeBmp(c.width, c.height, c.bits, [](int, int) { return 0u; });
        file.resize(static_cast<std::size_t>(c.size));
        if (c.size != 0) put(file, sizeField, c.size);
        for (const auto& [field, value] : c.lies) put(file, field, value, field == bitsField ? 2 : 4);
        BmpPicture picture, expected;
        if (c.verdict == sound) {
            const int rows = std::abs(c.height), bytes = c.bits / 8 * c.width * rows;
            expected = {c.width, rows, c.bits, c.height < 0, file.data() + std::ssize(file) - bytes};
        }
        EXPECT_EQ(parseBmp(file.data(), file.size(), picture), c.verdict) << c.name;
        EXPECT_TRUE(picture == expected) << c.name;
    }
}

TEST(BmpFile, readsOnlyRegularFiles) {
    const Folder folder;
    const Bytes content = {1, 0, 2};
    const std::string file = folder.save("file", content);
    folder.save("empty", {});
    std::filesystem::create_symlink("nowhere", folder.path / "dangling");
    ASSERT_EQ(mkfifo((folder.path / "pipe").c_str(), 0600), 0);
    EXPECT_EQ(readFile(file.c_str()), content);
    for (const char* name : {"missing", "empty", "dangling", "pipe", ".", "file/under", "/dev/zero"}) {
        EXPECT_EQ(readFile((folder.path / name).c_str()), Bytes()) << name;
    }
    ASSERT_EQ(chmod(file.c_str(), 0), 0);
    const bool wasRoot = geteuid() == 0 && seteuid(65534) == 0;  // root can read every file
    EXPECT_EQ(readFile(file.c_str()), Bytes());
    EXPECT_TRUE(!wasRoot || seteuid(0) == 0);
}

}  // namespace
}  // namespace zet::test

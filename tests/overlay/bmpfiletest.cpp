#include "overlay/bmpfile.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <climits>
#include <filesystem>

#include "overlay/bmp.h"

namespace zet::test {
namespace {

using ZETShow::BmpPicture;
using ZETShow::BmpVerdict;
using ZETShow::parseBmp;
using ZETShow::readFile;
using enum BmpVerdict;

constexpr std::size_t sizeField = 2, offsetField = 10, widthField = 18, heightField = 22, bitsField = 28;

struct Lie {
    std::size_t field;
    std::uint32_t value;
};

TEST(BmpFile, tellsSoundFromBrokenFromForeign) {
    // The file says its size as it is unless a lie says otherwise.
    const struct {
        const char* name;
        int width, height, bits;
        std::size_t size;
        std::vector<Lie> lies;
        BmpVerdict verdict;
    } cases[] = {
        {"24 bits, bottom row first", 4, 2, 24, 78, {}, sound},
        {"24 bits, top row first", 4, -2, 24, 78, {}, sound},
        {"32 bits, bottom row first", 4, 2, 32, 86, {}, sound},
        {"32 bits, top row first", 4, -2, 32, 86, {}, sound},
        {"3 wide, rows of 9 bytes", 3, 2, 24, 72, {}, sound},
        {"3 wide, rows padded to 12", 3, 2, 24, 78, {}, broken},
        {"45 bytes, the pixel in the header", 1, 1, 24, 45, {{offsetField, 42}}, sound},
        {"44 bytes", 1, 1, 24, 44, {{offsetField, 41}}, foreign},
        {"nothing", 1, 1, 24, 0, {}, foreign},
        {"says a byte less", 4, 2, 24, 78, {{sizeField, 77}}, foreign},
        {"says a byte more", 4, 2, 24, 78, {{sizeField, 79}}, foreign},
        {"says 4 GiB", 4, 2, 24, 78, {{sizeField, 0xffffffff}}, foreign},
        {"0 bits", 4, 2, 24, 78, {{bitsField, 0}}, foreign},
        {"8 bits", 4, 2, 24, 78, {{bitsField, 8}}, foreign},
        {"24 bits in the low byte", 4, 2, 24, 78, {{bitsField, 0x0118}}, foreign},
        {"24 bits said of 32", 4, 2, 32, 86, {{bitsField, 24}}, broken},
        {"compressed", 4, 2, 24, 69, {{30, 1}}, broken},
        {"a byte cut off", 4, 2, 24, 77, {}, broken},
        {"a byte too many", 4, 2, 24, 79, {}, broken},
        {"pixels begin a byte late", 4, 2, 24, 78, {{offsetField, 55}}, broken},
        {"pixels begin at the end", 4, 2, 24, 78, {{offsetField, 78}}, broken},
        {"pixels begin behind the end", 4, 2, 24, 78, {{offsetField, 79}}, broken},
        {"pixels begin a size before 4 GiB", 4, 2, 24, 78, {{offsetField, 0u - 24u}}, broken},
        {"no pixels, 0 by 0", 0, 0, 24, 54, {}, broken},
        {"no pixels, 0 by 5", 0, 5, 24, 54, {}, broken},
        {"height 0", 4, 2, 24, 78, {{heightField, 0}}, broken},
        {"a column more", 4, 2, 24, 78, {{widthField, 5}}, broken},
        {"width and height negative", 4, -2, 24, 78, {{widthField, 0u - 4u}}, broken},
        {"lowest height", 4, 2, 24, 78, {{heightField, 0x80000000}}, broken},
        {"width 2^31, height lowest", 4, 2, 32, 86, {{widthField, 1u << 31}, {heightField, 1u << 31}}, broken},
        {"pixels wrap 32 bits", 4, 2, 24, 78, {{widthField, 0x20000001}, {heightField, 8}}, broken},
        {"bytes wrap 32 bits", 4, 2, 32, 86, {{widthField, 0x40000008}, {heightField, 1}}, broken},
        // 2^62 + 8 pixels
        {"bytes wrap 64 bits", 4, 2, 32, 86, {{widthField, 3649452082}, {heightField, 1263665316}}, broken},
    };
    for (const auto& c : cases) {
        Bytes file = makeBmp(c.width, c.height, c.bits, [](int, int) { return 0u; });
        file.resize(c.size);
        if (!file.empty()) put(file, sizeField, static_cast<std::uint32_t>(file.size()));
        for (const Lie& lie : c.lies) put(file, lie.field, lie.value, lie.field == bitsField ? 2 : 4);
        BmpPicture picture{-1, -1, -1, false, nullptr};
        EXPECT_EQ(parseBmp(file.data(), file.size(), picture), c.verdict) << c.name;
        const bool isSound = c.verdict == sound;
        EXPECT_EQ(picture.width, isSound ? c.width : -1) << c.name;
        EXPECT_EQ(picture.height, isSound ? std::abs(c.height) : -1) << c.name;
        EXPECT_EQ(picture.bitsPerPixel, isSound ? c.bits : -1) << c.name;
        EXPECT_EQ(picture.topRowFirst, isSound && c.height < 0) << c.name;
        const std::ptrdiff_t bytes = c.bits / 8 * c.width * std::abs(c.height);
        EXPECT_EQ(picture.pixels, isSound ? file.data() + std::ssize(file) - bytes : nullptr) << c.name;
    }
}

TEST(BmpFile, readsOnlyRegularFiles) {
    const std::filesystem::path folder = testing::TempDir() + "zet bmpfile " + std::to_string(getpid());
    std::filesystem::create_directories(folder);
    const auto in = [&folder](const char* name) { return (folder / name).string(); };
    const Bytes content = {1, 0, 2};
    save(in("file"), content);
    save(in("empty"), {});
    std::filesystem::create_symlink("file", folder / "link");
    std::filesystem::create_symlink("nowhere", folder / "dangling");
    ASSERT_EQ(mkfifo(in("pipe").c_str(), 0600), 0);

    EXPECT_EQ(readFile(in("file").c_str()), content);
    EXPECT_EQ(readFile(in("link").c_str()), content);
    for (const char* name : {"missing", "empty", "dangling", "pipe", ".", "file/under"}) {
        EXPECT_EQ(readFile(in(name).c_str()), Bytes()) << name;
    }
    EXPECT_EQ(readFile(""), Bytes());
    EXPECT_EQ(readFile("/dev/zero"), Bytes());

    // Root reads everything: become somebody else.
    ASSERT_EQ(chmod(in("file").c_str(), 0), 0);
    const bool wasRoot = geteuid() == 0 && seteuid(65534) == 0;
    EXPECT_EQ(readFile(in("file").c_str()), Bytes());
    if (wasRoot) {
        ASSERT_EQ(seteuid(0), 0);
    }
    std::filesystem::remove_all(folder);
}

}  // namespace
}  // namespace zet::test

#include "views/runlengthpicture.h"

#include <gtest/gtest.h>

#include <utility>
#include <vector>

#include "views/halopicture.h"

namespace zet::ZETShow {

namespace {

using Bytes = std::vector<std::uint8_t>;

Bytes join(Bytes head, const Bytes& tail) {
    head.insert(head.end(), tail.begin(), tail.end());
    return head;
}

TEST(RunLengthPicture, UnpacksEveryTokenForm) {
    struct Case {
        const char* name;
        Bytes stream, bytes;
    };
    const Case cases[] = {
        {"short fills", {2, 0, 2, 0, 7, 0x84, 9, 0x82}, {7, 7, 7, 7, 9, 9}},
        {"short literals", {2, 0, 2, 0, 1, 0x05, 2, 3, 4, 5, 6, 0x01}, {1, 2, 3, 4, 5, 6}},
        {"an empty fill", {2, 0, 2, 0, 7, 0x80, 9, 0x86}, Bytes(6, 9)},
        {"medium fill", {16, 0, 16, 0, 7, 0xa1, 0x80}, Bytes(384, 7)},
        {"medium literal", join({16, 0, 16, 0, 7, 0x21, 0x80}, Bytes(383, 5)), join({7}, Bytes(383, 5))},
        {"medium wins over long", {16, 0, 16, 0, 7, 0xe1, 0x80}, Bytes(384, 7)},
        {"long fill", {0, 1, 4, 1, 7, 0xc1, 0x02, 0x85, 7, 0xc0, 0xfe, 0x00}, Bytes(0x18600, 7)},
        {"long literal", join({16, 0, 16, 0, 7, 0x40, 0x80, 0x01}, Bytes(383, 5)), join({7}, Bytes(383, 5))},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const PlanarPicture picture = unpackPicture(c.stream);
        EXPECT_EQ(picture.width, c.stream[0] + 256 * c.stream[1]);
        EXPECT_EQ(picture.height, c.stream[2] + 256 * c.stream[3]);
        EXPECT_EQ(picture.bytes, c.bytes);
    }
}

TEST(RunLengthPicture, RefusesADamagedStream) {
    const std::pair<const char*, Bytes> cases[] = {
        {"half a header", {2, 0, 2}},
        {"an odd width", {3, 0, 2, 0, 7, 0x89}},
        {"too few bytes", {2, 0, 2, 0, 7, 0x85}},
        {"a fill too long", {2, 0, 2, 0, 7, 0x87}},
        {"the longest fill", {2, 0, 2, 0, 7, 0xdf, 0xff, 0xff}},
        {"a literal too long", {2, 0, 2, 0, 7, 0x07, 1, 2, 3, 4, 5, 6}},
        {"a literal cut short", {2, 0, 2, 0, 7, 0x06, 1, 2, 3, 4}},
        {"an empty literal", {2, 0, 2, 0, 7, 0x86, 7, 0x00}},
        {"half a word", {2, 0, 2, 0, 7, 0x86, 7}},
        {"no third byte", {2, 0, 2, 0, 7, 0xa0}},
        {"no fourth byte", {2, 0, 2, 0, 7, 0xc0, 0x06}},
    };
    for (const auto& [name, stream] : cases) {
        SCOPED_TRACE(name);
        const PlanarPicture picture = unpackPicture(stream);
        EXPECT_EQ(picture.width, 0);
        EXPECT_TRUE(picture.bytes.empty());
    }
    for (std::size_t size = 0; size < haloPicture.size(); size += 997) {
        ASSERT_EQ(unpackPicture(haloPicture.first(size)).width, 0) << size;
    }
}

}  // namespace

}  // namespace zet::ZETShow

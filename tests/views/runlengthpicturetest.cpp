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

TEST(RunLengthPicture, unpacksEveryTokenForm) {
    const struct {
        const char* name;
        Bytes stream, bytes;
    } cases[] = {
        {"short fills, one of them empty", {2, 0, 2, 0, 7, 0x84, 5, 0x80, 9, 0x82}, {7, 7, 7, 7, 9, 9}},
        {"short literals", {2, 0, 2, 0, 1, 0x05, 2, 3, 4, 5, 6, 0x01}, {1, 2, 3, 4, 5, 6}},
        {"medium literal", join({16, 0, 16, 0, 7, 0x21, 0x80}, Bytes(383, 5)), join({7}, Bytes(383, 5))},
        {"medium fill, wins over long", {16, 0, 16, 0, 7, 0xe1, 0x80}, Bytes(384, 7)},
        {"long fills", {0, 1, 4, 1, 7, 0xc1, 0x02, 0x85, 7, 0xc0, 0xfe, 0x00}, Bytes(0x18600, 7)},
        {"long literal", join({16, 0, 16, 0, 7, 0x40, 0x80, 0x01}, Bytes(383, 5)), join({7}, Bytes(383, 5))},
    };
    for (const auto& [name, stream, bytes] : cases) {
        const PlanarPicture picture = unpackPicture(stream);
        EXPECT_EQ(picture.width, stream[0] + 256 * stream[1]) << name;
        EXPECT_EQ(picture.height, stream[2] + 256 * stream[3]) << name;
        EXPECT_EQ(picture.bytes, bytes) << name;
    }
}

TEST(RunLengthPicture, refusesADamagedStream) {
    const std::pair<const char*, Bytes> cases[] = {
        {"half a header", {2, 0, 2}},
        {"an odd width", {3, 0, 2, 0, 7, 0x89}},
        {"a fill too long", {2, 0, 2, 0, 7, 0x87}},
        {"a literal too long", {2, 0, 2, 0, 7, 0x07, 1, 2, 3, 4, 5, 6}},
        {"a literal cut short", {2, 0, 2, 0, 7, 0x06, 1, 2, 3, 4}},
        {"no fourth byte", {2, 0, 2, 0, 7, 0xc0, 0x06}},
    };
    for (const auto& [name, stream] : cases) {
        const PlanarPicture picture = unpackPicture(stream);
        EXPECT_TRUE(picture.width == 0 && picture.bytes.empty()) << name;
    }
    for (std::size_t size = 0; size < haloPicture.size(); size += 997)
        ASSERT_EQ(unpackPicture(haloPicture.first(size)).width, 0) << size;
}

}  // namespace
}  // namespace zet::ZETShow

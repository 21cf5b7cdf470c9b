#include "metadata.h"

#include <gtest/gtest.h>

#include "source.h"
#include "testmedia.h"

namespace zetplay {
namespace {

using test::ScratchDirectory;

TEST(Metadata, GivesEachFrameItsEntryOrTheDefault) {
    const ScratchDirectory scratch;
    const Metadata metadata(scratch.write("a.json", R"({
        "frames": {
            "0": {"faces": [{"x": 1, "y": -2, "w": 3, "h": 4, "gender": 1, "age": 33, "name": "Ann"},
                            {"x": 5, "y": 6, "w": 7, "h": 8}]},
            "12": {"lens": [5000, 5001, 4900, 4901], "rects": [[1, 2, 3, 4], [5, 6, 7, 8]]}
        },
        "default": {"lens": [1, 2, 3, 4]}
    })"));
    const Annotations& first = metadata.of(0);
    EXPECT_FALSE(first.lens) << "an entry stands in the default's place as a whole";
    ASSERT_EQ(first.faces.size(), 2u);
    EXPECT_EQ(first.faces[0].x, 1);
    EXPECT_EQ(first.faces[0].y, -2);
    EXPECT_EQ(first.faces[0].width, 3);
    EXPECT_EQ(first.faces[0].height, 4);
    EXPECT_EQ(first.faces[0].gender, 1);
    EXPECT_EQ(first.faces[0].age, 33u);
    EXPECT_STREQ(first.faces[0].name, "Ann");
    EXPECT_STREQ(first.faces[1].name, "");

    const Annotations& twelfth = metadata.of(12);
    EXPECT_EQ(twelfth.lens, (LensRegion{5000, 5001, 4900, 4901}));
    ASSERT_EQ(twelfth.rects.size(), 2u);
    EXPECT_EQ(twelfth.rects[1].x, 5);
    EXPECT_EQ(twelfth.rects[1].height, 8);

    EXPECT_EQ(metadata.of(5).lens, (LensRegion{1, 2, 3, 4}));
    EXPECT_FALSE(Metadata().of(5).lens);
}

TEST(Metadata, NamesWhatIsWrong) {
    const struct {
        const char* text;
        const char* told;
    } cases[] = {
        {"", "parse error"},
        {"{\n\"frames\": {\n", "line 3"},
        {R"({"frame": {}})", "unknown key 'frame'"},
        {R"({"frames": {"one": {}}})", "'one' in frames is not a frame number"},
        {R"({"frames": {"3": {"lense": []}}})", "unknown key 'lense' in frames.3"},
        {R"({"default": {"lens": [1, 2, 3, "4"]}})", "default.lens[3] is not a whole number"},
        {R"({"default": {"lens": [1, 2, 3, 4.5]}})", "default.lens[3] is not a whole number"},
        {R"({"default": {"lens": [1, 2, 3, 3000000000]}})", "default.lens[3] is not a whole number"},
        {R"({"default": {"rects": [[1, 2, 3, 4], [5]]}})", "default.rects[1] is not an array of four numbers"},
        {R"({"default": {"faces": [{"x": 1, "y": 2, "w": 3}]}})", "default.faces[0] has no 'h'"},
        {R"({"default": {"faces": [{"x": 1, "y": 2, "w": 3, "h": 4, "sex": 0}]}})",
         "unknown key 'sex' in default.faces[0]"},
        {R"({"default": {"faces": [{"x": 1, "y": 2, "w": 3, "h": 4, "age": -1}]}})",
         "default.faces[0].age is not a whole number of 0 or more"},
        {R"({"default": {"faces": [{"x": 1, "y": 2, "w": 3, "h": 4, "name": "a23456789012345678901234567890x2"}]}})",
         "at most 31"},
        {R"({"frames": {"7": {"faces": [{"x": 1, "y": 2, "w": 3, "h": 4}], "rects": [[1, 2, 3, 4]]}}})",
         "frames.7 has faces and rects"},
    };
    const ScratchDirectory scratch;
    for (const auto& wrong : cases) {
        const std::string path = scratch.write("a.json", wrong.text);
        try {
            Metadata metadata(path);
            ADD_FAILURE() << "accepted: " << wrong.text;
        } catch (const Failure& failure) {
            const std::string line = failure.what();
            EXPECT_EQ(line.find(path + ": "), 0u) << line;
            EXPECT_NE(line.find(wrong.told), line.npos) << wrong.text << " gave: " << line;
            EXPECT_EQ(line.find('\n'), line.npos) << line;
        }
    }
    EXPECT_THROW(Metadata(scratch.path("missing.json")), Failure);
    EXPECT_THROW(Metadata(scratch.path("")), Failure);
}

}  // namespace
}  // namespace zetplay

#include "session/session.h"

#include <gtest/gtest.h>

#include <set>
#include <sstream>

#include "bus/metadata.h"
#include "script/script.h"
#include "script/scriptcommands.h"
#include "session/controls.h"
#include "session/recording.h"
#include "testmedia.h"

struct AVCodec;

static std::set<std::string> missingEncoders;

// The original: the linker puts this file's function in its place.
extern "C" const AVCodec* __real_avcodec_find_encoder_by_name(const char* name);
extern "C" const AVCodec* __wrap_avcodec_find_encoder_by_name(const char* name) {
    return missingEncoders.contains(name) ? nullptr : __real_avcodec_find_encoder_by_name(name);
}

namespace zetplay::test {
namespace {

using Event = zet::DisplayConfigUserData;

void integer(std::ostream& out, const Event& event) {
    out << event.getInt();
}

template <typename Number, int count>
void numbers(std::ostream& out, const Event& event) {
    // A zero has no sign.
    for (int i = 0; i < count; ++i)
        out << (i > 0 ? " " : "") << static_cast<const Number*>(event.getData())[i] + Number{};
}

/// The first sample, and what travels with the picture.
void frame(std::ostream& out, const Event& event) {
    const auto& data = *static_cast<const zet::YUV420PData*>(event.getData());
    out << data.y[0];
    for (int i = 0; data.lensRegion && i < 4; ++i) out << ' ' << data.lensRegion[i];
    for (int i = 0; i < data.aiCount; ++i) {
        const bool faces = *data.aiKind == zet::AI_KIND_FACES;
        const auto* face = static_cast<const zet::FaceItem*>(data.aiItems) + i;
        const auto* rect = static_cast<const zet::RectItem*>(data.aiItems) + i;
        if (faces) out << " face " << face->x << ',' << face->height << ',' << face->age << ',' << face->name;
        if (!faces) out << " rect " << rect->x << ',' << rect->height;
    }
}

Options optionsFor(const std::string& input, const std::string& meta = {}) {
    Options options;
    options.input = input;
    options.meta = meta;
    options.width = 160;
    options.height = 120;
    return options;
}

SDL_Event eventOf(Uint32 type, SDL_Keycode key = 0) {
    SDL_Event event{};
    event.type = type;
    event.key.keysym.sym = key;
    return event;
}

SDL_Event mouseAt(Uint32 type, int x, Uint32 milliseconds) {
    SDL_Event event{};
    (type == SDL_MOUSEMOTION ? event.motion.x : event.button.x) = x;
    event.common = {type, milliseconds};
    if (type != SDL_MOUSEMOTION) event.button.button = SDL_BUTTON_LEFT;
    return event;
}

/// Of a window of 160x120.
SDL_Event fingerAt(Uint32 type, SDL_FingerID finger, float x, float y) {
    SDL_Event event{};
    event.tfinger = {type, 1000, 1, finger, x / 160, y / 120, 0, 0, 1, 0};
    return event;
}

/// SDL_PeepEvents keeps the event's time; SDL_PushEvent would overwrite it.
void happen(SDL_Event event) {
    SDL_PeepEvents(&event, 1, SDL_ADDEVENT, 0, 0);
}

/// A session on a hidden window. What reaches the bus is noted in the words of a script.
class OnBus : public testing::Test {
protected:
    OnBus() {
        const struct {
            std::int64_t id;
            const char* name;
            void (*write)(std::ostream&, const Event&);
        } observed[] = {
            {zet::DCFG_RENDER_MODE, "render-mode ", integer},
            {zet::DCFG_WINDOW_INSTANCE, "window none", [](std::ostream&, const Event&) {}},
            {zet::DCFG_ROTATION, "rotation ", integer},
            {zet::DCFG_TOUCH_DOWN, "touch-down ", numbers<float, 2>},
            {zet::DCFG_TOUCH_UP, "touch-up ", numbers<float, 2>},
            {zet::DCFG_PINCH, "pinch ", [](std::ostream& out, const Event& event) { out << (event.getFloat() > 1); }},
            {zet::DCFG_DRAG, "drag ", numbers<float, 4>},
            {zet::DCFG_FLING, "fling ", numbers<float, 2>},
            {zet::DCFG_AUTO_ROTATE, "auto-rotate ", numbers<std::int32_t, 1>},
            {zet::DCFG_SCENE_BACKDROP, "scene-backdrop ", numbers<std::int32_t, 2>},
            {zet::DCFG_LENS_PARAM, "lens-param ", numbers<double, 13>},
            {zet::DCFG_OVERLAY_IMAGE, "overlay-image ", numbers<float, 4>},
            {zet::DCFG_YUV_FRAME, "frame ", frame},
        };
        for (const auto& [id, name, write] : observed) {
            const auto note = [this, name = name, write = write](zet::DisplayConfig&, Event& event) {
                write(_notes << name, event);
                _notes << "; ";
                return 0;
            };
            _observers.regist(id, note, zet::DCFG_FLAG_EVENT);
        }
        _controls.handleEvents();
    }

    void run(const std::string& line) { (*parseScriptLine(line))(_session); }
    /// What has been noted since the last call.
    std::string notes() {
        _controls.handleEvents();
        return std::exchange(_notes, std::ostringstream()).str();
    }

    ScratchDirectory _scratch;
    static std::string picture(char sample) { return std::string(24, sample); }
    Options _options = optionsFor(
        _scratch.write("a.y4m", y4m(4, 4, fullRange, {picture('a'), picture('b'), picture('c'), picture('d')})),
        _scratch.write("a.json", R"({
            "frames": {"0": {"faces": [{"x": 5, "y": 6, "w": 7, "h": 8, "age": 9, "name": "Ann"}]},
                       "2": {"lens": [1, 2, 3, 4], "rects": [[1, 2, 3, 4], [5, 6, 7, 8]]}},
            "default": {"lens": [5, 6, 7, 8]}})"));
    Session _session{_options};
    Controls _controls{_session};
    std::ostringstream _notes;
    zet::DisplayConfigKit _observers{&_session.driver.bus()};
};

TEST_F(OnBus, keysAndMouseDoAsTheViewWants) {
    const std::pair<SDL_Keycode, const char*> presses[] = {
        {SDLK_r, "rotation 90; "},   {SDLK_r, "rotation 180; "},       {SDLK_a, "auto-rotate 1; "},
        {SDLK_a, "auto-rotate 0; "}, {SDLK_b, "scene-backdrop 0 0; "}, {SDLK_b, "scene-backdrop 1 1; "},
    };
    for (const auto& [key, expected] : presses) {
        happen(eventOf(SDL_KEYDOWN, key));
        EXPECT_EQ(notes(), expected);
    }
    for (const auto& [view, name, mounting, part] : zet::renderModes) {
        happen(eventOf(SDL_KEYDOWN, view == zet::RENDER_MODE_WALL_180 ? SDLK_MINUS : SDLK_0 + int{view}));
        EXPECT_EQ(notes(), "fling 0 0; render-mode " + std::to_string(view) + "; ");
        happen(mouseAt(SDL_MOUSEBUTTONDOWN, 10, 1000));
        happen(mouseAt(SDL_MOUSEMOTION, 60, 1050));
        happen(mouseAt(SDL_MOUSEBUTTONUP, 60, 1050));
        // The picture follows the finger.
        const std::string drag = view == zet::RENDER_MODE_FLAT ? "drag 60 0 10 0; " : "drag 10 0 60 0; ";
        const std::string fling = view == zet::RENDER_MODE_FLAT       ? ""
                                  : view == zet::RENDER_MODE_WALL_TWO ? "fling -1000 0; "
                                                                      : "fling 1000 0; ";
        EXPECT_EQ(notes(), "touch-down 10 0; " + drag + "touch-up 60 0; " + fling);
    }
}

TEST_F(OnBus, waitsAreShortForAWhileAfterAnEvent) {
    happen(eventOf(SDL_USEREVENT));
    const Uint64 start = SDL_GetTicks64();
    Uint64 last = start;
    int waits = 0;
    for (Uint64 now = start; now - last < 900 && waits < 20; now = SDL_GetTicks64(), ++waits) {
        last = now;
        _session.window->waitForEvents(1000);
        notes();
    }
    EXPECT_GE(last - start, 200u) << "SDL holds a change of the focus back so long";
    EXPECT_LE(waits, 8) << "then nothing wakes the program";
}

TEST_F(OnBus, fingersDragAndPinch) {
    const std::tuple<Uint32, int, float, float, const char*> steps[] = {
        {SDL_FINGERDOWN, 1, 40, 30, "touch-down 40 30; "},
        {SDL_FINGERMOTION, 1, 80, 60, "drag 80 60 40 30; "},
        {SDL_FINGERDOWN, 2, 120, 60, "touch-up 80 60; "},
        {SDL_FINGERMOTION, 2, 160, 60, "pinch 1; "},
        {SDL_FINGERMOTION, 1, 140, 60, "pinch 0; "},
        {SDL_FINGERUP, 1, 140, 60, ""},
        {SDL_FINGERMOTION, 2, 20, 20, ""},
        {SDL_FINGERUP, 2, 20, 20, ""},
    };
    for (const auto& [type, finger, x, y, expected] : steps) {
        happen(fingerAt(type, finger, x, y));
        EXPECT_EQ(notes(), expected);
    }
}

TEST_F(OnBus, scriptSetsItsRecordsAsTheyStand) {
    const char* const lines[] = {
        "render-mode -7",
        "touch-down 1.5 -2",
        "drag 1 2 3 4",
        "fling 100 -50",
        "scene-backdrop 1 0",
        "rotation 450",
        "lens-param 0 2 3 4 5 6 7 8 9 0 0 0 0.001",
        "touch-up -1 2.5",
        "overlay-image 0 1 2 3",
        "window none",
    };
    for (const std::string line : lines) {
        run(line.starts_with("overlay") ? line + " \"no such.bmp\"" : line);
        EXPECT_EQ(notes(), line + "; ");
    }
}

TEST_F(OnBus, framesCarryTheirMetadataAndWhatTheScriptHasSet) {
    const std::pair<const char*, const char*> lines[] = {
        {"frame 3", "frame a face 5,8,9,Ann; frame b 5 6 7 8; frame c 1 2 3 4 rect 1,4 rect 5,8; "},
        {"faces 1,2,3,4,0,33,x \"5,6,7,8,1,44,Ann, the 2nd\"", ""},
        {"lens none", ""},
        {"frame", "frame d face 1,4,33,x face 5,8,44,Ann, the 2nd; "},
    };
    for (const auto& [line, expected] : lines) {
        run(line);
        EXPECT_EQ(notes(), expected) << line;
    }
    EXPECT_THROW(run("frame"), Failure) << "the input has four frames";
}

/// Records a video of nine pictures. When the third comes, so does `event`.
void recordNine(const Options& options, const SDL_Event& event) {
    Session session(options);
    zet::DisplayConfigKit observers(&session.driver.bus());
    const auto act = [&](zet::DisplayConfig&, Event&) {
        if (session.feed.framesShown() == 2) happen(event);
        return 0;
    };
    observers.regist(zet::DCFG_YUV_FRAME, act, zet::DCFG_FLAG_EVENT);
    record(session);
    session.recording->finish();
}

TEST(Recording, bearsWithTheUserAndWithMissingEncoders) {
    const struct {
        const char* name;
        SDL_Event event;
        std::set<std::string> missing;
        std::size_t pictures;
        bool changes;
    } cases[] = {
        {"the window is closed", eventOf(SDL_QUIT), {}, 3, false},
        {"another view", eventOf(SDL_KEYDOWN, SDLK_2), {}, 9, true},
        {"no H.264", {}, {"libx264", "libopenh264"}, 9, false},
        {"no encoder", {}, {"libx264", "libopenh264", "mpeg4"}, 0, false},
    };
    const ScratchDirectory scratch;
    Options options = optionsFor(scratch.write("a.y4m", quarteredVideo(64, 32, 9)));
    options.record = scratch.path("r.mp4");
    for (const auto& recording : cases) {
        SCOPED_TRACE(recording.name);
        missingEncoders = recording.missing;
        try {
            recordNine(options, recording.event);
            const auto pictures = picturesOf(options.record);
            EXPECT_EQ(pictures.size(), recording.pictures);
            int change = 0;
            for (int i = 0; i < pictures[0].height * pictures[0].yLineSize; ++i)
                change = std::max(change, std::abs(pictures[0].y[i] - pictures.back().y[i]));
            EXPECT_EQ(change > 20, recording.changes);
            std::filesystem::remove(options.record);
        } catch (const Failure& failure) {
            EXPECT_EQ(recording.pictures, 0u);
            EXPECT_EQ(failure.what(), options.record + ": FFmpeg has no encoder for H.264 or MPEG-4");
            EXPECT_FALSE(std::filesystem::exists(options.record));
        }
    }
    missingEncoders.clear();
}

struct Wrong {
    const char* text;
    const char* told;
};

/// `Reader` refuses each file in one line that begins with `place` and tells the cause.
template <typename Reader, typename Refusal, std::size_t count>
void expectRefused(const Wrong (&cases)[count], const std::string& before, const std::string& place) {
    const ScratchDirectory scratch;
    for (const auto& [text, told] : cases) {
        try {
            Reader(scratch.write("a.txt", before + text));
            ADD_FAILURE() << "accepted: " << text;
        } catch (const Refusal& refusal) {
            const std::string line = refusal.what();
            EXPECT_TRUE(line.starts_with(scratch.path("a.txt") + place)) << line;
            EXPECT_NE(line.find(told), line.npos) << text << " gave: " << line;
            EXPECT_EQ(line.find('\n'), line.npos) << line;
        }
    }
    EXPECT_THROW(Reader(scratch.path("")), Failure);
}

TEST(WrongInput, scriptIsRefusedWhole) {
    const Wrong cases[] = {
        {"fly", "'fly' is no command"},
        {"render-mode 99999999999", "'99999999999'"},
        {"drag 1 2 3", "missing"},
        {"faces 1,2,3,4,0,33", "'1,2,3,4,0,33'"},
        {"faces 1,2,3,4,0,33,a23456789012345678901234567890x2", "at most 31"},
        {"snap a.png buffer=-1", "'buffer=-1'"},
        {"grab \"a b.png", "quote is not closed"},
    };
    expectRefused<Script, WrongUsage>(cases, "# a comment\nframe 2 # and one more\n \t\r\n", ":4: ");
}

TEST(WrongInput, metadataIsNamed) {
    const Wrong cases[] = {
        {"{\n\"frames\": {\n", "line 3"},
        {R"({"frame": {}})", "unknown key 'frame'"},
        {R"({"frames": {"-1": {}}})", "'-1' in frames is not a frame number"},
        {R"({"frames": {"99999999999999999999": {}}})", "'99999999999999999999' in frames is not a frame number"},
        {R"({"frames": {"3": {"lense": []}}})", "unknown key 'lense' in frames.3"},
        {R"({"default": {"lens": [1, 2, 3, "4"]}})", "default.lens[3] is not a whole number"},
        {R"({"default": {"faces": [{"x": 1, "y": 2, "w": 3, "h": 4, "age": -1}]}})", "default.faces[0].age is not a"},
        {R"({"default": {"faces": [{"x": 1, "y": 2, "w": 3, "h": 4, "name": 5}]}})", "default.faces[0].name is not"},
        {R"({"default": {"faces": [{"x": 1, "y": 2, "w": 3, "h": 4}], "rects": [[1, 2, 3, 4]]}})", "faces and rects"},
    };
    expectRefused<Metadata, Failure>(cases, "", ": ");
}

}  // namespace
}  // namespace zetplay::test

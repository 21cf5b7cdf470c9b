// Dewarped pictures without a screen and without a display server: raw RGBA on standard output, bottom row first.
//   record 100 | ffmpeg -f rawvideo -pixel_format rgba -video_size 1280x720 -i - -vf vflip room.mp4
#include <GLES2/gl2.h>
#include <zet/zet.h>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <future>
#include <vector>

int main(int count, char** words) {
    constexpr int side = 480;
    const int pictures = count > 1 ? std::atoi(words[1]) : 100;
    const zet::OffscreenSize size{1280, 720};
    std::vector<std::uint8_t> y(side * side), u(side * side / 4, 90), v(u.size(), 150), pixels(4 * 1280 * 720);

    zet::GlobalConfiger global;
    zet::DisplayConfig bus;
    bus.setConfig(zet::DCFG_RENDER_MODE, zet::RENDER_MODE_FOUR_PANE);
    bus.setConfig(zet::DCFG_OFFSCREEN_SIZE, &size);
    std::atomic<std::promise<void>*> waiting = nullptr;
    zet::DisplayConfigKit observers(&bus);
    const auto read = [&](zet::DisplayConfig&, zet::DisplayConfigUserData&) {  // on the render thread
        std::promise<void>* const drawn = waiting.exchange(nullptr);
        if (!drawn) return 0;
        glReadPixels(0, 0, size.width, size.height, GL_RGBA, GL_UNSIGNED_BYTE, pixels.data());
        drawn->set_value();
        return 0;
    };
    observers.regist(zet::DCFG_DRAWN, read, zet::DCFG_FLAG_EVENT);
    const auto display = zet::CreateZETDisplay(&bus, &global);

    for (int i = 0; i < pictures; ++i) {
        for (int place = 0; place < side * side; ++place)
            y[place] = (place % side / 30 + place / side / 30 + i) % 9 * 25;
        zet::YUV420PData frame;
        frame.y = y.data(), frame.u = u.data(), frame.v = v.data();
        frame.yLineSize = frame.width = frame.height = side;
        frame.uvLineSize = side / 2;
        std::promise<void> drawn;
        waiting = &drawn;
        bus.setConfig(zet::DCFG_YUV_FRAME, &frame);
        if (drawn.get_future().wait_for(std::chrono::seconds(5)) != std::future_status::ready) return 1;
        std::fwrite(pixels.data(), 1, pixels.size(), stdout);
    }
}

#include "overlay/textfilter.h"

#include <ft2build.h>
#include FT_FREETYPE_H

extern "C" {
#include <libavfilter/avfilter.h>
#include <libavfilter/buffersink.h>
#include <libavfilter/buffersrc.h>
#include <libavutil/frame.h>
#include <libavutil/mem.h>
#include <libavutil/opt.h>
}

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <string>
#include <string_view>
#include <vector>

#include "overlay/bmpfile.h"
#include "zet/zetlog.h"

namespace zet::ZETShow {

namespace {

constexpr std::size_t textLimit = 4096;  // bytes of a filter description, its NUL included

// With fontconfig, drawtext takes another font in silence where it can't load the one that it was given; and it waits
// for a pipe until somebody writes.
bool fontLoads(const char* path) {
    const std::vector<std::uint8_t> file = readFile(path);
    FT_Library library = nullptr;
    if (file.empty() || FT_Init_FreeType(&library) != 0) return false;
    FT_Face face = nullptr;
    const bool loads = FT_New_Memory_Face(library, file.data(), static_cast<FT_Long>(file.size()), 0, &face) == 0;
    if (loads) FT_Done_Face(face);
    FT_Done_FreeType(library);
    return loads;
}

// A value as it is written between quotes in a filter description. It is unwrapped twice: the graph's parser takes the
// quotes away, then the filter's, which ends a value at a colon, the backslashes and the blanks at either end.
std::string escaped(std::string_view value) {
    std::string out;
    for (std::size_t i = 0; i < value.size(); ++i) {
        const char c = value[i];
        const bool atAnEnd = i == 0 || i + 1 == value.size();
        if (c == '\'') {
            out += R"(\'\'')";  // the graph's quotes know no escape: close them, a quote, open them
            continue;
        }
        if (c == ':' || c == '\\' || (atAnEnd && std::strchr(" \n\t\r", c))) out += '\\';
        out += c;
    }
    return out;
}

// drawtext on a picture of that height; empty if there is no such time.
std::string describe(std::int64_t timeMs, int height, const char* fontPath) {
    const std::time_t t = timeMs / 1000;
    std::tm local{};
    if (!localtime_r(&t, &local)) return {};
    char text[64] = {};
    if (std::strftime(text, sizeof text, R"(%Y-%m-%d %H\:%M\:%S)", &local) == 0) return {};
    const int fontSize = height / 20;
    const int y = fontSize / 4;
    return "drawtext=fontsize=" + std::to_string(fontSize) + ":fontfile='" + escaped(fontPath) +
           "':fontcolor=white:x=0:y=" + std::to_string(y) + ":text='" + text + "'";
}

// A filter graph for pictures of one size and format that come out in the format they went in with.
class ZETTextFilter {
public:
    // `result` receives 0 or a negative FFmpeg code; only with 0 may a picture be filtered.
    ZETTextFilter(int& result, const char* filtersDescr, int pixelFormat, int width, int height);
    ~ZETTextFilter();
    ZETTextFilter(const ZETTextFilter&) = delete;
    ZETTextFilter& operator=(const ZETTextFilter&) = delete;

    // Puts the filtered picture in the place of the one in `frame`. 0, or a negative FFmpeg code.
    int filter(AVFrame* frame);

private:
    int createEnds(int pixelFormat, int width, int height);
    int parse(const char* filtersDescr);

    AVFilterContext* _bufferSrc = nullptr;
    AVFilterContext* _bufferSink = nullptr;
    AVFilterGraph* _filterGraph = nullptr;
    AVFilterInOut* _outputs = nullptr;  // the source's open end, "in" to the description
    AVFilterInOut* _inputs = nullptr;   // the sink's open end, "out" to the description
};

ZETTextFilter::ZETTextFilter(int& result, const char* filtersDescr, int pixelFormat, int width, int height) {
    result = createEnds(pixelFormat, width, height);
    if (result >= 0) result = parse(filtersDescr);
}

ZETTextFilter::~ZETTextFilter() {
    if (_inputs) avfilter_inout_free(&_inputs);
    if (_outputs) avfilter_inout_free(&_outputs);
    if (_filterGraph) avfilter_graph_free(&_filterGraph);
}

int ZETTextFilter::createEnds(int pixelFormat, int width, int height) {
    auto& log = ZETLog::instance();
    const AVFilter* const source = avfilter_get_by_name("buffer");
    const AVFilter* const sink = avfilter_get_by_name("buffersink");
    _outputs = avfilter_inout_alloc();
    _inputs = avfilter_inout_alloc();
    _filterGraph = avfilter_graph_alloc();
    if (!_outputs || !_inputs || !_filterGraph) return AVERROR(ENOMEM);
    _filterGraph->nb_threads = 1;  // for one picture a pool of threads isn't worth its start

    char arguments[512];
    std::snprintf(arguments, sizeof arguments, "video_size=%dx%d:pix_fmt=%d:time_base=%d/%d:pixel_aspect=%d/%d", width,
                  height, pixelFormat, 1, 25, 1, 1);
    int result = avfilter_graph_create_filter(&_bufferSrc, source, "in", arguments, nullptr, _filterGraph);
    if (result < 0) {
        log.warning("ZETTextFilter::init Cannot create buffer source\n");
        return result;
    }
    result = avfilter_graph_create_filter(&_bufferSink, sink, "out", nullptr, nullptr, _filterGraph);
    if (result < 0) {
        log.warning("ZETTextFilter::init Cannot create buffer sink\n");
        return result;
    }
    result = av_opt_set_bin(_bufferSink, "pix_fmts", reinterpret_cast<const std::uint8_t*>(&pixelFormat),
                            sizeof pixelFormat, AV_OPT_SEARCH_CHILDREN);
    if (result < 0) log.warning("ZETTextFilter::init Cannot set output pixel format\n");
    return result;
}

int ZETTextFilter::parse(const char* filtersDescr) {
    _outputs->name = av_strdup("in");
    _outputs->filter_ctx = _bufferSrc;
    _inputs->name = av_strdup("out");
    _inputs->filter_ctx = _bufferSink;
    const int result = avfilter_graph_parse_ptr(_filterGraph, filtersDescr, &_inputs, &_outputs, nullptr);
    return result < 0 ? result : avfilter_graph_config(_filterGraph, nullptr);
}

int ZETTextFilter::filter(AVFrame* frame) {
    // The picture isn't the frame's own, so the source takes a copy of it.
    const int result = av_buffersrc_add_frame_flags(_bufferSrc, frame, AV_BUFFERSRC_FLAG_KEEP_REF);
    if (result < 0) return result;
    av_frame_unref(frame);
    return av_buffersink_get_frame(_bufferSink, frame);
}

// Sends the picture through the filter and, if it comes out, copies it back over itself.
void burnIn(ZETTextFilter& textFilter, std::uint8_t* data, int width, int height, int lineSize, int pixelFormat) {
    AVFrame* frame = av_frame_alloc();
    if (!frame) return;
    frame->width = width;
    frame->height = height;
    frame->format = pixelFormat;
    frame->data[0] = data;
    frame->linesize[0] = lineSize;
    const int errorCode = textFilter.filter(frame);
    if (errorCode < 0) {
        ZETLog::instance().warning("filterData textFilter.filter error errorCode: %d \r\n", errorCode);
    } else {
        const auto n = static_cast<std::size_t>(std::min(frame->linesize[0], lineSize));
        const std::uint8_t* from = frame->data[0];
        for (int row = 0; row < height; ++row) {
            std::memcpy(data, from, n);
            data += lineSize;
            from += frame->linesize[0];
        }
    }
    av_frame_free(&frame);
}

}  // namespace

void filterData(std::int64_t timeMs, std::uint8_t* data, int width, int height, int lineSize, const char* fontPath,
                int pixelFormat) {
    const std::string description = describe(timeMs, height, fontPath);
    if (description.empty() || description.size() >= textLimit) {
        ZETLog::instance().warning("filterData refused time: %lld font path: %zu bytes \r\n",
                                   static_cast<long long>(timeMs), std::strlen(fontPath));
        return;
    }
    int result = fontLoads(fontPath) ? 0 : AVERROR(EINVAL);
    if (result == 0) {
        ZETTextFilter textFilter(result, description.c_str(), pixelFormat, width, height);
        if (result >= 0) burnIn(textFilter, data, width, height, lineSize, pixelFormat);
    }
    if (result < 0) ZETLog::instance().warning("filterData init error filtersDescr: %s \r\n", description.c_str());
}

}  // namespace zet::ZETShow

// Owning handles for FFmpeg's objects, and its errors as text.
#pragma once

#include <cstdint>
#include <cstdio>
#include <memory>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/error.h>
#include <libswresample/swresample.h>
}

namespace zephyra::aac {

struct AvDeleter {
    void operator()(AVCodecContext* context) const { avcodec_free_context(&context); }
    void operator()(AVFrame* frame) const { av_frame_free(&frame); }
    void operator()(AVPacket* packet) const { av_packet_free(&packet); }
    void operator()(SwrContext* context) const { swr_free(&context); }
};
template <typename Object>
using AvPtr = std::unique_ptr<Object, AvDeleter>;

/// Where a function of the module puts the reason of a failure.
struct Reason {
    char* text;
    std::uint32_t size;

    /// Stores "what: FFmpeg's words for code" and answers 1, the module's code for failure.
    int fail(const char* what, int code) const {
        char words[AV_ERROR_MAX_STRING_SIZE] = "";
        av_strerror(code, words, sizeof words);
        std::snprintf(text, size, "%s: %s", what, words);
        return 1;
    }
    int fail(const char* what) const {
        std::snprintf(text, size, "%s", what);
        return 1;
    }
};

} // namespace zephyra::aac

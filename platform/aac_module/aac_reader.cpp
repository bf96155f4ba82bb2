// Decodes the AAC or Apple Lossless track of an MPEG-4 file.

#include "platform/aac_module/aac_module.h"

#include "platform/aac_module/av_handles.h"

#include <algorithm>
#include <new>
#include <string>
#include <vector>

namespace zephyra::aac {
namespace {

class Reader {
public:
    ~Reader() { avformat_close_input(&format_); }

    int open(const char* path, AacTrack* track, Reason reason);
    int read(float* interleaved, std::uint32_t maxFrames, std::uint32_t* frames, Reason reason);

private:
    int openFile(const char* path, Reason reason);
    int openCodec(Reason reason);
    int openConverter(Reason reason);
    /// Decodes into frame_. False at the end of what can be decoded.
    bool nextFrame();
    /// Hands the decoder one packet of the track, or at the end of the file a null packet, once.
    bool feed();
    /// Converts frame_ to the interleaved floats of pending_.
    int convert(Reason reason);
    bool formatChanged() const;

    AVFormatContext* format_ = nullptr;
    AVStream* stream_ = nullptr;
    AvPtr<AVCodecContext> codec_;
    AvPtr<AVFrame> frame_;
    AvPtr<AVPacket> packet_;
    AvPtr<SwrContext> converter_;
    int sampleRate_ = 0;
    int channels_ = 0;
    int sampleFormat_ = 0;
    bool drained_ = false;
    bool frameReady_ = false;      // frame_ is decoded and not yet converted
    std::int64_t framesLeft_ = 0;  // until the claimed length is reached
    std::vector<float> pending_;   // converted, interleaved
    std::size_t pendingStart_ = 0; // first float of pending_ not yet read
};

int Reader::openFile(const char* path, Reason reason) {
    // Only what an m4a needs may run: one demuxer, two decoders, files of this machine.
    AVDictionary* options = nullptr;
    av_dict_set(&options, "format_whitelist", "mov,mp4,m4a,3gp,3g2,mj2", 0);
    av_dict_set(&options, "codec_whitelist", "aac,alac", 0);
    av_dict_set(&options, "protocol_whitelist", "file", 0);
    const std::string url = std::string("file:") + path; // or a colon would be taken for a scheme
    const int code = avformat_open_input(&format_, url.c_str(), nullptr, &options);
    av_dict_free(&options);
    if (code < 0) return reason.fail("is no complete MPEG-4 file", code);
    for (unsigned i = 0; i < format_->nb_streams; ++i) {
        AVStream* stream = format_->streams[i];
        const AVCodecID id = stream->codecpar->codec_id;
        const bool wanted = !stream_ && (id == AV_CODEC_ID_AAC || id == AV_CODEC_ID_ALAC);
        if (wanted)
            stream_ = stream;
        else
            stream->discard = AVDISCARD_ALL;
    }
    return stream_ ? 0 : reason.fail("holds no AAC or Apple Lossless track");
}

int Reader::openCodec(Reason reason) {
    const AVCodec* decoder = avcodec_find_decoder(stream_->codecpar->codec_id);
    if (!decoder) return reason.fail("this build of FFmpeg has no decoder for its track");
    codec_.reset(avcodec_alloc_context3(decoder));
    frame_.reset(av_frame_alloc());
    packet_.reset(av_packet_alloc());
    if (!codec_ || !frame_ || !packet_) return reason.fail("out of memory");
    int code = avcodec_parameters_to_context(codec_.get(), stream_->codecpar);
    if (code < 0) return reason.fail("its track is damaged", code);
    codec_->pkt_timebase = stream_->time_base; // timestamps move with the trimmed delay
    codec_->thread_count = 1;
    code = avcodec_open2(codec_.get(), decoder, nullptr);
    return code < 0 ? reason.fail("its track is damaged", code) : 0;
}

int Reader::openConverter(Reason reason) {
    sampleRate_ = frame_->sample_rate;
    channels_ = frame_->ch_layout.nb_channels;
    sampleFormat_ = frame_->format;
    SwrContext* converter = nullptr;
    int code = swr_alloc_set_opts2(&converter, &frame_->ch_layout, AV_SAMPLE_FMT_FLT, sampleRate_,
                                   &frame_->ch_layout, codec_->sample_fmt, sampleRate_, 0, nullptr);
    converter_.reset(converter);
    if (code >= 0) code = swr_init(converter);
    return code < 0 ? reason.fail("its sample format is not supported", code) : 0;
}

int Reader::open(const char* path, AacTrack* track, Reason reason) {
    if (const int code = openFile(path, reason)) return code;
    if (const int code = openCodec(reason)) return code;
    // Only a decoded frame tells rate and channels: the file's header may name half the rate.
    frameReady_ = nextFrame();
    if (!frameReady_ || frame_->sample_rate <= 0 || frame_->ch_layout.nb_channels <= 0)
        return reason.fail("holds no sound that can be decoded");
    if (const int code = openConverter(reason)) return code;
    const AVRational oneFrame = {1, sampleRate_};
    const std::int64_t claimed =
        stream_->duration > 0 ? av_rescale_q(stream_->duration, stream_->time_base, oneFrame) : 0;
    framesLeft_ = claimed > 0 ? claimed : INT64_MAX;
    track->sampleRate = sampleRate_;
    track->channels = static_cast<std::uint32_t>(channels_);
    track->claimedFrames = static_cast<std::uint64_t>(std::max<std::int64_t>(claimed, 0));
    track->codecName = codec_->codec_id == AV_CODEC_ID_ALAC ? "Apple Lossless" : "AAC";
    return 0;
}

bool Reader::feed() {
    if (drained_) return false;
    while (av_read_frame(format_, packet_.get()) >= 0) {
        const bool ours = packet_->stream_index == stream_->index;
        // A damaged packet is refused here and skipped.
        const bool taken = ours && avcodec_send_packet(codec_.get(), packet_.get()) >= 0;
        av_packet_unref(packet_.get());
        if (taken) return true;
    }
    drained_ = true;
    return avcodec_send_packet(codec_.get(), nullptr) >= 0;
}

bool Reader::nextFrame() {
    for (;;) {
        const int code = avcodec_receive_frame(codec_.get(), frame_.get());
        if (code >= 0 && frame_->nb_samples > 0) return true;
        if (code == AVERROR_EOF) return false;
        if (code == AVERROR(EAGAIN) && !feed()) return false;
    }
}

bool Reader::formatChanged() const {
    return frame_->sample_rate != sampleRate_ || frame_->ch_layout.nb_channels != channels_ ||
           frame_->format != sampleFormat_;
}

int Reader::convert(Reason reason) {
    if (formatChanged()) return reason.fail("changes its rate or channels midway");
    const int frames = static_cast<int>(std::min<std::int64_t>(frame_->nb_samples, framesLeft_));
    framesLeft_ -= frames;
    pending_.resize(static_cast<std::size_t>(frames) * static_cast<std::size_t>(channels_));
    pendingStart_ = 0;
    auto* out = reinterpret_cast<std::uint8_t*>(pending_.data());
    const int code = swr_convert(converter_.get(), &out, frames,
                                 const_cast<const std::uint8_t**>(frame_->extended_data), frames);
    return code < 0 ? reason.fail("cannot be converted", code) : 0;
}

int Reader::read(float* interleaved, std::uint32_t maxFrames, std::uint32_t* frames,
                 Reason reason) {
    const auto channels = static_cast<std::size_t>(channels_);
    *frames = 0;
    while (*frames < maxFrames) {
        if (pendingStart_ == pending_.size()) {
            if (framesLeft_ == 0 || !(frameReady_ || nextFrame())) break;
            frameReady_ = false;
            if (const int code = convert(reason)) return code;
        }
        const std::size_t part = std::min(pending_.size() - pendingStart_,
                                          static_cast<std::size_t>(maxFrames - *frames) * channels);
        std::copy_n(pending_.begin() + static_cast<std::ptrdiff_t>(pendingStart_), part,
                    interleaved + *frames * channels);
        pendingStart_ += part;
        *frames += static_cast<std::uint32_t>(part / channels);
    }
    return 0;
}

} // namespace

int openReader(const char* path, AacTrack* track, void** reader, char* error,
               std::uint32_t errorSize) {
    const Reason reason{error, errorSize};
    *reader = nullptr;
    std::unique_ptr<Reader> made(new (std::nothrow) Reader);
    if (!made) return reason.fail("out of memory");
    const int code = made->open(path, track, reason);
    if (code == 0) *reader = made.release();
    return code;
}

int read(void* reader, float* interleaved, std::uint32_t maxFrames, std::uint32_t* frames,
         char* error, std::uint32_t errorSize) {
    return static_cast<Reader*>(reader)->read(interleaved, maxFrames, frames, {error, errorSize});
}

void closeReader(void* reader) {
    delete static_cast<Reader*>(reader);
}

} // namespace zephyra::aac

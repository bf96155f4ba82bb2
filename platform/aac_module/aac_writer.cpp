// Writes 16-bit samples as an AAC low-complexity track in an m4a file.

#include "platform/aac_module/aac_module.h"

#include "platform/aac_module/av_handles.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <new>

namespace zephyra::aac {
namespace {

/// Bits per sample and channel: 220 kbit/s for mono at 44100 Hz. Just below the format's limit of
/// 6144 bits in a packet of 1024 samples: the encoder spends far less on most sounds, but with a
/// lower target it starves the first packet, which is where a sample's attack is.
constexpr std::int64_t kBitsPerSample = 5;

constexpr std::uint32_t kMaxChannels = 8;
constexpr int kBufferBytes = 32768; // between FFmpeg and the target

int put(void* target, std::uint8_t* bytes, int count) {
    const auto& to = *static_cast<const AacTarget*>(target);
    const int failed = to.write(to.self, bytes, static_cast<std::uint32_t>(count));
    return failed ? AVERROR(failed) : count;
}

/// A muxer that writes only looks for places it has been at.
std::int64_t seek(void* target, std::int64_t position, int whence) {
    if (whence != SEEK_SET || position < 0) return AVERROR(ENOSYS);
    const auto& to = *static_cast<const AacTarget*>(target);
    const int failed = to.seek(to.self, static_cast<std::uint64_t>(position));
    return failed ? AVERROR(failed) : position;
}

class Writer {
public:
    ~Writer() {
        if (!format_) return;
        if (format_->pb) av_freep(&format_->pb->buffer);
        avio_context_free(&format_->pb);
        avformat_free_context(format_);
    }

    int open(const AacTarget& target, int sampleRate, int channels, Reason reason);
    int write(const std::int16_t* const* channels, std::uint32_t frames, Reason reason);
    int finish(Reason reason);

private:
    int openCodec(int sampleRate, int channels, Reason reason);
    int openFile(Reason reason);
    /// Makes frame_ ready to be filled from its first sample.
    int freshFrame(Reason reason);
    /// Sends frame_ (null: the end) to the encoder and the packets that come out to the file.
    int encode(AVFrame* frame, Reason reason);

    AacTarget target_;
    AVFormatContext* format_ = nullptr;
    AvPtr<AVCodecContext> codec_;
    AvPtr<AVFrame> frame_;
    AvPtr<AVPacket> packet_;
    int filled_ = 0; // samples in frame_
    std::int64_t written_ = 0;
};

bool encoderKnowsRate(const AVCodec* encoder, int sampleRate) {
    const int* rate = encoder->supported_samplerates;
    while (rate && *rate && *rate != sampleRate) ++rate;
    return rate && *rate == sampleRate;
}

int Writer::openCodec(int sampleRate, int channels, Reason reason) {
    const AVCodec* encoder = avcodec_find_encoder(AV_CODEC_ID_AAC);
    if (!encoder) return reason.fail("this build of FFmpeg has no AAC encoder");
    if (!encoderKnowsRate(encoder, sampleRate))
        return reason.fail("AAC has no such sample rate; 44100 or 48000 Hz would do");
    codec_.reset(avcodec_alloc_context3(encoder));
    frame_.reset(av_frame_alloc());
    packet_.reset(av_packet_alloc());
    if (!codec_ || !frame_ || !packet_) return reason.fail("out of memory");
    codec_->sample_rate = sampleRate;
    codec_->time_base = {1, sampleRate};
    codec_->sample_fmt = AV_SAMPLE_FMT_FLTP;
    codec_->bit_rate = kBitsPerSample * sampleRate * channels;
    codec_->profile = FF_PROFILE_AAC_LOW;
    // The same samples give the same bytes; and m4a keeps the codec's header outside the packets.
    codec_->flags |= AV_CODEC_FLAG_BITEXACT | AV_CODEC_FLAG_GLOBAL_HEADER;
    av_channel_layout_default(&codec_->ch_layout, channels);
    const int code = avcodec_open2(codec_.get(), encoder, nullptr);
    return code < 0 ? reason.fail("the AAC encoder does not start", code) : 0;
}

int Writer::openFile(Reason reason) {
    // "ipod" is the muxer's name for the m4a brand.
    int code = avformat_alloc_output_context2(&format_, nullptr, "ipod", nullptr);
    if (code < 0) return reason.fail("FFmpeg cannot write m4a", code);
    format_->flags |= AVFMT_FLAG_BITEXACT;
    AVStream* stream = avformat_new_stream(format_, nullptr);
    if (!stream) return reason.fail("out of memory");
    stream->time_base = codec_->time_base;
    code = avcodec_parameters_from_context(stream->codecpar, codec_.get());
    if (code < 0) return reason.fail("out of memory");
    auto* const buffer = static_cast<unsigned char*>(av_malloc(kBufferBytes));
    if (buffer)
        format_->pb = avio_alloc_context(buffer, kBufferBytes, 1, &target_, nullptr, put, seek);
    if (!format_->pb) {
        av_free(buffer);
        return reason.fail("out of memory");
    }
    // The edit list that holds the true length counts in the movie's time scale.
    AVDictionary* options = nullptr;
    av_dict_set_int(&options, "movie_timescale", codec_->sample_rate, 0);
    code = avformat_write_header(format_, &options);
    av_dict_free(&options);
    return code < 0 ? reason.fail("cannot be written", code) : 0;
}

int Writer::freshFrame(Reason reason) {
    av_frame_unref(frame_.get());
    frame_->format = codec_->sample_fmt;
    frame_->sample_rate = codec_->sample_rate;
    frame_->nb_samples = codec_->frame_size;
    filled_ = 0;
    const int code = av_channel_layout_copy(&frame_->ch_layout, &codec_->ch_layout);
    return code < 0 || av_frame_get_buffer(frame_.get(), 0) < 0 ? reason.fail("out of memory") : 0;
}

int Writer::open(const AacTarget& target, int sampleRate, int channels, Reason reason) {
    target_ = target;
    if (const int code = openCodec(sampleRate, channels, reason)) return code;
    if (const int code = openFile(reason)) return code;
    return freshFrame(reason);
}

int Writer::encode(AVFrame* frame, Reason reason) {
    int code = avcodec_send_frame(codec_.get(), frame);
    if (code < 0) return reason.fail("the samples cannot be encoded", code);
    while ((code = avcodec_receive_packet(codec_.get(), packet_.get())) >= 0) {
        av_packet_rescale_ts(packet_.get(), codec_->time_base, format_->streams[0]->time_base);
        code = av_interleaved_write_frame(format_, packet_.get());
        if (code < 0) return reason.fail("cannot be written", code);
    }
    const bool waiting = code == AVERROR(EAGAIN) || code == AVERROR_EOF;
    return waiting ? 0 : reason.fail("the samples cannot be encoded", code);
}

int Writer::write(const std::int16_t* const* channels, std::uint32_t frames, Reason reason) {
    const int channelCount = codec_->ch_layout.nb_channels;
    for (std::uint32_t done = 0; done < frames;) {
        const int part = static_cast<int>(std::min<std::uint32_t>(
            frames - done, static_cast<std::uint32_t>(codec_->frame_size - filled_)));
        for (int c = 0; c < channelCount; ++c) {
            float* to = reinterpret_cast<float*>(frame_->extended_data[c]) + filled_;
            for (int i = 0; i < part; ++i)
                to[i] = static_cast<float>(channels[c][done + static_cast<std::uint32_t>(i)]) /
                        32768.0f;
        }
        done += static_cast<std::uint32_t>(part);
        filled_ += part;
        if (filled_ < codec_->frame_size) break;
        frame_->pts = written_;
        written_ += filled_;
        if (const int code = encode(frame_.get(), reason)) return code;
        if (const int code = freshFrame(reason)) return code;
    }
    return 0;
}

int Writer::finish(Reason reason) {
    if (filled_ > 0) {
        frame_->nb_samples = filled_; // the encoder pads it and notes the true length
        frame_->pts = written_;
        if (const int code = encode(frame_.get(), reason)) return code;
    }
    if (const int code = encode(nullptr, reason)) return code;
    const int code = av_write_trailer(format_);
    return code < 0 ? reason.fail("cannot be written", code) : 0;
}

} // namespace

int openWriter(const AacTarget* target, double sampleRate, std::uint32_t channels, void** writer,
               char* error, std::uint32_t errorSize) {
    const Reason reason{error, errorSize};
    *writer = nullptr;
    if (channels < 1 || channels > kMaxChannels)
        return reason.fail("an m4a file holds 1 to 8 channels");
    const int rate = sampleRate > 0.0 && sampleRate < 1e6 ? static_cast<int>(sampleRate) : 0;
    if (static_cast<double>(rate) != sampleRate)
        return reason.fail("AAC has no such sample rate; 44100 or 48000 Hz would do");
    std::unique_ptr<Writer> made(new (std::nothrow) Writer);
    if (!made) return reason.fail("out of memory");
    const int code = made->open(*target, rate, static_cast<int>(channels), reason);
    if (code == 0) *writer = made.release();
    return code;
}

int write(void* writer, const std::int16_t* const* channels, std::uint32_t frames, char* error,
          std::uint32_t errorSize) {
    return static_cast<Writer*>(writer)->write(channels, frames, {error, errorSize});
}

int closeWriter(void* writer, char* error, std::uint32_t errorSize) {
    const std::unique_ptr<Writer> last(static_cast<Writer*>(writer));
    return last ? last->finish({error, errorSize}) : 0;
}

} // namespace zephyra::aac

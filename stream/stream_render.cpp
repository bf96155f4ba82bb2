// GranulatorProcessing: what one render cycle does with a stream.

#include "platform/threads/flush_denormals.h"
#include "stream/stream_controller.h"

#include <algorithm>

namespace zephyra {

namespace {

/// A stretch of the first two buffers of a list, as a list of its own.
struct BlockView {
    BlockView(const AudioBufferList& whole, int first, int frames) ZEPHYRA_NONBLOCKING {
        list.mNumberBuffers = std::min(whole.mNumberBuffers, 2u);
        for (std::uint32_t i = 0; i < list.mNumberBuffers; ++i) {
            float* const start = whole.floats(i);
            buffers[i].mDataByteSize = static_cast<std::uint32_t>(frames) * sizeof(float);
            buffers[i].mData = start ? start + first : nullptr;
        }
    }
    BlockView(const BlockView&) = delete;
    BlockView& operator=(const BlockView&) = delete;

    AudioBuffer buffers[2];
    AudioBufferList list{.mBuffers = buffers};
};

} // namespace

granular_data* getGranularData(MOK_SCRUB_GRANULATOR* controller) noexcept {
    return controller ? &controller->data_ : nullptr;
}

void GranulatorProcessing(MOK_SCRUB_GRANULATOR* controller, int frames,
                          const AudioBufferList* input,
                          const AudioBufferList& output) ZEPHYRA_NONBLOCKING {
    if (!controller) return;
    const RenderCycle::Scope cycle(controller->cycle_);
    const FlushDenormals flush;
    const granular_data& stream = controller->data_;
    constexpr int kMost = mokGranulatorSF::kMaxBlockFrames;
    for (int done = 0; done < frames; done += kMost) {
        const int count = std::min(kMost, frames - done);
        if (input) drawLiveWaveForm(stream.waveform, count, BlockView(*input, done, count).list);
        const BlockView out(output, done, count);
        stream.engine->GranularStreamProcessing(count, out.list);
        controller->oscilloscope_.OscilloscopeAddAudio(out.list, count);
    }
}

/// The grains that sound read what all grains read, so that nothing is heard of them either in a
/// buffer that is silent. They stand still meanwhile with their place in it, and go on as if the
/// silence had been shorter.
bool GranulatorRests(MOK_SCRUB_GRANULATOR* controller) ZEPHYRA_NONBLOCKING {
    if (!controller) return true;
    const RenderCycle::Scope cycle(controller->cycle_);
    const granular_data& stream = controller->data_;
    const waveform_data& live = stream.waveform->data();
    const LiveSample& heard = *live.mSample.load();
    if (live.isLiveEnabled && !heard.isSilent()) return false;
    if (stream.engine->granularOn && !(heard.isSilent() && stream.engine->soundsOnlyOf(&heard)))
        return false;
    return stream.engine->effectsRest();
}

void GranulatorPassing(MOK_SCRUB_GRANULATOR* controller, int frames) ZEPHYRA_NONBLOCKING {
    if (controller) getGranularData(controller)->engine->pass(frames);
}

} // namespace zephyra

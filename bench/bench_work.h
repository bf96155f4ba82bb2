// BenchWork: the work that every speed goal is stated for: a full pool of overlapping grains.
#pragma once

#include "effects/ring_modulator.h"
#include "engine/granular_stream.h"
#include "platform/threads/flush_denormals.h"
#include "tests/support/literal_stream.h"
#include "tests/support/stream_probe.h"
#include "tests/support/test_sounds.h"

#include <memory>
#include <vector>

namespace zephyra {

/// Grains of 85 ms with random offsets and pans, started often enough to keep a pool of them busy
/// (282 a second for 24), over noise of a given length at 44100 Hz.
struct BenchWork {
    static constexpr float kRate = 44100.0f;
    static constexpr std::uint32_t kSeed = 1234567;

    std::shared_ptr<mokSample> sample;
    mokWindow window{mokWindow::kPoints, kWindowHanning};

    explicit BenchWork(double sourceSeconds = 10.0)
        : sample(noiseSample(static_cast<std::uint64_t>(sourceSeconds * double{kRate}), kRate)) {}
    explicit BenchWork(std::shared_ptr<mokSample> source) : sample(std::move(source)) {}

    /// Renders until the pool is full. Voices that wait for the next block's start make the mean
    /// number of sounding grains a little less than the pool.
    static void fillPool(mokGranulatorSF& stream, int block) { render(stream, 8192, block); }

    /// How many grains sound on average in blocks of that many frames.
    double meanGrains(int block) const {
        const auto stream = engine();
        fillPool(*stream, block);
        const auto sounded = stream->soundedSamples(), frames = stream->renderedFrames();
        render(*stream, 8 * mokGranulatorSF::kMaxBlockFrames, block);
        return static_cast<double>(stream->soundedSamples() - sounded) /
               static_cast<double>(stream->renderedFrames() - frames);
    }

    /// Fills the pool and lets the effects' parameters come to rest: 300 ms and 250 ms of echo, 220
    /// Hz of ring modulation at half.
    static void settle(mokGranulatorSF& stream) {
        RM::setparameter(stream.ringModulatorModule(), RM::kFreq, 220.0);
        RM::setparameter(stream.ringModulatorModule(), RM::kDryWet, 0.5);
        render(stream, 44100 * 10, mokGranulatorSF::kMaxBlockFrames);
    }

    static void render(mokGranulatorSF& stream, int frames, int block) {
        static StereoBlock output(mokGranulatorSF::kMaxBlockFrames);
        const AudioBufferList list = output.from(0);
        const FlushDenormals flush; // as on a host's audio thread
        for (int done = 0; done < frames; done += block)
            stream.GranularStreamProcessing(block, list);
    }

    std::unique_ptr<mokGranulatorSF> engine(int grains = mokGranulatorSF::kVoices) const {
        auto stream =
            std::make_unique<mokGranulatorSF>(sample.get(), &window, grains, kRate, kSeed);
        configure(*stream, grains);
        return stream;
    }

    /// Keeps a stream's pool of grains busy.
    static void configure(mokGranulatorSF& stream, int grains = mokGranulatorSF::kVoices) {
        stream.setRandomSeed(kSeed);
        stream.setDensity(static_cast<float>(grains) / 0.085f);
        stream.setLength(85.0f);
        stream.setRndLength(0.0f);
        stream.setWidth(1.0f);
        stream.setRndPitch(2.0f);
        stream.setJittering(1000.0f);
        stream.granularOn = true;
    }

    /// The literal loop with the same settings.
    LiteralStream literal(const mokGranulatorSF& stream,
                          int grains = mokGranulatorSF::kVoices) const {
        LiteralStream model(*sample, window, grains);
        const auto f = StreamProbe::fields(stream);
        model.sampleRate = kRate;
        model.seed = kSeed;
        model.width = f.width;
        model.rndLength = f.rndLength;
        model.panA = f.panA;
        model.panB = f.panB;
        model.density = f.density;
        model.playbackRate = f.playbackRate;
        model.rndPitch = f.rndPitch;
        model.jitter = f.jitter;
        model.phasorIncrement = f.scanIncrement;
        return model;
    }
};

/// The engine's inner body without an engine: a grain whose phases meet no edge, begun anew each
/// time.
class BenchInnerBody {
public:
    static constexpr int kFrames = 8192;

    BenchInnerBody()
        : grain_(work_.sample.get(), &work_.window, BenchWork::kRate, BenchWork::kSeed) {
        grain_.start();
        grain_.setParameters(0.5f, 0.1f, 0.25, 0.085f);
    }

    /// Adds kFrames grain-samples to the output.
    int run(GrainMixer mixer) {
        grain_.envelopePhase = 0.5f; // with an envelope step half as long as usual it stays below 1
        grain_.envelopeIncrement = 0x1p-15f;
        grain_.readPhase = 0.25;
        grain_.straight = {};
        return mixer(grain_, grainTables(*work_.sample, work_.window),
                     {0.75f, 0.25f, out_.data(), out_.data() + kFrames + kGap, kFrames});
    }

private:
    BenchWork work_;
    mokGrain grain_;
    static constexpr int kGap = 512; // half a page between the channels, as the engine keeps it
    std::vector<float> out_ = std::vector<float>(2 * kFrames + kGap);
};

} // namespace zephyra

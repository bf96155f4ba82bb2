#include "stream/captured_state.h"

#include "platform/flac_codec.h"
#include "platform/log.h"
#include "platform/property_reader.h"

#include <algorithm>
#include <cmath>
#include <new>
#include <utility>
#include <vector>

namespace zephyra {

namespace {

// Hz: FLAC counts whole ones up to the first, then tens up to the second.
constexpr double kMostWholeRate = 65535.0, kMostFlacRate = 655350.0;

/// The nearest rate that FLAC can tell; the state keeps the true one beside it.
double flacRate(double rate) {
    const double step = rate <= kMostWholeRate ? 1.0 : 10.0;
    return std::clamp(std::round(rate / step) * step, 1.0, kMostFlacRate);
}

/// The power of two that brings the loudest sample below 1, as near as it can: dividing by it is
/// exact, so that all 24 bits of FLAC count and a state that is kept again is the same.
double levelOf(const std::vector<float>& frames) {
    float peak = 0.0f;
    for (const float frame : frames) peak = std::max(peak, std::abs(frame));
    int exponent = 0;
    std::frexp(peak, &exponent);
    return std::ldexp(1.0, exponent);
}

void multiply(std::vector<float>& frames, double factor) {
    for (float& frame : frames) frame = static_cast<float>(frame * factor);
}

} // namespace

PropertyDictionary capturedState(const WaveForm& waveForm) {
    if (!waveForm.isLiveCurrent()) return {};
    try {
        std::vector<float> frames = waveForm.heardFrames();
        if (frames.empty()) return {};
        const double level = levelOf(frames);
        multiply(frames, 1.0 / level);
        const double rate = double{waveForm.mSample()->sampleRate};
        Result<FlacSound> flac = encodeFlac(frames, flacRate(rate));
        if (flac)
            return {{"FLAC", std::move(flac.value().bytes)},
                    {"Scale", flac.value().scale * level},
                    {"SampleRate", rate},
                    {"Frames", static_cast<std::int64_t>(frames.size())}};
        logLine("what LIVE heard is left out of the state: " + flac.message());
    } catch (const std::bad_alloc&) {
        logLine("what LIVE heard is left out of the state: no memory for a copy; free some");
    }
    return {};
}

bool restoreCaptured(MOK_SCRUB_GRANULATOR& stream, const PropertyDictionary& state,
                     const std::string& key) {
    PropertyReader reader(state, key);
    const PropertyData* const flac = reader.data("FLAC");
    if (!flac) {
        logLine(key + ".FLAC: missing; the captured sound as FLAC data is needed");
        return false;
    }
    Result<DecodedFlac> sound = decodeFlac(*flac, 1.0, WaveForm::kLiveFrames);
    if (!sound) {
        logLine(key + ".FLAC: " + sound.message());
        return false;
    }
    multiply(sound.value().samples, reader.real("Scale").value_or(1.0));
    const double rate = reader.real("SampleRate").value_or(sound.value().sampleRate);
    const auto frames = reader.whole("Frames");
    if (frames && static_cast<std::uint64_t>(*frames) != sound.value().samples.size())
        logLine(key + ".FLAC: holds " + std::to_string(sound.value().samples.size()) +
                " frames where " + std::to_string(*frames) + " were kept; these are played");
    if (stream.setCaptured(sound.value().samples, rate)) return true;
    logLine(key + ": is not played; samples up to 4294967296 times full scale, a rate above 0 Hz "
                  "and free memory are needed");
    return false;
}

} // namespace zephyra

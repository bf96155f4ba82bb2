#include "stream/kept_sound.h"

#include "controls/state_keys.h"

#include <algorithm>
#include <cmath>
#include <new>
#include <utility>

namespace zephyra {

namespace {

using namespace sound_key;

// Hz: FLAC counts whole ones up to the first, then tens up to the second.
constexpr double kMostWholeRate = 65535.0, kMostFlacRate = 655350.0;

/// The nearest rate that FLAC can tell; the state keeps the true one beside it.
double flacRate(double rate) {
    const double step = rate <= kMostWholeRate ? 1.0 : 10.0;
    return std::clamp(std::round(rate / step) * step, 1.0, kMostFlacRate);
}

/// The power of two that brings every sample into -1..1 (1 itself left out), as near as it can:
/// dividing by it is exact, so that all 24 bits of FLAC count.
double levelOf(const std::vector<float>& frames) {
    float highest = 0.0f, lowest = 0.0f;
    for (const float frame : frames) {
        highest = std::max(highest, frame);
        lowest = std::min(lowest, frame);
    }
    int above = 0, below = 0;
    std::frexp(highest, &above);
    if (std::frexp(lowest, &below) == -0.5f) --below; // whole numbers reach -1
    if (highest == 0.0f) above = below;
    if (lowest == 0.0f) below = above;
    return std::ldexp(1.0, std::max(above, below));
}

void multiply(std::vector<float>& frames, double factor) {
    for (float& frame : frames) frame = static_cast<float>(frame * factor);
}

} // namespace

Result<PropertyDictionary> keptSound(std::vector<float> frames, double rate) {
    try {
        const double level = levelOf(frames);
        multiply(frames, 1.0 / level);
        Result<FlacSound> flac = encodeFlac(frames, flacRate(rate));
        if (!flac) return Failure{flac.message()};
        return PropertyDictionary{{kFlac, PropertyData(std::move(flac.value().bytes))},
                                  {kScale, flac.value().scale * level},
                                  {kSampleRate, rate},
                                  {kFrames, static_cast<std::int64_t>(frames.size())}};
    } catch (const std::bad_alloc&) {
        return Failure{"no memory for a copy of the sound; free some"};
    }
}

std::optional<ReadSound> readKeptSound(PropertyReader& reader, std::uint64_t mostFrames,
                                       Result<DecodedFlac>* ahead) {
    const auto refuse = [&reader](std::string problem) {
        reader.complain(kFlac, std::move(problem), StandIn::nothing);
        return std::nullopt;
    };
    const PropertyData* const flac = reader.data(kFlac);
    if (!flac) return refuse("missing; the sound as FLAC data is needed");
    const double scale = reader.real(kScale).value_or(1.0);
    const auto rate = reader.real(kSampleRate);
    const auto frames = reader.whole(kFrames);
    try {
        Result<DecodedFlac> sound =
            ahead ? std::move(*ahead) : decodeFlac(flac->bytes(), 1.0, mostFrames);
        if (!sound) return refuse(sound.message());
        multiply(sound.value().samples, scale);
        return ReadSound{std::move(sound.value().samples), rate.value_or(sound.value().sampleRate),
                         frames};
    } catch (const std::bad_alloc&) {
        return refuse("no memory for the sound; free some");
    }
}

} // namespace zephyra

#include "stream/captured_state.h"

#include "controls/state_keys.h"
#include "platform/text/log.h"
#include "stream/kept_sound.h"

#include <new>
#include <utility>
#include <vector>

namespace zephyra {

namespace {

CapturedMemory::Version versionOf(const MOK_SCRUB_GRANULATOR& stream) {
    const LiveSample& live = *stream.waveForm().liveSample();
    return {stream.waveForm().liveReplacements(), stream.liveStarts(), live.heard, live.offset};
}

Result<PropertyDictionary> encoded(const WaveForm& waveForm) {
    try {
        std::vector<float> frames = waveForm.heardFrames();
        if (frames.empty()) return PropertyDictionary();
        return keptSound(std::move(frames), double{waveForm.mSample()->sampleRate});
    } catch (const std::bad_alloc&) {
        return Failure{"no memory for a copy; free some"};
    }
}

} // namespace

PropertyDictionary capturedState(MOK_SCRUB_GRANULATOR& stream) {
    if (!stream.waveForm().isLiveCurrent()) return {};
    CapturedMemory& memory = stream.capturedMemory();
    const CapturedMemory::Version version = versionOf(stream);
    if (version.replacements != memory.version.replacements) memory.unknown.clear();
    if (version != memory.version) memory.sound.clear();
    memory.version = version;
    if (memory.sound.empty()) {
        auto sound = encoded(stream.waveForm());
        if (!sound) {
            stream.instance().log.write("what LIVE heard is left out of the state: " +
                                        sound.message());
            return {};
        }
        memory.sound = std::move(sound.value());
    }
    if (memory.sound.empty()) return {};
    PropertyDictionary state = memory.sound;
    if (stream.isLive()) memory.sound.clear(); // may be another one at any time
    state.insert(memory.unknown.begin(), memory.unknown.end());
    return state;
}

bool restoreCaptured(MOK_SCRUB_GRANULATOR& stream, const PropertyDictionary& captured,
                     PropertyReader& state, const std::string& key) {
    PropertyReader reader(captured, state.findings(), state.path(key), StandIn::usual);
    const std::optional<ReadSound> sound = readKeptSound(reader, WaveForm::kLiveFrames);
    if (!sound) return false;
    const auto& [frames, rate, expected] = *sound;
    if (expected && *expected != static_cast<std::int64_t>(frames.size()))
        reader.complain(sound_key::kFlac,
                        "holds " + std::to_string(frames.size()) + " frames where " +
                            std::to_string(*expected) + " were kept; these are played",
                        StandIn::whatIsThere);
    if (!stream.setCaptured(frames, rate)) {
        state.complain(key,
                       "is not played; samples up to 4294967296 times full scale, a rate above 0 "
                       "Hz and free memory are needed",
                       StandIn::nothing);
        return false;
    }
    stream.capturedMemory() = {versionOf(stream), {}, reader.unknown()};
    return true;
}

} // namespace zephyra

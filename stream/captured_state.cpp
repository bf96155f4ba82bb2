#include "stream/captured_state.h"

#include "controls/state_keys.h"
#include "platform/text/log.h"
#include "stream/kept_sound.h"

#include <new>
#include <utility>
#include <vector>

namespace zephyra {

namespace {

constexpr const char* kLeftOut = "what LIVE heard is left out of the state: ";

} // namespace

CapturedMemory::Version versionOf(const MOK_SCRUB_GRANULATOR& stream) {
    const WaveForm& waveForm = stream.waveForm();
    const LiveSample& live = *waveForm.liveSample();
    return {waveForm.liveReplacements(), stream.liveStarts(), live.heard, live.offset,
            waveForm.isHeld() ? waveForm.holds() : 0};
}

void CapturedSound::encode(Log& log) {
    if (frames.empty()) return;
    auto kept = keptSound(std::exchange(frames, {}), rate);
    if (!kept) return log.write(kLeftOut + kept.message());
    sound = std::move(kept.value());
}

CapturedSound takeCaptured(MOK_SCRUB_GRANULATOR& stream) {
    const WaveForm& waveForm = stream.waveForm();
    if (!waveForm.isLiveCurrent()) return {};
    CapturedMemory& memory = stream.capturedMemory();
    CapturedSound captured{.version = versionOf(stream)};
    if (captured.version.replacements != memory.version.replacements) memory.unknown.clear();
    if (captured.version != memory.version) memory.sound.clear();
    memory.version = captured.version;
    captured.unknown = memory.unknown;
    captured.sound = memory.sound;
    if (!captured.sound.empty()) return captured;
    captured.rate = double{waveForm.mSample()->sampleRate};
    try {
        captured.frames = waveForm.heardFrames();
    } catch (const std::bad_alloc&) {
        stream.instance().log.write(kLeftOut + std::string("no memory for a copy; free some"));
    }
    return captured;
}

PropertyDictionary keepCaptured(MOK_SCRUB_GRANULATOR& stream, const CapturedSound& captured) {
    if (captured.sound.empty()) return {};
    // While LIVE is on it may be another one at any time, unless it is held.
    const bool stands = !stream.isLive() || stream.waveForm().isHeld();
    if (stands && versionOf(stream) == captured.version)
        stream.capturedMemory().sound = captured.sound;
    PropertyDictionary state = captured.sound;
    state.insert(captured.unknown.begin(), captured.unknown.end());
    return state;
}

std::shared_ptr<Result<DecodedFlac>> decodeAhead(const PropertyDictionary& state,
                                                 const std::string& suffix) {
    const auto captured = state.find(state_key::kCaptured + suffix);
    const auto* const sound =
        captured == state.end() ? nullptr : captured->second.as<PropertyDictionary>();
    if (!sound) return nullptr;
    const auto flac = sound->find(sound_key::kFlac);
    const auto* const data = flac == sound->end() ? nullptr : flac->second.as<PropertyData>();
    if (!data) return nullptr;
    try {
        return std::make_shared<Result<DecodedFlac>>(
            decodeFlac(data->bytes(), 1.0, WaveForm::kLiveFrames));
    } catch (const std::bad_alloc&) {
        return nullptr; // restoring it says so
    }
}

bool restoreCaptured(MOK_SCRUB_GRANULATOR& stream, const PropertyDictionary& captured,
                     PropertyReader& state, const std::string& key) {
    PropertyReader reader(captured, state.findings(), state.path(key), StandIn::usual);
    const std::optional<ReadSound> sound =
        readKeptSound(reader, WaveForm::kLiveFrames, stream.capturedMemory().ahead.get());
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

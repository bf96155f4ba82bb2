#include "screens/model/path/voices_face.h"

#include <algorithm>
#include <cmath>

namespace zephyra {

namespace {

constexpr double kDroppedShows = 0.3; // seconds

VoicesFace::Dot dotOf(const SoundingVoice& voice) {
    const float envelope = std::isfinite(voice.envelope) ? voice.envelope : 1.0f;
    const long light = std::lround(envelope * float{VoicesFace::kMostLight});
    return {.semitones = std::isfinite(voice.semitones) ? voice.semitones : 0.0f,
            .light = static_cast<int>(std::clamp(light, 1L, long{VoicesFace::kMostLight}))};
}

} // namespace

std::string VoicesFace::name() const {
    return std::to_string(count).append(count == 1 ? " grain" : " grains");
}

void VoiceDots::show(std::span<const SoundingVoice> sounding, std::uint64_t dropped, double now) {
    sounding = sounding.first(std::min(sounding.size(), kVoices));
    const auto sounds = [&](std::uint64_t id) {
        return std::any_of(sounding.begin(), sounding.end(),
                           [id](const SoundingVoice& voice) { return voice.id == id; });
    };
    face_.count = sounding.size();
    face_.dots = {};
    for (auto& grain : grains_)
        if (grain && !sounds(*grain)) grain.reset();
    for (const SoundingVoice& voice : sounding) {
        auto at = std::find(grains_.begin(), grains_.end(), voice.id);
        if (at == grains_.end()) at = std::find(grains_.begin(), grains_.end(), std::nullopt);
        if (at == grains_.end()) continue; // an id that came twice
        *at = voice.id;
        face_.dots[static_cast<std::size_t>(at - grains_.begin())] = dotOf(voice);
    }
    if (dropped_ && *dropped_ != dropped) droppedUntil_ = now + kDroppedShows;
    dropped_ = dropped;
    face_.dropped = now < droppedUntil_;
}

} // namespace zephyra

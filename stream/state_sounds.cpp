#include "stream/state_sounds.h"

#include "controls/state_keys.h"

#include <utility>

namespace zephyra {

StateSounds::StateSounds(MOK_SCRUB_GRANULATOR& stream, const SampleLoader* loader)
    : log_(stream.instance().log), folders_(stream.instance().folders),
      files_(stream.instance().fileFacts), reference_(stream.sampleReference()),
      captured_(loader && loader->replacesLive() ? CapturedSound() : takeCaptured(stream)) {
    if (reference_.path.empty()) return;
    // Whatever the setting says, the only copy of a sound is not thrown away.
    if (reference_.embedded && reference_.embedded->isOnlyCopy) {
        embedded_ = reference_.embedded;
        return;
    }
    auto sound = stream.waveForm().fileSound();
    if (reference_.frames == 0 || !isEmbeddable(*sound, embedSeconds(stream.instance().defaults)))
        return;
    embedded_ = reference_.embedded;
    if (!embedded_) sound_ = std::move(sound);
}

void StateSounds::encode() {
    captured_.encode(log_);
    if (!sound_) return;
    auto [embedded, problem] = embedSample(*sound_, reference_, folders_.resources, *files_);
    if (!problem.empty()) log_.write(problem);
    embedded_ = std::move(embedded);
}

void StateSounds::addTo(PropertyDictionary& state, MOK_SCRUB_GRANULATOR& stream) {
    addSample(state, stream);
    if (auto captured = keepCaptured(stream, captured_); !captured.empty())
        state[state_key::kCaptured + stream.channel()] = std::move(captured);
}

void StateSounds::addSample(PropertyDictionary& state, MOK_SCRUB_GRANULATOR& stream) const {
    if (!embedded_) return;
    if (sound_ && stream.sampleReference() == reference_) {
        SampleReference encoded = reference_;
        encoded.embedded = embedded_;
        stream.setSampleReference(std::move(encoded));
    }
    const auto sample = state.find(state_key::kSample + stream.channel());
    if (sample == state.end() || embedded_->audio.empty()) return;
    (*sample->second.as<PropertyDictionary>())[sample_key::kAudio] = embedded_->audio;
}

} // namespace zephyra

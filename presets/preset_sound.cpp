#include "presets/preset_sound.h"

#include "controls/state_keys.h"
#include "platform/instance.h"
#include "platform/lists/property_reader.h"
#include "platform/text/message_text.h"
#include "stream/sample_loader.h"
#include "stream/stream_controller.h"
#include "stream/stream_state.h"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

namespace zephyra {

namespace {

/// What the record says of the sound, and nothing that would scale it.
PropertyDictionary soundKeys(const PropertyDictionary& record) {
    PropertyDictionary state;
    for (const char* key : {state_key::kSample, state_key::kCaptured})
        if (const auto found = record.find(ofStream(key)); found != record.end())
            state.insert(*found);
    return state;
}

std::shared_ptr<mokSample> copyOf(const std::vector<float>& frames, float rate) {
    auto sample = std::make_shared<mokSample>();
    if (frames.empty() || !sample->allocate(frames.size(), rate)) return nullptr;
    std::ranges::copy(frames, sample->getPtr());
    sample->writeGuardPoint();
    return sample;
}

std::shared_ptr<const mokSample> currentSound(const MOK_SCRUB_GRANULATOR& stream) {
    const WaveForm& wave = stream.waveForm();
    if (wave.isLiveCurrent()) return copyOf(wave.heardFrames(), wave.mSample()->sampleRate);
    return wave.hasFileSample() ? wave.fileSound() : nullptr;
}

} // namespace

Result<PresetSound> findPresetSound(const PresetChoice& preset, const Folders& folders,
                                    std::shared_ptr<FileFacts> files) {
    Instance instance;
    instance.folders = folders;
    instance.fileFacts = std::move(files);
    instance.defaults.setValue("EmbedSeconds", 0.0); // it saves no state
    MOK_SCRUB_GRANULATOR stream(instance);
    SampleLoader loader(instance, stream);
    const PropertyDictionary state = soundKeys(*preset.record);
    SampleReport report;
    {
        const RunLoop::Scope main(instance.runLoop);
        PropertyReader reader(state);
        restoreStreamState(stream, loader, reader,
                           [&report](const SampleReport& ended) { report = ended; });
    }
    instance.runLoop.finishWork();

    const RunLoop::Scope main(instance.runLoop);
    const std::string of = "the sound of preset " + inQuotes(preset.name) +
                           (report.findings.empty() ? " is missing" : " is damaged");
    if (!report.problem.empty())
        return Failure{of + ": " + report.problem + "; name INPUT instead"};
    PresetSound sound{currentSound(stream), stream.sampleReference(), std::move(report)};
    if (!sound.sample) return Failure{of + "; name INPUT instead"};
    if (sound.reference.path.empty() || stream.waveForm().isLiveCurrent()) sound.reference = {};
    sound.reference.sampleRate = double{sound.sample->sampleRate};
    sound.reference.frames = sound.sample->size;
    return sound;
}

} // namespace zephyra

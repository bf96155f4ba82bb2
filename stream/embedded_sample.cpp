#include "stream/embedded_sample.h"

#include "controls/state_keys.h"
#include "platform/files/folder_entries.h"
#include "stream/kept_sound.h"
#include "stream/normalized_sample.h"

#include <algorithm>
#include <cmath>
#include <new>
#include <utility>

namespace zephyra {

namespace {

constexpr const char* kSetting = "EmbedSeconds";
constexpr double kUsualSeconds = 60.0;

bool cameWithProgram(const SampleReference& reference, const std::filesystem::path& resources,
                     FileFacts& files) {
    if (resources.empty() || reference.contentHash.empty()) return false;
    const std::filesystem::path own(reference.path);
    if (own.parent_path() == resources && files.knownHash(own) == reference.contentHash)
        return true;
    return std::ranges::any_of(folderEntries(resources), [&](const std::string& name) {
        if (extensionOf(name) != extensionOf(reference.path)) return false;
        const auto hashed = files.contentHash(resources / name);
        return hashed && hashed.value().hash == reference.contentHash;
    });
}

/// Without the silence that fills up a very short one.
std::uint64_t framesOf(const mokSample& sound, const SampleReference& reference) {
    return reference.frames == 0 ? sound.size : std::min(sound.size, reference.frames);
}

Result<PropertyDictionary> encoded(const mokSample& sound, std::uint64_t frames) {
    try {
        auto kept = keptSound({sound.getPtr(), sound.getPtr() + frames}, double{sound.sampleRate});
        if (!kept ||
            kept.value().at(sound_key::kFlac).as<PropertyData>()->size() <= kMostEmbeddedBytes)
            return kept;
        return Failure{"it has more than " + std::to_string(kMostEmbeddedBytes >> 20) +
                       " MiB even as FLAC"};
    } catch (const std::bad_alloc&) {
        return Failure{"no memory for a copy of the sound; free some"};
    }
}

} // namespace

double embedSeconds(const UserDefaults& defaults) {
    const PropertyValue* const value = defaults.value(kSetting);
    if (!value) return kUsualSeconds;
    if (const auto* const whole = value->as<std::int64_t>())
        return std::max(static_cast<double>(*whole), 0.0);
    const double* const seconds = value->as<double>();
    return seconds && !std::isnan(*seconds) ? std::max(*seconds, 0.0) : kUsualSeconds;
}

void setEmbedSeconds(UserDefaults& defaults, double seconds) {
    if (embedSeconds(defaults) != seconds) defaults.setValue(kSetting, seconds);
}

bool isEmbeddable(const mokSample& sound, double seconds) noexcept {
    return seconds > 0.0 && sound.size <= kMostEmbeddedFrames &&
           // Divided, so that a sound of exactly 0.7 s counts as what the setting's text says.
           static_cast<double>(sound.size) / double{sound.sampleRate} <= seconds;
}

EncodedSample embedSample(const mokSample& sound, const SampleReference& reference,
                          const std::filesystem::path& resources, FileFacts& files) {
    auto embedded = std::make_shared<EmbeddedSample>();
    if (cameWithProgram(reference, resources, files)) return {embedded, {}};
    auto audio = encoded(sound, framesOf(sound, reference));
    if (!audio)
        return {embedded, reference.path + " does not go along with the state: " + audio.message() +
                              "; keep the file"};
    embedded->audio = std::move(audio.value());
    return {embedded, {}};
}

std::shared_ptr<mokSample> embeddedSound(const EmbeddedSample& sample, const std::string& where,
                                         StateFindings& findings) {
    const std::string path = where + "." + sample_key::kAudio;
    const auto refuse = [&findings, &path](std::string problem) {
        findings.push_back({path, std::move(problem), StandIn::nothing});
        return nullptr;
    };
    PropertyReader reader(sample.audio, findings, path, StandIn::usual);
    const std::optional<ReadSound> found = readKeptSound(reader, kMostEmbeddedFrames);
    if (!found) return nullptr;
    const auto frames = static_cast<std::int64_t>(found->frames.size());
    if (found->expectedFrames != frames) {
        reader.complain(sound_key::kFlac,
                        "holds " + std::to_string(frames) +
                            " frames, not as many as \"Frames\" says; the whole sound is needed",
                        StandIn::nothing);
        return nullptr;
    }
    auto sound = std::make_shared<mokSample>();
    if (!sound->allocate(found->frames.size(), static_cast<float>(found->sampleRate)))
        return refuse("no memory for the sound; free some");
    std::ranges::copy(found->frames, sound->getPtr());
    sound->writeGuardPoint();
    if (isPlayable(*sound)) return sound;
    return refuse("cannot be played; a rate above 0 Hz, and samples up to 4294967296 times full "
                  "scale, are needed");
}

} // namespace zephyra

#include "presets/sound_embedding.h"

#include "controls/state_keys.h"
#include "platform/lists/property_reader.h"
#include "platform/text/message_text.h"
#include "stream/embedded_sample.h"
#include "stream/sample_reading.h"

#include <algorithm>
#include <memory>
#include <utility>

namespace zephyra {

namespace {

using namespace sample_key;

SampleReference referenceIn(const PropertyDictionary& sample) {
    PropertyReader reader(sample);
    SampleReference reference;
    reference.path = reader.text(kPath).value_or("");
    reference.relativePath = reader.text(kRelativePath).value_or("");
    reference.contentHash = reader.text(kContentHash).value_or("");
    if (const PropertyDictionary* const audio = reader.dictionary(kAudio))
        reference.embedded = std::make_shared<EmbeddedSample>(EmbeddedSample{*audio, true});
    return reference;
}

/// Whether it goes along already, or names no sound that anybody would play.
bool needsNone(const PropertyDictionary& sample) {
    const SampleReference reference = referenceIn(sample);
    StateFindings damages;
    return reference.path.empty() ||
           (reference.embedded && embeddedSound(*reference.embedded, reference.path, damages));
}

std::size_t bytesOf(const PropertyDictionary& audio) {
    const auto flac = audio.find(sound_key::kFlac);
    const auto* const data = flac == audio.end() ? nullptr : flac->second.as<PropertyData>();
    return data ? data->size() : 0;
}

} // namespace

/// Empty for a sound that every machine has.
Result<PropertyDictionary> SoundEmbedding::audioOf(const PropertyDictionary& sample) {
    const SampleReference reference = referenceIn(sample);
    const auto [loaded, report, playable] =
        readReferencedSample(reference, folders_, files_, [this](double) { return goOn_(); });
    if (!loaded) return Failure{loaded.message()};
    const auto& [sound, found] = loaded.value();
    if (report.isOtherSound)
        return Failure{(report.findings.empty() ? "" : "its copy is damaged, and ") + found.path +
                       " holds another sound now"};
    if (!isEmbeddable(*sound, SoundEmbedding::kMostSeconds))
        return Failure{found.path + " is longer than ten minutes; take the file along"};
    const auto [embedded, problem] = embedSample(*sound, found, folders_.resources, files_);
    if (!problem.empty()) return Failure{problem};
    return embedded->audio;
}

const SoundEmbedding::Made& SoundEmbedding::make(const PropertyDictionary& sample) {
    const auto known = std::ranges::find(made_, sample, &Made::sample);
    if (known != made_.end()) return *known;
    auto audio = needsNone(sample) ? PropertyDictionary() : audioOf(sample);
    Made made{sample, {}, {}};
    if (audio)
        made.audio = std::move(audio.value());
    else
        made.problem = audio.message();
    return made_.emplace_back(std::move(made));
}

void SoundEmbedding::embed(PropertyDictionary& record, const std::string& name) {
    const auto found = record.find(ofStream(state_key::kSample));
    auto* const sample = found == record.end() ? nullptr : found->second.as<PropertyDictionary>();
    if (!sample) return;
    const Made& made = make(*sample);
    const std::string without = inQuotes(name) + " goes without its sound: ";
    if (!made.problem.empty()) return notes_.push_back(without + made.problem);
    if (made.audio.empty()) return;
    if (bytes_ + bytesOf(made.audio) > kMostBytes)
        return notes_.push_back(without + "the bank would be too large; export fewer presets");
    bytes_ += bytesOf(made.audio);
    sample->insert_or_assign(kAudio, made.audio);
}

} // namespace zephyra

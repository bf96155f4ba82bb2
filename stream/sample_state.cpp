#include "stream/sample_state.h"

#include "controls/state_keys.h"
#include "stream/embedded_sample.h"
#include "stream/sample_search.h"

#include <filesystem>
#include <memory>
#include <utility>

namespace zephyra {

namespace {

namespace fs = std::filesystem;
using namespace sample_key;

PropertyDictionary fileState(const SampleReference& reference) {
    return {{kPath, reference.path},
            {kRelativePath, reference.relativePath},
            {kContentHash, reference.contentHash},
            {kSampleRate, reference.sampleRate}};
}

/// What to look for on any machine.
SampleReference movable(SampleReference reference, const Folders& folders) {
    if (reference.relativePath.empty())
        reference.relativePath = pathBelow(reference.path, folders.resources);
    if (!reference.relativePath.empty())
        reference.path = fs::path(reference.relativePath).filename().string();
    return reference;
}

} // namespace

PropertyDictionary sampleState(MOK_SCRUB_GRANULATOR& stream, StateUse use) {
    const SampleReference& reference = stream.sampleReference();
    if (reference.path.empty()) return {};
    PropertyDictionary state = use == StateUse::snapshot
                                   ? fileState(movable(reference, stream.instance().folders))
                                   : fileState(reference);
    state.insert(reference.unknown.begin(), reference.unknown.end());
    if (use == StateUse::edit && reference.embedded && reference.embedded->isOnlyCopy)
        state.insert_or_assign(kAudio, reference.embedded->audio);
    return state;
}

std::optional<SampleReference> readSampleState(PropertyReader& state, const std::string& key) {
    const PropertyDictionary* const dictionary = state.dictionary(key);
    if (!dictionary) return std::nullopt;
    PropertyReader reader(*dictionary, state.findings(), state.path(key), StandIn::usual);
    SampleReference reference;
    reference.path = reader.text(kPath).value_or("");
    reference.relativePath = reader.text(kRelativePath).value_or("");
    reference.contentHash = reader.text(kContentHash).value_or("");
    reference.sampleRate = reader.real(kSampleRate).value_or(0.0);
    if (const PropertyDictionary* const audio = reader.dictionary(kAudio))
        reference.embedded = std::make_shared<EmbeddedSample>(EmbeddedSample{*audio, true});
    reference.unknown = reader.unknown();
    if (!reference.path.empty()) return reference;
    reader.complain(kPath, "empty; the sample's absolute path, or its file name, is needed",
                    StandIn::asBefore);
    return std::nullopt;
}

} // namespace zephyra

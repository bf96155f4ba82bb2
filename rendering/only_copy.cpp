#include "rendering/only_copy.h"

#include "stream/embedded_sample.h"

#include <limits>
#include <memory>
#include <utility>

namespace zephyra {

namespace {

constexpr double kAnyLength = std::numeric_limits<double>::infinity();

/// Empty for a sound that is too long.
PropertyDictionary encoded(const LoadedSample& loaded, FileFacts& files) {
    if (!isEmbeddable(*loaded.sound, kAnyLength)) return {};
    return embedSample(*loaded.sound, loaded.reference, {}, files).embedded->audio;
}

} // namespace

std::string makeOnlyCopy(const RenderRequest& request, const std::filesystem::path& name,
                         LoadedSample& loaded, FileFacts& files) {
    SampleReference& reference = loaded.reference;
    reference.path = inputStem(name);
    reference.relativePath.clear();
    EmbeddedSample copy = {.audio = {}, .isOnlyCopy = true};
    std::string line;
    if (request.host.saveState && !request.savedPreset) {
        copy.audio = encoded(loaded, files);
        line = request.host.saveState->string() +
               (copy.audio.empty()
                    ? " will not find its sound again, which came from " + inputTitle(name) +
                          " and is too long to go along; render from a file instead"
                    : " takes its sound along, which came from " + inputTitle(name));
    }
    reference.embedded = std::make_shared<const EmbeddedSample>(std::move(copy));
    return line;
}

} // namespace zephyra

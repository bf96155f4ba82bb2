// makeOnlyCopy: a sound that came through a pipe, so that states can have it again.
#pragma once

#include "platform/sound/file_facts.h"
#include "rendering/render_request.h"
#include "stream/sample_reading.h"

#include <filesystem>
#include <string>

namespace zephyra {

/// No file holds what came as name: a state that the request saves takes it along, and a preset
/// makes a file of it (keepSoundAsFile). Changes loaded's reference; answers a line for the user
/// about the state, empty where none is saved. MAIN.
std::string makeOnlyCopy(const RenderRequest& request, const std::filesystem::path& name,
                         LoadedSample& loaded, FileFacts& files);

} // namespace zephyra

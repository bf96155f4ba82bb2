// embedSample and embeddedSound: samples that go along with states, and come back from them.
#pragma once

#include "engine/sample_buffer.h"
#include "platform/lists/state_finding.h"
#include "platform/sound/file_facts.h"
#include "platform/user_defaults.h"
#include "stream/sample_reference.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>

namespace zephyra {

class Log;

// What a state may carry, whatever the setting says: it must stay well below what a property list
// may have (PropertyListLimits), and no small file may ask for much memory.
inline constexpr std::uint64_t kMostEmbeddedFrames = std::uint64_t{1} << 25;
inline constexpr std::size_t kMostEmbeddedBytes = std::size_t{32} << 20; ///< of FLAC

/// The setting "EmbedSeconds": sounds up to so many seconds are embedded in session states; 60 when
/// it is not set, 0 for none. MAIN.
double embedSeconds(const UserDefaults& defaults);
/// From now on; also for what is loaded already. MAIN.
void setEmbedSeconds(UserDefaults& defaults, double seconds);

/// Whether a sound is short enough for such a setting. Any thread.
bool isEmbeddable(const mokSample& sound, double seconds) noexcept;

struct EncodedSample {
    std::shared_ptr<const EmbeddedSample> embedded; ///< never null
    std::string problem; ///< one line on why it cannot go along; empty unless that is so
};

/// sound, as it was loaded from the file of reference, encoded for states. Without audio when the
/// file came with the program (the resource folder has its content) or it cannot be encoded. MAIN
/// or WORKER.
EncodedSample embedSample(const mokSample& sound, const SampleReference& reference,
                          const std::filesystem::path& resources, FileFacts& files);

/// The sound again. Null, after a finding, for one that is damaged, is not whole, or cannot be
/// played. where: the path of the dictionary that holds "Audio". MAIN or WORKER.
std::shared_ptr<mokSample> embeddedSound(const EmbeddedSample& sample, const std::string& where,
                                         StateFindings& findings);

} // namespace zephyra

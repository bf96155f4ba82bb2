// embedSample and embeddedSound: samples that go along with states, and come back from them.
#pragma once

#include "engine/sample_buffer.h"
#include "platform/text/result.h"
#include "platform/user_defaults.h"
#include "stream/sample_reference.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>

namespace zephyra {

class Log;

// What a state may carry, whatever the setting says: it must stay well below what a property list
// may have (PropertyListLimits), and no small file may ask for much memory.
inline constexpr std::uint64_t kMostEmbeddedFrames = std::uint64_t{1} << 25;
inline constexpr std::size_t kMostEmbeddedBytes = std::size_t{32} << 20; ///< of FLAC

/// The setting "EmbedSeconds": sounds up to so many seconds are embedded in session states; 60 when
/// it is not set, 0 for none. MAIN.
double embedSeconds(const UserDefaults& defaults);

/// Whether a sound is short enough for such a setting. Any thread.
bool isEmbeddable(const mokSample& sound, double seconds) noexcept;

/// sound, as it was loaded from the file of reference, encoded for states. Without audio when the
/// file came with the program (the resource folder has its content) or, after a line in log, when
/// it cannot be encoded. Never null. MAIN or WORKER.
std::shared_ptr<const EmbeddedSample> embedSample(const mokSample& sound,
                                                  const SampleReference& reference,
                                                  const std::filesystem::path& resources, Log& log);

/// The sound again. Fails with one line that begins with key, the path of the dictionary that holds
/// "Audio", for one that is damaged, is not whole, or cannot be played. MAIN or WORKER.
Result<std::shared_ptr<mokSample>> embeddedSound(const EmbeddedSample& sample,
                                                 const std::string& key);

} // namespace zephyra

// SampleReport: what became of a sound that was asked for, and where it was found.
#pragma once

#include "platform/lists/state_finding.h"

#include <filesystem>
#include <string>
#include <vector>

namespace zephyra {

/// By which road a sound was found, in the order in which they are tried.
enum class SampleRoad {
    none,         ///< by none
    path,         ///< where the path says
    relativePath, ///< below the shared folder, in the folder that it was in
    builtIn,      ///< among the sounds that came with the program, by its relative path or name
    name,         ///< at the top of the shared folder, by its file name
    content,      ///< in the shared folder, under another name
    embedded,     ///< as the copy that the state holds
};

enum class SampleEnd {
    none,       ///< no sound was asked for
    loading,    ///< it is still being read
    taken,      ///< the stream has it
    missing,    ///< it was not found, or cannot be played: what played before goes on
    superseded, ///< another one was asked for meanwhile
};

/// Plain data.
struct SampleReport {
    std::filesystem::path asked = {}; ///< as a state, or the user, names it
    SampleEnd end = SampleEnd::none;
    SampleRoad road = SampleRoad::none;
    std::filesystem::path file =
        {};                    ///< that was found, though it may not be what plays; empty for none
    bool isOtherSound = false; ///< the file holds another sound than the state was made with
    std::string problem = {};  ///< what is missing, and what would be right; empty unless it is
    StateFindings findings = {};  ///< about the copy that the state holds
    std::string notEmbedded = {}; ///< why states cannot take the sound along; empty where they can
};

/// "FILE holds another sound than the state was made with, and is played all the same"; empty
/// where it is the sound. Any thread.
std::string otherSoundLine(const SampleReport& report);

/// What is worth a line in the log, but for the problem, which is shown to the user. Any thread.
std::vector<std::string> linesOf(const SampleReport& report);

} // namespace zephyra

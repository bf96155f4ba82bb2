// MotionOptions: what moves the controls of a render by itself, as asked for on the command line.
#pragma once

#include "cli/options/learn_option.h"
#include "cli/options/lfo_option.h"
#include "platform/text/result.h"

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace zephyra {

/// The options as they were typed.
struct TypedMotionOptions {
    std::vector<std::string> lfos, learned;
    std::optional<std::string> scrub, recordScrub;
};

struct MotionOptions {
    std::vector<LfoOption> lfos = {};      ///< at most one a control
    std::vector<LearnOption> learned = {}; ///< of controls without an LFO
    std::optional<std::filesystem::path> scrub = {}, recordScrub = {};

    bool hasLfo(ControlId control) const;
    /// Whether an LFO follows the host's tempo.
    bool followsTempo() const;
};

/// Declares the options on command; typed must outlive it.
void declareMotionOptions(CLI::App& command, TypedMotionOptions& typed);

/// Checks every value; hasMidi tells whether there is a file for learned controllers. A failure is
/// a wrong usage that names the option.
Result<MotionOptions> checkMotionOptions(const TypedMotionOptions& typed, bool hasMidi);

} // namespace zephyra

// RestoreReport: what became of a state that was restored.
#pragma once

#include "library/quick_presets_manager.h"
#include "platform/lists/state_finding.h"
#include "stream/sample_report.h"

#include <optional>
#include <string>
#include <vector>

namespace zephyra {

/// Plain data.
struct RestoreReport {
    StateFindings findings; ///< what could not be taken
    SampleReport sample;    ///< the sound that the state names; loading until that has ended
    /// What is there of the preset that a session had selected; nothing for what is no session.
    std::optional<QuickPresetsManager::Shown> selection;
};

/// What is worth a line in the log; the sample's once it has ended. Any thread.
std::vector<std::string> linesOf(const RestoreReport& report);

} // namespace zephyra

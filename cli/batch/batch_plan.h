// BatchJob: one render of many.
#pragma once

#include "cli/options/render_options.h"
#include "cli/render/render_job.h"
#include "platform/text/result.h"

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace zephyra {

/// A render on its way from the options to its end. Plain data.
struct BatchJob {
    std::string name;                     ///< of its files, without folder and extension
    std::filesystem::path input;          ///< empty: the preset's sample
    std::optional<PresetChoice> preset;   ///< none: as a new instance stands
    std::optional<RenderRequest> request; ///< none where the options are wrong for it
    RenderEnd end;                        ///< failed already where there is no request
    std::string cell = {};                ///< its picture on the contact sheet, the bytes of a PNG
};

inline constexpr const char* kContactSheet = "contact-sheet"; // .png

/// A job for every INPUT and every preset, in that order, all with one seed; neither replaces a
/// file that another reads. Fails with what holds for all of them; code then tells how to end.
/// MAIN.
Result<std::vector<BatchJob>> planBatch(const RenderOptions& options, const Folders& folders,
                                        const KnownFiles& known, ExitCode& code);

/// For an --out-dir that cannot be made. Any thread.
Failure noOutFolder(const std::filesystem::path& folder, const std::string& why);

/// What all of jobs ended with, where all failed for the same reason; null else. Any
/// thread.
const RenderEnd* commonFailure(const std::vector<BatchJob>& jobs);

} // namespace zephyra

// SampleImportRequest: the command `zephyra samples`.
#pragma once

#include "cli/exit_code.h"

#include <optional>
#include <string>
#include <vector>

namespace zephyra {

enum class SamplesForm { text, json };

/// Prints the built-in samples and those of the shared folder, with length and rate where their
/// headers tell. MAIN.
ExitCode runSamples(SamplesForm form);

/// `zephyra samples import`.
struct SampleImportRequest {
    std::vector<std::string> files;
    std::optional<std::string> name; ///< of the copy, with or without the file's extension
    bool yes = false;                ///< a sample of that name is replaced
};

/// Copies sound files into the shared folder. MAIN.
ExitCode runSampleImport(const SampleImportRequest& request);

} // namespace zephyra

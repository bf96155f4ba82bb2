// LibraryCommands: the commands about banks, presets, samples and folders on the command line.
#pragma once

#include "cli/commands/banks_command.h"
#include "cli/commands/check_command.h"
#include "cli/commands/preset_changes.h"
#include "cli/commands/preset_export.h"
#include "cli/commands/preset_import.h"
#include "cli/commands/preset_show.h"
#include "cli/commands/samples_command.h"
#include "cli/commands/where_command.h"
#include "cli/exit_code.h"

#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace zephyra {

/// Declared once; must live as long as the command line. MAIN.
class LibraryCommands {
public:
    explicit LibraryCommands(CLI::App& app);
    LibraryCommands(const LibraryCommands&) = delete;
    LibraryCommands& operator=(const LibraryCommands&) = delete;

    /// Runs the one that was chosen, which must be one of these.
    ExitCode run() const;

private:
    void declareBanks(CLI::App& app);
    void declarePreset(CLI::App& app);
    void declarePresetFiles(CLI::App& preset);
    void declarePresetChanges(CLI::App& preset);
    void declareSamples(CLI::App& app);
    ExitCode runPreset() const;
    ExitCode rename() const;

    CLI::App *banks_, *samples_, *import_, *where_, *check_;
    CLI::App *show_, *export_, *importPresets_, *rename_, *delete_, *copy_, *move_;
    BanksRequest banksRequest_;
    PresetShowRequest showRequest_;
    PresetExportRequest exportRequest_;
    PresetImportRequest importRequest_;
    std::vector<std::string> renameNames_; ///< BANK NEW or BANK PRESET NEW
    DeleteRequest deleteRequest_;
    CopyRequest copyRequest_;
    MoveRequest moveRequest_;
    SampleImportRequest sampleRequest_;
    CheckRequest checkRequest_;
    bool samplesJson_ = false, whereJson_ = false;
};

} // namespace zephyra

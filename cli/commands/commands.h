// InfoRequest and its kin: every command of the program, and what each is asked to do.
#pragma once

#include "cli/commands/command_context.h"
#include "cli/options/render_options.h"
#include "cli/terminal/exit_code.h"

#include <optional>
#include <string>
#include <vector>

namespace zephyra {

// A json asks for output for scripts. Banks and presets are named as preset_names.h says. Each run
// tells on standard error, in one line, why it ends otherwise than well. MAIN.

/// `zephyra render`: reads the source, renders it, writes the files, and reports; with --out-dir
/// many.
ExitCode runRender(const CommandContext& context, const RenderOptions& options);

/// `zephyra info`: format, channels, rate, length, peak, loudness and offset of a sound file.
struct InfoRequest {
    std::string file;
    bool json = false;
};
ExitCode runInfo(const CommandContext& context, const InfoRequest& request);

/// `zephyra envelopes`: the menu of grain envelopes, drawn where a picture is named.
struct EnvelopesRequest {
    std::optional<std::string> picture;
};
ExitCode runEnvelopes(const CommandContext& context, const EnvelopesRequest& request);

/// `zephyra parameters`: address, name, identifier, range, unit, flags and default of each.
struct ParametersRequest {
    bool json = false;
};
ExitCode runParameters(const CommandContext& context, const ParametersRequest& request);

/// `zephyra banks`: what stands in the folders in use; a bank that cannot be read is among them.
/// Fails when it is the one that was asked for.
struct BanksRequest {
    std::optional<std::string> bank;   ///< its presets are listed instead of the banks
    std::optional<std::string> search; ///< only what has this text in its name
    bool json = false;
};
ExitCode runBanks(const CommandContext& context, const BanksRequest& request);

/// `zephyra preset show`: every value, controls as people read them, the rest key by key.
struct PresetShowRequest {
    std::string bank, preset;
    bool json = false;
};
ExitCode runPresetShow(const CommandContext& context, const PresetShowRequest& request);

/// `zephyra preset export`: a bank that can go to another machine. What its presets play goes
/// along, unless it comes with the program or is too long.
struct PresetExportRequest {
    std::string bank;
    std::optional<std::string> preset; ///< nothing: all of the bank
    std::optional<std::string> output; ///< nothing: named after preset or bank, in this folder
    bool yes = false;                  ///< a file of that name is replaced
};
ExitCode runPresetExport(const CommandContext& context, const PresetExportRequest& request);

/// `zephyra preset import`: banks from files, one after another; those after one that cannot be
/// imported are imported all the same.
struct PresetImportRequest {
    std::vector<std::string> files;
    std::optional<std::string> bank; ///< gets the presets; nothing: each file becomes a bank
    std::optional<std::string> name; ///< of the new bank, instead of the file's
    bool yes = false;                ///< a bank of that name is replaced, or a factory's copied
};
ExitCode runPresetImport(const CommandContext& context, const PresetImportRequest& request);

/// `zephyra preset rename`.
struct RenameRequest {
    std::string bank;
    std::optional<std::string> preset; ///< nothing: the bank itself
    std::string name;                  ///< the new one
    bool yes = false;                  ///< it may be that of a factory bank
};
ExitCode runPresetRename(const CommandContext& context, const RenameRequest& request);

/// `zephyra preset delete`.
struct DeleteRequest {
    std::string bank;
    std::optional<std::string> preset; ///< nothing: the bank itself
    bool yes = false;                  ///< else it is only told what would be deleted
};
ExitCode runPresetDelete(const CommandContext& context, const DeleteRequest& request);

/// `zephyra preset copy`.
struct CopyRequest {
    std::string bank, preset;
    std::string target; ///< a bank, made when missing
    bool yes = false;   ///< it may be the factory's, of which it is a copy then
};
ExitCode runPresetCopy(const CommandContext& context, const CopyRequest& request);

/// `zephyra preset move`: to a place of the list, or to another bank.
struct MoveRequest {
    std::string bank, preset;
    std::optional<std::string> position, target;
    bool yes = false; ///< as in CopyRequest
};
ExitCode runPresetMove(const CommandContext& context, const MoveRequest& request);

/// `zephyra samples`: the built-in ones and those of the shared folder, with length and rate where
/// their headers tell.
struct SamplesRequest {
    bool json = false;
};
ExitCode runSamples(const CommandContext& context, const SamplesRequest& request);

/// `zephyra samples import`: copies sound files into the shared folder, those after one that cannot
/// be copied as well.
struct SampleImportRequest {
    std::vector<std::string> files;  ///< a folder stands for the sound files in it
    std::optional<std::string> name; ///< of the copy, with or without the file's extension
    bool yes = false;                ///< a sample of that name is replaced
};
ExitCode runSampleImport(const CommandContext& context, const SampleImportRequest& request);

/// `zephyra where`: the folders in use, why these, and whether they exist.
struct WhereRequest {
    bool json = false;
};
ExitCode runWhere(const CommandContext& context, const WhereRequest& request);

/// `zephyra check`: what is wrong with a bank's file, at which key. A bank with faults is a failure
/// unless a mended copy was asked for and stands there now.
struct CheckRequest {
    std::string file;
    bool repair = false; ///< a mended copy is written beside it
    bool json = false;
};
ExitCode runCheck(const CommandContext& context, const CheckRequest& request);

} // namespace zephyra

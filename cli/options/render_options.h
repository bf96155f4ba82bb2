// RenderOptions: what `zephyra render` was asked to do.
#pragma once

#include "cli/options/option_reader.h"
#include "cli/options/typed_options.h"
#include "rendering/render_request.h"

#include <filesystem>
#include <optional>
#include <vector>

namespace CLI {
class App;
}

namespace zephyra {

struct RenderOptions {
    std::vector<std::filesystem::path> inputs;
    RenderRequest request = {}; ///< of every render, still without its input, preset and own names
    std::optional<NamedPreset> played = {};
    std::optional<std::filesystem::path> outDir = {}; ///< many renders
    bool quiet = false, json = false;
    bool dryRun = false;     ///< nothing is rendered, and the command lines are printed
    TypedCommand typed = {}; ///< what they are made of
};

/// Declares the options of `render` on command, which reader is of. MAIN.
void declareRenderOptions(CLI::App& command, OptionReader& reader, RenderOptions& options);

/// Parts of it.
void declareOutputOptions(OptionReader& reader, RenderRequest& request);
void declareTempo(OptionReader& reader, HostRequest& host);
void declareLiveOptions(OptionReader& reader, RenderRequest& request);
void declareFades(OptionReader& reader, HostRequest& host);
void declareHostOptions(OptionReader& reader, HostRequest& host);
void declareMotionOptions(OptionReader& reader, RenderRequest& request);
void declarePresetOptions(OptionReader& reader, RenderOptions& options);

/// The type from --raw or --type, else from OUT's extension, else WAV. MAIN.
Complaint settleOutput(const OptionReader& reader, RenderRequest& request);

/// Whether the options go with the input and preset of this one render, whose names are complete.
/// A failure is a wrong usage. MAIN.
Complaint checkRequest(const RenderRequest& request, const Folders& folders);

} // namespace zephyra

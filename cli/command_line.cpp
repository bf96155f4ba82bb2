#include "cli/command_line.h"

#include "audiounit/control_text.h"
#include "cli/command_folders.h"
#include "cli/commands/envelopes_command.h"
#include "cli/commands/info_command.h"
#include "cli/commands/library_commands.h"
#include "cli/commands/parameters_command.h"
#include "cli/commands/render_command.h"
#include "cli/help_text.h"
#include "cli/usage_complaint.h"
#include "platform/text/text_numbers.h"

#include <CLI/CLI.hpp>
#include <memory>
#include <new>
#include <optional>
#include <string>

namespace zephyra {

namespace {

constexpr const char* kSeeHelp = "; see zephyra --help";

constexpr const char* kExamples =
    "Examples:\n"
    "  zephyra render bird.wav\n"
    "  zephyra render bird.wav -o cloud.wav --seconds 30 --set Density=120 --set \"Rnd Pitch=7\" "
    "\\\n"
    "          --picture cloud.png --seed 7\n"
    "  zephyra render bird.wav --set Scanning=0.1 --at 4:Pitch=-12 --at \"8:Echo Switch=on\"\n"
    "  zephyra render voice.m4a --live --set Length=80 --envelope Gaussian -o haze.caf\n"
    "  zephyra render loop.wav --tempo 96 --scan-sync 2,4 --echo-sync 1/8,1/8D --midi line.mid\n"
    "  zephyra render drums.wav --as effect --drywet 70 --automate moves.csv -o moved.wav\n"
    "  zephyra render bird.wav --tempo 96 --lfo Density:hz=0.1 --lfo Pan:shape=v,link=1/4\n"
    "  zephyra render bird.wav --midi hands.mid --learn cc:1=Density,min=0.1,max=0.6\n"
    "  zephyra banks --search owl\n"
    "  zephyra render --bank \"Bird Machines\" --preset \"Night Owl\" --seconds 20 -o owl.wav\n";

/// The default without its unit, which the range tells.
std::string plainValueText(const ControlRange& range) {
    return range.kind == ControlKind::continuous || range.kind == ControlKind::whole
               ? formatNumber(range.defaultValue)
               : valueText(range, range.defaultValue);
}

/// The controls with their ranges and defaults, as a table.
std::string controlTable() {
    std::string table =
        "Controls for --set and --at (case, spaces and punctuation do not matter):\n";
    for (const ControlId id : settableControls()) {
        const ControlRange& range = controlRange(id);
        table += "  " + padded(range.name, 28) + padded(rangeText(range), 24) +
                 plainValueText(range) + "\n";
    }
    return table;
}

/// The commands and what was typed after them.
struct CommandLine {
    CommandLine();

    CLI::App app{"Cuts a sound into short overlapping grains and writes what they add up to."};
    CLI::App* render;
    CLI::App* info;
    CLI::App* envelopes;
    CLI::App* parameters;
    TypedRenderOptions renderOptions;
    std::string infoFile;
    bool infoJson = false, parametersJson = false;
    std::optional<std::string> envelopePicture, sharedFolder;
    std::optional<LibraryCommands> library;

private:
    void offerSharedFolder(CLI::App& command);
};

CommandLine::CommandLine() {
    app.formatter(std::make_shared<HelpText>());
    app.name("zephyra");
    app.set_version_flag("--version", "zephyra " ZEPHYRA_VERSION);
    app.footer(kExamples);
    app.require_subcommand(1);

    render = app.add_subcommand("render", "Render a sound file to a granular stereo file");
    declareRenderOptions(*render, renderOptions);
    render->footer(controlTable() + "\n" + kExamples);

    info = app.add_subcommand("info", "Print format, channels, rate, length, peak and loudness");
    info->add_option("FILE", infoFile, "A sound file")->required()->option_text(" ");
    info->add_flag("--json", infoJson, "Print it as JSON");
    info->footer("Example:\n  zephyra info bird.wav\n");

    envelopes = app.add_subcommand("envelopes", "Print the menu of grain envelopes");
    envelopes->add_option("--picture", envelopePicture, "Draw them")->option_text("OUT.png");
    envelopes->footer("Example:\n  zephyra envelopes --picture envelopes.png\n");

    parameters = app.add_subcommand("parameters", "Print the parameters that a host sees");
    parameters->add_flag("--json", parametersJson, "Print them as JSON");
    parameters->footer(
        "Their names and identifiers stand in a file for `zephyra render --automate`.\n");

    library.emplace(app);
    offerSharedFolder(app);
}

/// Before and after the command's name alike.
void CommandLine::offerSharedFolder(CLI::App& command) {
    command.add_option("--shared-folder", sharedFolder, "Keep banks and samples there")
        ->option_text("DIR")
        ->expected(1);
    for (CLI::App* inner : command.get_subcommands([](const CLI::App*) { return true; }))
        offerSharedFolder(*inner);
}

ExitCode wrongUsage(const std::string& complaint) {
    return endWith(ExitCode::wrongUsage, complaint + kSeeHelp);
}

/// Complains about a first word that is no command; CLI11 would take it for a surplus argument.
std::optional<ExitCode> unknownCommand(const CLI::App& app, int count,
                                       const char* const* arguments) {
    if (count < 2 || arguments[1][0] == '-') return std::nullopt;
    const auto isCalledSo = [&](const CLI::App* one) { return one->get_name() == arguments[1]; };
    if (!app.get_subcommands(isCalledSo).empty()) return std::nullopt;
    return wrongUsage(noSuchCommand(app, arguments[1]));
}

ExitCode runChosen(const CommandLine& line) {
    if (line.sharedFolder && line.sharedFolder->empty())
        return endWith(ExitCode::wrongUsage, "--shared-folder takes a folder's name, not \"\"");
    setCommandSharedFolder(line.sharedFolder.value_or(""));
    if (line.render->parsed()) return runRender(line.renderOptions);
    if (line.info->parsed() && line.infoFile.empty())
        return endWith(ExitCode::wrongUsage, "FILE is empty; name a sound file");
    if (line.info->parsed())
        return runInfo(line.infoFile, line.infoJson ? InfoForm::json : InfoForm::text);
    if (line.parameters->parsed())
        return runParameters(line.parametersJson ? ParametersForm::json : ParametersForm::text);
    if (line.envelopes->parsed()) return runEnvelopes(line.envelopePicture);
    return line.library->run();
}

} // namespace

ExitCode runCommandLine(int count, const char* const* arguments) {
    CommandLine line;
    if (const auto ended = unknownCommand(line.app, count, arguments)) return *ended;
    try {
        line.app.parse(count, arguments);
    } catch (const CLI::Success& wanted) { // help or version
        line.app.exit(wanted);
        return printOut("");
    } catch (const CLI::ParseError& error) {
        return wrongUsage(usageComplaint(line.app, error));
    }
    try {
        return runChosen(line);
    } catch (const std::bad_alloc&) {
        return endWith(ExitCode::failure, "memory is short; free some or take a shorter sound");
    }
}

} // namespace zephyra

#include "cli/command_line.h"

#include "cli/control_names.h"
#include "cli/envelopes_command.h"
#include "cli/help_text.h"
#include "cli/info_command.h"
#include "cli/nearest_name.h"
#include "cli/parameters_command.h"
#include "cli/render_command.h"
#include "cli/text_numbers.h"

#include <CLI/CLI.hpp>
#include <array>
#include <memory>
#include <new>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zephyra {

namespace {

constexpr std::array<std::string_view, 4> kCommands = {"render", "info", "envelopes", "parameters"};
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
    "  zephyra render bird.wav --midi hands.mid --learn cc:1=Density,min=0.1,max=0.6\n";

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

/// The three commands and what was typed after them.
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
    std::optional<std::string> envelopePicture;
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
}

std::string firstLine(const std::string& text) {
    return text.substr(0, text.find('\n'));
}

/// What an argument that command does not know was probably meant to be.
std::string unexpected(const CLI::App& command, const std::string& argument) {
    const std::string quoted = inQuotes(argument);
    if (!argument.empty() && argument[0] == '-') {
        std::vector<std::string> names;
        for (const CLI::Option* option : command.get_options())
            if (!option->get_lnames().empty()) names.push_back("--" + option->get_lnames()[0]);
        const std::vector<std::string_view> views(names.begin(), names.end());
        return "there is no option " + quoted + "; the nearest is " +
               std::string(nearestName(argument.substr(0, argument.find('=')), views));
    }
    const std::size_t sign = argument.find('=');
    if (command.get_option_no_throw("--set") && sign != std::string::npos)
        return quoted + " stands alone; write " +
               (argument.find(':') < sign ? "--lfo, --learn or --at before it"
                                          : "--set before each NAME=VALUE");
    if (command.get_name() == "envelopes" || command.get_name() == "parameters")
        return command.get_name() + " takes no " + quoted + ", only options";
    return quoted + " is one file too many; one is taken at a time";
}

/// What is missing, where nothing is too much.
std::string missing(const CLI::App& command) {
    if (command.get_name() == "zephyra")
        return "a command is missing: render, info, envelopes or parameters";
    return command.get_name() + " needs the name of a sound file";
}

/// The one line for what CLI11 reports in its own words.
std::string complaint(CommandLine& line, const CLI::ParseError& error) {
    const std::vector<CLI::App*> chosen = line.app.get_subcommands();
    const CLI::App& command = chosen.empty() ? line.app : *chosen[0];
    const std::vector<std::string> extras = line.app.remaining(true);
    if (!extras.empty()) return unexpected(command, extras[0]);
    if (dynamic_cast<const CLI::RequiredError*>(&error)) return missing(command);
    if (dynamic_cast<const CLI::ArgumentMismatch*>(&error)) {
        // "--name: ..." says that a value is missing, or that there is more than one.
        const std::string text = error.what();
        const std::string option = text.substr(0, text.find(':'));
        if (text.find("missing") != std::string::npos) return option + " needs a value";
        if (text.find("received") != std::string::npos) return option + " can only be given once";
    }
    return firstLine(error.what());
}

ExitCode wrongUsage(CommandLine& line, const CLI::ParseError& error) {
    return endWith(ExitCode::wrongUsage, complaint(line, error) + kSeeHelp);
}

/// Complains about a first word that is no command; CLI11 would take it for a surplus argument.
std::optional<ExitCode> unknownCommand(int count, const char* const* arguments) {
    if (count < 2 || arguments[1][0] == '-') return std::nullopt;
    const std::string_view word = arguments[1];
    if (std::find(kCommands.begin(), kCommands.end(), word) != kCommands.end()) return std::nullopt;
    return endWith(ExitCode::wrongUsage, "there is no command " + inQuotes(word) +
                                             "; the nearest is " +
                                             std::string(nearestName(word, kCommands)) + kSeeHelp);
}

ExitCode runChosen(const CommandLine& line) {
    if (line.render->parsed()) return runRender(line.renderOptions);
    if (line.info->parsed() && line.infoFile.empty())
        return endWith(ExitCode::wrongUsage, "FILE is empty; name a sound file");
    if (line.info->parsed())
        return runInfo(line.infoFile, line.infoJson ? InfoForm::json : InfoForm::text);
    if (line.parameters->parsed())
        return runParameters(line.parametersJson ? ParametersForm::json : ParametersForm::text);
    return runEnvelopes(line.envelopePicture);
}

} // namespace

ExitCode runCommandLine(int count, const char* const* arguments) {
    if (const auto ended = unknownCommand(count, arguments)) return *ended;
    CommandLine line;
    try {
        line.app.parse(count, arguments);
    } catch (const CLI::Success& wanted) { // help or version
        line.app.exit(wanted);
        return printOut("");
    } catch (const CLI::ParseError& error) {
        return wrongUsage(line, error);
    }
    try {
        return runChosen(line);
    } catch (const std::bad_alloc&) {
        return endWith(ExitCode::failure, "memory is short; free some or take a shorter sound");
    }
}

} // namespace zephyra

#include "cli/command_line.h"

#include "cli/command_table.h"
#include "cli/terminal/usage_text.h"

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

/// The program's arguments, as they are parsed.
struct CommandLine {
    CommandLine();

    CLI::App app{"Cuts a sound into short overlapping grains and writes what they add up to."};
    std::optional<CommandTable> commands;
    std::optional<std::string> sharedFolder;

private:
    void offerSharedFolder(CLI::App& command);
};

CommandLine::CommandLine() {
    app.formatter(std::make_shared<HelpText>());
    app.name("zephyra");
    app.set_version_flag("--version", "zephyra " ZEPHYRA_VERSION);
    app.footer(kExamples);
    app.require_subcommand(1);
    commands.emplace(app);
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
    return line.commands->run(commandContext(line.sharedFolder.value_or("")));
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

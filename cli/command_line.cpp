#include "cli/command_line.h"

#include "cli/arguments.h"
#include "cli/command_table.h"
#include "cli/options/option_slips.h"
#include "cli/terminal/usage_text.h"
#include "platform/text/message_text.h"
#include "platform/text/text_numbers.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <filesystem>
#include <iterator>
#include <memory>
#include <new>
#include <optional>
#include <string>
#include <system_error>
#include <vector>

namespace zephyra {

namespace {

constexpr const char* kExamples =
    "`zephyra bird.wav` is `zephyra render bird.wav`, and `zephyra help render` tells\n"
    "all about it; `zephyra help` and another command's name tells about that one.\n\n"
    "Examples:\n"
    "  zephyra bird.wav\n"
    "  zephyra bird.wav -o cloud.wav --seconds 30 --set Density=120 --set Pitch=-5\n"
    "  zephyra bird.wav -o haze.wav --live --picture haze.png\n"
    "  zephyra banks --search owl\n"
    "  zephyra --bank \"Bird Machines\" --preset \"Night Owl\" --seconds 20 -o owl.wav\n";

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
    app.set_help_flag("-h,--help", "Print this help");
    app.name("zephyra");
    app.set_version_flag("--version", "zephyra " ZEPHYRA_VERSION, "Print the version");
    app.footer(kExamples);
    app.require_subcommand(1);
    commands.emplace(app);
    offerSharedFolder(app);
    app.get_subcommand("render")->get_option("--shared-folder")->group("Presets and states");
}

/// Before and after the command's name alike.
void CommandLine::offerSharedFolder(CLI::App& command) {
    command.add_option("--shared-folder", sharedFolder, "Keep banks and samples there")
        ->option_text("DIR")
        ->expected(1);
    for (CLI::App* inner : command.get_subcommands([](const CLI::App*) { return true; }))
        offerSharedFolder(*inner);
}

using Words = std::vector<std::string>;

/// The innermost command that words begin with, and how it is called.
struct Called {
    const CLI::App* command;
    std::string name;  ///< "preset export"; empty for the program
    std::size_t words; ///< of it
};

Called calledBy(const CLI::App& app, const Words& words) {
    Called called{&app, "", 0};
    for (const std::string& word : words) {
        const auto inner = called.command->get_subcommands(
            [&word](const CLI::App* one) { return one->get_name() == word; });
        if (inner.empty()) break;
        called = {inner.front(), called.name + (called.words ? " " : "") + word, called.words + 1};
    }
    return called;
}

ExitCode wrongUsage(const std::string& complaint, const Called& called) {
    const std::string command = called.name.empty() ? "" : " " + called.name;
    return endWith(ExitCode::wrongUsage, complaint + "; see zephyra help" + command);
}

bool isNotHelp(const std::string& word) {
    return word != "help" && word != "-h" && word != "--help";
}

/// words: what stood behind "help".
ExitCode printHelp(const CLI::App& app, const Words& words) {
    const Called called = calledBy(app, words);
    const CLI::App& command = *called.command;
    if (called.words < words.size()) {
        const std::string& next = words[called.words];
        if (const auto* help = dynamic_cast<SectionHelp*>(command.get_formatter().get())) {
            const std::string section = help->section(command, next);
            if (!section.empty()) return printOut(section.substr(1)); // without the empty line
            return wrongUsage("there is no section " + inQuotes(next) + " of the help; there are " +
                                  spokenList(help->sections(command)),
                              called);
        }
        if (!command.get_subcommands({}).empty() || &command == &app)
            return wrongUsage(noSuchCommand(command, next), called);
    }
    const std::string before = called.name.substr(0, called.name.rfind(' '));
    return printOut(command.help(called.words == 0   ? ""
                                 : called.words == 1 ? "zephyra"
                                                     : "zephyra " + before));
}

/// What stood behind an option that there is not, if that may be its value.
std::string valueBehind(const std::string& option, const Words& words) {
    if (const std::size_t sign = option.find('='); sign != std::string::npos)
        return option.substr(sign + 1);
    const auto word = std::ranges::find(words, option);
    if (word == words.end() || std::next(word) == words.end()) return "";
    const std::string& next = *std::next(word);
    return next.starts_with('-') && !parseNumber(next) ? "" : next;
}

/// What words say in another form than ours, if that is known.
std::optional<std::string> nearMiss(const Words& words, const Called& called) {
    for (const std::string& word : words) {
        std::error_code ignored;
        if (word == "--") break;
        if (word.starts_with('-') && std::filesystem::exists(word, ignored))
            return inQuotes(word) + " begins like an option; write -- before it, or ./" + word;
    }
    return called.name == "render" ? rightForm(words, *called.command) : std::nullopt;
}

/// For a command line that the parser refused.
ExitCode refused(const CLI::App& app, const CLI::ParseError& error, const Words& words) {
    const Called called = calledBy(app, words);
    if (const auto right = nearMiss(words, called)) return wrongUsage(*right, called);
    const std::vector<std::string> extras = app.remaining(true);
    if (called.name == "render" && !extras.empty()) {
        const std::string option = extras[0].substr(0, extras[0].find('='));
        if (const auto right = rightOption(option, valueBehind(extras[0], words), *called.command))
            return wrongUsage(*right, called);
    }
    return wrongUsage(usageComplaint(app, error), called);
}

ExitCode runChosen(const CommandLine& line, const std::string& program) {
    if (line.sharedFolder && line.sharedFolder->empty())
        return endWith(ExitCode::wrongUsage, "--shared-folder takes a folder's name, not \"\"");
    return line.commands->run(commandContext(program, line.sharedFolder.value_or("")));
}

} // namespace

ExitCode runCommandLine(int count, const char* const* arguments) {
    CommandLine line;
    const Words words = completeArguments(Words(arguments + 1, arguments + count), line.app);
    if (words.empty()) {
        std::fputs(line.app.help().c_str(), stderr); // a script that forgot them shall see it fail
        return ExitCode::wrongUsage;
    }
    if (words[0] == "help")
        return printHelp(line.app, {std::ranges::find_if(words, isNotHelp), words.end()});
    const Called called = calledBy(line.app, words);
    if (called.words == 0 && !words[0].starts_with('-')) // the parser would call it a surplus word
        return wrongUsage(noSuchCommand(line.app, words[0]), called);
    try {
        line.app.parse(Words(words.rbegin(), words.rend()));
    } catch (const CLI::Success& wanted) { // help or version
        line.app.exit(wanted);
        return printOut("");
    } catch (const CLI::ParseError& error) {
        return refused(line.app, error, words);
    }
    if (const Complaint wrong = line.commands->complaint())
        return endWith(ExitCode::wrongUsage, nearMiss(words, called).value_or(wrong->message));
    try {
        return runChosen(line, count > 0 ? arguments[0] : "zephyra");
    } catch (const std::bad_alloc&) {
        return endWith(ExitCode::failure, "memory is short; free some or take a shorter sound");
    }
}

} // namespace zephyra

#include "cli/command_line.h"

#include "cli/arguments.h"
#include "cli/help_topic.h"
#include "cli/options/option_slips.h"
#include "cli/program_options.h"
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
        const auto* const help = dynamic_cast<SectionHelp*>(command.get_formatter().get());
        std::string topic = next; // "help Rnd Pitch"
        for (std::size_t i = called.words + 1; i < words.size(); ++i) topic += " " + words[i];
        if (help || &command == &app)
            if (const std::string text = helpOnTopic(*app.get_subcommand("render"), topic);
                !text.empty())
                return printOut(text);
        if (help)
            return wrongUsage("there is no section " + inQuotes(topic) +
                                  " of the help, no option and no control; there are " +
                                  spokenList(help->sections(command)),
                              called);
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
    const bool isNumber = next.find_first_of("0123456789.") == 1; // "-7", and "-3dB"
    return next.starts_with('-') && !isNumber ? "" : next;
}

/// For a file's name with blanks that the shell took apart.
std::optional<std::string> brokenName(const Words& words) {
    constexpr std::size_t kMostWords =
        20; // of a name; a pattern may have become thousands of words
    for (std::size_t i = 0; i < words.size(); ++i) {
        std::string name = words[i];
        const std::size_t end = std::min(words.size(), i + kMostWords);
        for (std::size_t j = i + 1; j < end && !words[j].starts_with('-'); ++j) {
            std::error_code ignored;
            if (std::filesystem::exists(name += " " + words[j], ignored))
                return inQuotes(name) + " is one name; put it between quotes";
        }
    }
    return std::nullopt;
}

/// What words say in another form than ours, if that is known.
std::optional<std::string> nearMiss(const Words& words, const Called& called) {
    if (auto name = brokenName(words)) return name;
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

ExitCode runChosen(const ProgramOptions& line, const std::string& program) {
    if (line.sharedFolder && line.sharedFolder->empty())
        return endWith(ExitCode::wrongUsage, "--shared-folder takes a folder's name, not \"\"");
    return line.commands->run(commandContext(program, line.sharedFolder.value_or("")));
}

} // namespace

ExitCode runCommandLine(int count, const char* const* arguments) {
    ProgramOptions line;
    const Words words = completeArguments(Words(arguments + 1, arguments + count), line.app);
    if (words.empty()) {
        std::fputs(line.app.help().c_str(), stderr); // a script that forgot them shall see it fail
        return ExitCode::wrongUsage;
    }
    if (words[0] == "help")
        return printHelp(line.app, {std::ranges::find_if(words, isNotHelp), words.end()});
    const Called called = calledBy(line.app, words);
    if (called.words == 0 && !words[0].starts_with('-')) // the parser would call it a surplus word
        return wrongUsage(brokenName(words).value_or(noSuchCommand(line.app, words[0])), called);
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

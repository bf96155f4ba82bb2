#include "cli/terminal/usage_text.h"

#include "cli/terminal/command_slips.h"
#include "platform/text/message_text.h"
#include "platform/text/names.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <vector>

namespace zephyra {

namespace {

constexpr std::size_t kColumns = 80;

/// Line ends instead of the blanks after which a word would reach beyond width.
std::string wrapped(std::string text, std::size_t width) {
    std::size_t start = 0;
    while (text.size() - start > width) {
        const std::size_t blank = text.rfind(' ', start + width);
        if (blank == std::string::npos || blank <= start) break; // one long word
        text[blank] = '\n';
        start = blank + 1;
    }
    return text;
}

using Names = std::vector<std::string>;

std::string firstLine(const std::string& text) {
    return text.substr(0, text.find('\n'));
}

std::string nearestOf(std::string_view word, const Names& names) {
    const std::vector<std::string_view> views(names.begin(), names.end());
    return std::string(nearestName(word, views));
}

Names commandsOf(const CLI::App& command) {
    Names names;
    for (const CLI::App* one : command.get_subcommands([](const CLI::App*) { return true; }))
        names.push_back(one->get_name());
    return names;
}

bool isWhole(const CLI::App& command) {
    return command.get_parent() == nullptr;
}

/// "preset show"; nothing for the program itself.
std::string nameOf(const CLI::App& command) {
    if (isWhole(command)) return "";
    const std::string before = nameOf(*command.get_parent());
    return (before.empty() ? "" : before + " ") + command.get_name();
}

/// The innermost command that was called.
const CLI::App& chosenIn(const CLI::App& app) {
    const std::vector<CLI::App*> chosen = app.get_subcommands();
    return chosen.empty() ? app : chosenIn(*chosen.front());
}

bool takesWords(const CLI::App& command) {
    for (const CLI::Option* option : command.get_options())
        if (option->get_positional()) return true;
    return false;
}

/// What an argument that command does not know was probably meant to be.
std::string unexpected(const CLI::App& command, const std::string& argument) {
    const std::string quoted = inQuotes(argument);
    if (!argument.empty() && argument[0] == '-') {
        const bool mayBeName = takesWords(command) && argument.size() > 1 && argument[1] != '-';
        Names names;
        for (const CLI::Option* option : command.get_options())
            if (!option->get_lnames().empty()) names.push_back("--" + option->get_lnames()[0]);
        const std::string typed = argument.substr(0, argument.find('='));
        Names begun; // what is abbreviated rather than misspelt
        std::ranges::copy_if(names, std::back_inserter(begun), [&typed](const std::string& name) {
            return typed.size() > 3 && name.starts_with(typed);
        });
        return "there is no option " + quoted + "; the nearest is " +
               nearestOf(typed, begun.empty() ? names : begun) +
               (mayBeName ? " (names that begin with - go last, behind --)" : "");
    }
    if (!commandsOf(command).empty()) return noSuchCommand(command, argument);
    if (!takesWords(command)) return nameOf(command) + " takes no " + quoted + ", only options";
    if (command.get_name() == "info")
        return quoted + " is one file too many; one is taken at a time";
    return quoted + " is one word too many; put names that have blanks between quotes";
}

/// What is missing, where nothing is too much.
std::string missing(const CLI::App& command) {
    const Names commands = commandsOf(command);
    if (isWhole(command)) return "a command is missing: " + spokenList(commands, "or");
    if (!commands.empty())
        return nameOf(command) + " needs what to do: " + spokenList(commands, "or");
    if (command.get_name() == "info") return "info needs the name of a sound file";
    Names names;
    for (const CLI::Option* option : command.get_options())
        if (option->get_required() && option->count() == 0) names.push_back(option->get_name());
    return nameOf(command) + " needs " + spokenList(names, "and");
}

/// "--name: ..." says that a value is missing, or that there is more than one.
std::string wrongCount(const CLI::App& command, const std::string& text) {
    const std::string option = text.substr(0, text.find(':'));
    if (!option.starts_with('-')) return nameOf(command) + " needs " + option;
    if (text.find("missing") != std::string::npos) return option + " needs a value";
    if (text.find("received") != std::string::npos) return option + " can only be given once";
    return text;
}

} // namespace

HelpText::HelpText() {
    label("Positionals", "Arguments");
    label("Subcommands", "Commands");
    label("SUBCOMMAND", "COMMAND");
}

std::string HelpText::make_option_desc(const CLI::Option* option) const {
    return wrapped(CLI::Formatter::make_option_desc(option), kColumns - get_column_width());
}

std::string HelpText::make_option_usage(const CLI::Option* option) const {
    const std::string usage = CLI::Formatter::make_option_usage(option);
    const std::size_t count = usage.find("x)");
    return count == std::string::npos ? usage : usage.substr(0, usage.rfind('(', count));
}

bool SectionHelp::isUsual(const CLI::Option* option) const {
    return std::ranges::any_of(plan_.usual,
                               [&](const char* name) { return option->check_name(name); });
}

std::string SectionHelp::usual(const CLI::App& app) const {
    std::vector<const CLI::Option*> options;
    for (const char* name : plan_.usual) options.push_back(app.get_option(name));
    return make_group("Options", false, options);
}

std::vector<std::string> SectionHelp::sections(const CLI::App& app) const {
    Names names(plan_.sections.begin(), plan_.sections.end());
    for (const std::string& group : app.get_groups())
        if (std::ranges::find(names, group) == names.end()) names.push_back(group);
    std::erase_if(names, [&](const std::string& name) {
        return app
            .get_options([&](const CLI::Option* option) {
                return option->get_group() == name && option->nonpositional() && !isUsual(option);
            })
            .empty();
    });
    return names;
}

std::string SectionHelp::section(const CLI::App& app, std::string_view name) const {
    for (const std::string& group : sections(app))
        if (plainName(group).starts_with(plainName(name)))
            return make_group(group, false, app.get_options([&](const CLI::Option* option) {
                return option->get_group() == group && option->nonpositional();
            }));
    return "";
}

std::string SectionHelp::make_help(const CLI::App* app, std::string name,
                                   CLI::AppFormatMode mode) const {
    if (mode == CLI::AppFormatMode::Sub) return HelpText::make_help(app, name, mode);
    std::string help = make_description(app) + make_usage(app, name) + make_positionals(app) +
                       usual(*app) + "\n" + plan_.table;
    for (const std::string& group : sections(*app))
        help += make_group(group, false, app->get_options([&](const CLI::Option* option) {
            return option->get_group() == group && option->nonpositional() && !isUsual(option);
        }));
    return help + "\n" + make_footer(app);
}

std::string noSuchCommand(const CLI::App& command, std::string_view word) {
    const Names names = commandsOf(command);
    const std::string kind = isWhole(command) ? "command " : nameOf(command) + " command ";
    const std::string none = "there is no " + kind + inQuotes(word) + "; ";
    if (const auto right = rightCommand(nameOf(command), word)) return none + std::string(*right);
    const std::string nearest = nearestOf(word, names);
    const bool isNear =
        names.size() == 1 || editDistance(plainName(word), nearest) * 2 <= nearest.size();
    return none + (isNear ? "the nearest is " + nearest : "there are " + spokenList(names));
}

std::string usageComplaint(const CLI::App& app, const CLI::ParseError& error) {
    const CLI::App& command = chosenIn(app);
    std::vector<std::string> extras = app.remaining(true);
    std::erase(extras, "--"); // which the parser keeps, too
    if (!extras.empty()) return unexpected(command, extras[0]);
    if (dynamic_cast<const CLI::RequiredError*>(&error)) return missing(command);
    if (dynamic_cast<const CLI::ArgumentMismatch*>(&error))
        return wrongCount(command, firstLine(error.what()));
    if (dynamic_cast<const CLI::ConversionError*>(&error)) { // "Could not convert: --json = no"
        const std::string said = firstLine(error.what());
        const std::size_t option = said.find("--");
        if (option != std::string::npos)
            return said.substr(option, said.find(" = ") - option) + " takes no value; leave it out";
    }
    return firstLine(error.what());
}

} // namespace zephyra

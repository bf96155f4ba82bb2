#include "cli/arguments.h"

#include "platform/text/quantities.h"

#include <CLI/App.hpp>
#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <initializer_list>
#include <iterator>
#include <system_error>
#include <utility>

namespace zephyra {

namespace fs = std::filesystem;

namespace {

using Words = std::vector<std::string>;

bool isOneOf(const std::string& word, std::initializer_list<const char*> words) {
    return std::ranges::find(words, word) != words.end();
}

bool isOption(const std::string& word) {
    return word.size() > 1 && word.front() == '-';
}

const CLI::App* commandCalled(const CLI::App& app, const std::string& name) {
    const auto called =
        app.get_subcommands([&name](const CLI::App* one) { return one->get_name() == name; });
    return called.empty() ? nullptr : called.front();
}

const CLI::Option* optionCalled(const CLI::App& command, const std::string& word) {
    return isOption(word) ? command.get_option_no_throw(word) : nullptr;
}

bool exists(const std::string& word) {
    std::error_code ignored;
    return fs::exists(word, ignored);
}

bool looksLikeSound(const std::string& word) {
    return word == "-" || word.find('/') != std::string::npos || fs::path(word).has_extension() ||
           exists(word);
}

/// The place of the first word that is no option and no option's value; the words' end without one.
Words::iterator firstArgument(Words& words, const CLI::App& app, const CLI::App& command) {
    auto word = words.begin();
    while (word != words.end() && isOption(*word) && *word != "--") {
        const CLI::Option* option = optionCalled(command, *word);
        if (!option) option = optionCalled(app, *word);
        const bool takesNext = option && option->get_expected_min() > 0;
        if (++word != words.end() && takesNext) ++word;
    }
    return word;
}

/// Whether `render` is meant by words, of which first is the first argument and no command: an
/// option that the program itself does not have says so, or the argument.
bool meansRender(Words& words, Words::iterator first, const CLI::App& app) {
    if (std::any_of(words.begin(), first, [&app](const std::string& word) {
            return isOption(word) && !optionCalled(app, word);
        }))
        return true;
    return first != words.end() && (*first == "--" || looksLikeSound(*first));
}

/// Puts the command in front, where it was left out or stands behind options.
void putCommandFirst(Words& words, const CLI::App& app) {
    const auto first = firstArgument(words, app, *commandCalled(app, "render"));
    if (first != words.end() && commandCalled(app, *first))
        std::rotate(words.begin(), first, std::next(first));
    else if (meansRender(words, first, app))
        words.insert(words.begin(), "render");
}

/// "render help", but no bank that is called help.
bool asksForHelp(const Words& words, const CLI::App& app) {
    if (words.size() < 2 || words.back() != "help" || exists("help")) return false;
    const CLI::App* command = &app;
    for (std::size_t i = 0; i + 1 < words.size() && command; ++i)
        command = commandCalled(*command, words[i]);
    return command && !command->get_option_no_throw("BANK");
}

/// Whether it takes a value only where one is joined to it.
bool mayStandAlone(const CLI::Option* option) {
    return option && option->get_expected_max() == 0 && !option->get_option_text().empty();
}

void joinTimes(Words& words, const CLI::App& command) {
    for (std::size_t i = 0; i + 1 < words.size() && words[i] != "--"; ++i)
        if (mayStandAlone(optionCalled(command, words[i])) && parseTime(words[i + 1])) {
            words[i] += "=" + words[i + 1];
            words.erase(words.begin() + static_cast<std::ptrdiff_t>(i) + 1);
        }
}

/// Puts what is no option behind "--" with the rest: the parser, once it has one argument, would
/// take the mark for the end of the command.
void gatherArguments(Words& words, const CLI::App& app) {
    Words front, arguments;
    const CLI::App* command = &app;
    auto word = words.begin();
    for (; word != words.end() && *word != "--"; ++word) {
        const CLI::App* const inner = arguments.empty() ? commandCalled(*command, *word) : nullptr;
        (inner || isOption(*word) ? front : arguments).push_back(*word);
        if (inner) command = inner;
        const CLI::Option* const option = optionCalled(*command, *word);
        if (option && option->get_expected_min() > 0 && std::next(word) != words.end())
            front.push_back(*++word);
    }
    if (word == words.end()) return;
    front.push_back("--");
    front.insert(front.end(), arguments.begin(), arguments.end());
    front.insert(front.end(), std::next(word), words.end());
    words = std::move(front);
}

} // namespace

std::vector<std::string> completeArguments(std::vector<std::string> typed, const CLI::App& app) {
    if (typed.empty() || typed.front() == "help") return typed;
    if (typed.front() == "version") return {"--version"};
    if (typed.size() == 1 && isOneOf(typed.front(), {"-V", "-v", "-version"})) return {"--version"};
    if (typed.size() == 1 && isOneOf(typed.front(), {"-help", "-?"})) return {"help"};
    if (asksForHelp(typed, app)) {
        std::rotate(typed.begin(), typed.end() - 1, typed.end());
        return typed;
    }
    putCommandFirst(typed, app);
    if (const CLI::App* const command = commandCalled(app, typed.front()))
        joinTimes(typed, *command);
    gatherArguments(typed, app);
    return typed;
}

} // namespace zephyra

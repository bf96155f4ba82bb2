// Completion for fish: a line an option.

#include "cli/pages/pages.h"

#include <algorithm>

namespace zephyra {

namespace {

constexpr const char* kBeginning =
    R"(# Completion of zephyra's commands, options, controls, banks and presets.
function __zephyra_banks
    zephyra banks 2>/dev/null </dev/null | string replace -r '   *.*' ''
end

function __zephyra_presets
    for bank in (__zephyra_banks)
        zephyra banks "$bank" 2>/dev/null </dev/null |
            string replace -r '^[0-9]+  +' '' | string replace -r '  .*' ''
    end
end

# Whether the command line's command is $argv; with none named it is a render.
function __zephyra_is
    set -l words (commandline -opc)[2..-1]
    set -l command (string match -v -- '-*' $words)[1..2]
    switch "$command[1]"
        case preset samples
        case $__zephyra_commands help
            set command $command[1]
        case '*'
            contains -- "$argv" '' render
            return
    end
    contains -- "$command[2]" $__zephyra_inner; or set command $command[1]
    test "$command" = "$argv"
end
)";

/// A word of the shell.
std::string quotedWord(const std::string& text) {
    std::string word = "'";
    for (const char c : text) {
        if (c == '\'' || c == '\\') word += '\\';
        word += c == '\n' ? ' ' : c;
    }
    return word + "'";
}

/// An argument of -a: one word, in which fish finds words again.
std::string list(const std::vector<std::string>& words, const std::string& behind = "") {
    std::string text;
    for (const std::string& word : words)
        text += (text.empty() ? "" : " ") + quotedWord(word + behind);
    return quotedWord(text);
}

/// -x and -r: a value must follow; the former is no file.
std::string action(WordKind kind, const std::vector<std::string>& choices) {
    switch (kind) {
    case WordKind::nothing:
        return " -x";
    case WordKind::file:
        return " -r -F";
    case WordKind::folder:
        return " -x -a '(__fish_complete_directories)'";
    case WordKind::bank:
        return " -x -a '(__zephyra_banks)'";
    case WordKind::preset:
        return " -x -a '(__zephyra_presets)'";
    case WordKind::control:
        return " -x -a " + list(controlNames(), "=");
    case WordKind::movedControl:
        return " -x -a " + list(controlNames(), ":");
    case WordKind::choice:
        return " -x -a " + list(choices);
    }
    return "";
}

std::string line(const std::string& command, const std::string& rest) {
    return "complete -c zephyra -n " + quotedWord("__zephyra_is " + command) + rest + "\n";
}

std::string optionLine(const std::string& command, const OptionFacts& option) {
    std::string names;
    for (const std::string& name : option.names)
        names += name.starts_with("--") ? " -l " + name.substr(2) : " -s " + name.substr(1);
    const std::string value =
        option.value.empty() || option.valueMayLack ? "" : action(option.kind, option.choices);
    return line(command, names + value + " -d " + quotedWord(option.help));
}

/// What the plain words behind a command may be; files are fish's own offer.
std::string wordLines(const CommandFacts& command) {
    std::string text;
    bool takesFiles = false;
    for (const WordFacts& word : command.words) {
        takesFiles = takesFiles || word.kind == WordKind::file;
        if (word.kind == WordKind::bank || word.kind == WordKind::preset)
            text += line(command.name, " -f" + action(word.kind, {}).substr(3));
    }
    return takesFiles ? text : text + line(command.name, " -f");
}

} // namespace

std::string fishCompletion(const Commands& commands) {
    std::string text = kBeginning;
    std::vector<std::string> inner;
    for (const CommandFacts& command : commands)
        if (!command.name.empty())
            inner.insert(inner.end(), command.commands.begin(), command.commands.end());
    const auto words = [](const std::vector<std::string>& all) {
        std::string joined;
        for (const std::string& one : all) joined += " " + one;
        return joined;
    };
    text += "\nset -g __zephyra_commands" + words(commands.front().commands) +
            "\nset -g __zephyra_inner" + words(inner) + "\n\n";
    for (const CommandFacts& command : commands) {
        for (const OptionFacts& option : command.options) text += optionLine(command.name, option);
        text += line(command.name, " -s h -l help -d 'Print this help'");
        if (!command.commands.empty()) text += line(command.name, " -a " + list(command.commands));
        if (!command.name.empty()) text += wordLines(command);
    }
    return text + line("help", " -f -a " + list(commands.front().commands));
}

} // namespace zephyra

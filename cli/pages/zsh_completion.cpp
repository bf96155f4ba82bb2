// Completion for zsh: a function a command, each a call of _arguments.

#include "cli/pages/pages.h"

#include <algorithm>

namespace zephyra {

namespace {

constexpr const char* kBeginning = R"zsh(#compdef zephyra
# Completion of zephyra's commands, options, controls, banks and presets.
_zephyra_bank_names() {
    local -a names
    names=(${(f)"$(zephyra banks 2>/dev/null </dev/null | sed 's/   *.*//')"})
    compadd -a names
}

_zephyra_preset_names() { # of the bank that was typed, or of all
    local -a banks names
    local bank=${opt_args[--bank]}
    [[ $service == zephyra-preset ]] && bank=$line[1]
    banks=("${(Q)bank}")
    [[ -n $bank ]] || banks=(${(f)"$(zephyra banks 2>/dev/null </dev/null | sed 's/   *.*//')"})
    for bank in $banks; do
        names+=(${(f)"$(zephyra banks "$bank" 2>/dev/null </dev/null | sed -E 's/^[0-9]+  +//; s/  .*//')"})
    done
    compadd -a names
}
)zsh";

/// Within single quotes, where a line for _arguments has a text of its own.
std::string specText(const std::string& text) {
    std::string escaped;
    for (const char c : text) {
        if (c == '\'') escaped += "'\\'";
        if (c == '[' || c == ']' || c == ':') escaped += '\\';
        escaped += c == '\n' ? ' ' : c;
    }
    return escaped;
}

std::string list(const std::vector<std::string>& words) {
    std::string text = "(";
    for (const std::string& word : words) {
        if (text.size() > 1) text += ' ';
        for (const char c : word) text += c == ' ' ? std::string("\\ ") : std::string(1, c);
    }
    return text + ")";
}

std::string action(WordKind kind, const std::vector<std::string>& choices) {
    switch (kind) {
    case WordKind::nothing:
        return " ";
    case WordKind::file:
        return "_files";
    case WordKind::folder:
        return "_files -/";
    case WordKind::bank:
        return "_zephyra_bank_names";
    case WordKind::preset:
        return "_zephyra_preset_names";
    case WordKind::control:
        return "_zephyra_controls =";
    case WordKind::movedControl:
        return "_zephyra_controls :";
    case WordKind::choice:
        return list(choices);
    }
    return " ";
}

/// A line for _arguments for each of an option's names.
std::string linesOf(const OptionFacts& option) {
    std::string text;
    for (const std::string& name : option.names) {
        text += "        '*" + name;
        if (!option.value.empty()) text += name.starts_with("--") ? "=" : "+";
        text += "[" + specText(option.help) + "]";
        if (!option.value.empty())
            text += (option.valueMayLack ? "::" : ":") + specText(option.value) + ":" +
                    action(option.kind, option.choices);
        text += "' \\\n";
    }
    return text;
}

std::string functionName(const std::string& command) {
    std::string name = "_zephyra" + (command.empty() ? "" : "_" + command);
    std::ranges::replace(name, ' ', '_');
    return name;
}

/// A command that has others below it.
std::string dispatch(const CommandFacts& command) {
    std::vector<std::string> inner = command.commands;
    if (command.name.empty()) inner.push_back("help");
    std::string text = "        '1: :->command' '*:: :->rest' && return\n"
                       "    case $state in\n    command) compadd ";
    for (const std::string& one : inner) text += one + " ";
    text += command.name.empty() ? "; _files ;;\n    rest)\n" : ";;\n    rest)\n";
    text += "        curcontext=${curcontext%:*}-$words[1]:\n        case $words[1] in\n";
    for (const std::string& one : command.commands)
        text += "        " + one + ") service=zephyra-" + one + " " +
                functionName((command.name.empty() ? "" : command.name + " ") + one) + " ;;\n";
    if (command.name.empty()) text += "        help) compadd " + list(command.commands).substr(1);
    if (command.name.empty())
        text.back() = ' ', text += ";;\n        *) service=zephyra-render _zephyra_render ;;\n";
    return text + "        esac ;;\n    esac\n";
}

std::string function(const CommandFacts& command) {
    std::string text = "\n" + functionName(command.name) + "() {\n" +
                       "    local curcontext=$curcontext context state line\n"
                       "    local -A opt_args\n    _arguments -C \\\n"
                       "        '(-h --help)'{-h,--help}'[Print this help]' \\\n";
    for (const OptionFacts& option : command.options) text += linesOf(option);
    if (!command.commands.empty()) return text + dispatch(command) + "}\n";
    std::size_t position = 0;
    for (const WordFacts& word : command.words)
        text += "        '" + (word.repeats ? "*" : std::to_string(++position)) + ":" +
                specText(word.name) + ":" + action(word.kind, {}) + "' \\\n";
    return text + "        && return\n}\n";
}

} // namespace

std::string zshCompletion(const Commands& commands) {
    std::string text = kBeginning;
    text += "\n_zephyra_controls() { # $1 follows\n    local -a names\n    names=(";
    for (const std::string& name : controlNames()) text += name + " ";
    text.back() = ')';
    text += "\n    compadd -S \"$1\" -a names\n}\n";
    for (const CommandFacts& command : commands) text += function(command);
    return text + "\n_zephyra \"$@\"\n";
}

} // namespace zephyra

// Completion for bash, without the functions of a package that may be missing.

#include "cli/pages/pages.h"

#include <algorithm>

namespace zephyra {

namespace {

/// bash takes "--set=Dens" for three words. Names are offered as the shell has them: with its
/// escapes, or as they are inside quotes.
constexpr const char* kBeginning =
    R"(# Completion of zephyra's commands, options, controls, banks and presets.
_zephyra_offer() { # of the lines on standard input those that begin with what stands there; $1 follows
    local line plain=${cur//\\/} open=
    [[ $cur == [\"\']* ]] && open=1 plain=${cur:1}
    while IFS= read -r line; do
        [[ ${line,,} == "${plain,,}"* ]] || continue
        [[ $open ]] || printf -v line %q "$line"
        COMPREPLY+=("$line${1-}")
    done
}

_zephyra_banks() { zephyra banks 2>/dev/null </dev/null | sed 's/   *.*//'; }

_zephyra_presets() { # of bank $1, or of all
    local bank
    if [[ ${1-} ]]; then
        zephyra banks "$1" 2>/dev/null </dev/null | sed -E 's/^[0-9]+  +//; s/  .*//'
    else
        while IFS= read -r bank; do _zephyra_presets "$bank"; done < <(_zephyra_banks)
    fi
}

_zephyra_files() { # $1: -f or -d
    local plain=${cur//\\/} found
    compopt -o filenames 2>/dev/null
    mapfile -t found < <(compgen "$1" -- "${plain#[\"\']}")
    COMPREPLY+=(${found[@]+"${found[@]}"})
}

_zephyra() {
    local cur=${COMP_WORDS[COMP_CWORD]} prev=${COMP_WORDS[COMP_CWORD - 1]}
    local i word command= bank= words=0 at=$COMP_CWORD
    COMPREPLY=()
    [[ $cur == = ]] && cur= at=$((at + 1))
    [[ $prev == = || ${COMP_WORDS[COMP_CWORD]} == = ]] && prev=${COMP_WORDS[at - 2]}
)";

/// Finds command, bank and the number of plain words in front.
constexpr const char* kWalk = R"(
    for ((i = 1; i < COMP_CWORD; i++)); do
        word=${COMP_WORDS[i]}
        case $command/$word in
)";

constexpr const char* kWalkEnd = R"(        /help) command=help ;;
        help/*) ;;
        *) [[ $command || $word == --shared-folder ]] || command=render
            if [[ $word == --bank ]]; then
                bank=${COMP_WORDS[i + 1]-}
                [[ $bank == = ]] && bank=${COMP_WORDS[i + 2]-}
            fi
            if _zephyra_takes "$command" "$word"; then
                [[ ${COMP_WORDS[i + 1]-} == = ]] && ((i++))
                ((i++))
            elif [[ $word != -* ]]; then
                ((++words == 1)) && [[ $command == preset* ]] && bank=$word
            fi ;;
        esac
    done
    bank=${bank//\\/} bank=${bank#[\"\']} bank=${bank%[\"\']}
)";

/// A word of the shell, within single quotes.
std::string quotedWord(const std::string& text) {
    std::string word = "'";
    for (const char c : text) word += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return word + "'";
}

std::string lines(const std::vector<std::string>& all) {
    std::string text = "printf '%s\\n'";
    for (const std::string& one : all) text += " " + quotedWord(one);
    return text;
}

/// The commands that offer what a word may be.
std::string offer(WordKind kind, const std::vector<std::string>& choices) {
    switch (kind) {
    case WordKind::nothing:
        return ":";
    case WordKind::file:
        return "_zephyra_files -f";
    case WordKind::folder:
        return "_zephyra_files -d";
    case WordKind::bank:
        return "_zephyra_offer < <(_zephyra_banks)";
    case WordKind::preset:
        return "_zephyra_offer < <(_zephyra_presets \"$bank\")";
    case WordKind::control:
        return "compopt -o nospace 2>/dev/null; _zephyra_offer = < <(_zephyra_controls)";
    case WordKind::movedControl:
        return "compopt -o nospace 2>/dev/null; _zephyra_offer : < <(_zephyra_controls)";
    case WordKind::choice:
        return "_zephyra_offer < <(" + lines(choices) + ")";
    }
    return ":";
}

std::string patternOf(const CommandFacts& command, const OptionFacts& option) {
    std::string pattern;
    for (const std::string& name : option.names)
        pattern += (pattern.empty() ? "" : "|") + quotedWord(command.name + "/" + name);
    return pattern;
}

std::string takingOptions(const Commands& commands) {
    std::string text =
        "\n_zephyra_takes() { # whether option $2 of command $1 takes the next word\n"
        "    case $1/$2 in\n";
    for (const CommandFacts& command : commands)
        for (const OptionFacts& option : command.options)
            if (!option.value.empty() && !option.valueMayLack)
                text += "    " + patternOf(command, option) + ") return 0 ;;\n";
    return text + "    esac\n    return 1\n}\n";
}

std::string walkRows(const Commands& commands) {
    std::string text;
    for (const CommandFacts& command : commands)
        for (const std::string& inner : command.commands)
            text += "        " + quotedWord(command.name + "/" + inner) + ") command=" +
                    quotedWord((command.name.empty() ? "" : command.name + " ") + inner) + " ;;\n";
    return text;
}

std::string values(const Commands& commands) {
    std::string text = "    case $command/$prev in\n";
    for (const CommandFacts& command : commands)
        for (const OptionFacts& option : command.options)
            if (!option.value.empty() && !option.valueMayLack)
                text += "    " + patternOf(command, option) + ") " +
                        offer(option.kind, option.choices) + "; return ;;\n";
    return text + "    esac\n";
}

std::string optionsAndWords(const CommandFacts& command) {
    std::vector<std::string> options = {"--help"};
    for (const OptionFacts& option : command.options)
        options.insert(options.end(), option.names.begin(), option.names.end());
    std::string text = "    " + quotedWord(command.name) + ")\n        if [[ $cur == -* ]]; then " +
                       offer(WordKind::choice, options) + "; return; fi\n";
    if (!command.commands.empty()) {
        std::vector<std::string> inner = command.commands;
        if (command.name.empty()) inner.insert(inner.end(), {"help", "version"});
        text += "        " + offer(WordKind::choice, inner) + "\n";
    }
    // A sound's name alone is a render.
    if (command.name.empty()) text += "        " + offer(WordKind::file, {}) + "\n";
    if (!command.words.empty()) {
        text += "        case $words in\n";
        for (std::size_t i = 0; i < command.words.size(); ++i)
            text += "        " + (command.words[i].repeats ? "*" : std::to_string(i)) + ") " +
                    offer(command.words[i].kind, {}) + " ;;\n";
        text += "        esac\n";
    }
    return text + "        ;;\n";
}

} // namespace

std::string bashCompletion(const Commands& commands) {
    std::vector<std::string> topics = commands.front().commands;
    std::string text = kBeginning;
    text.insert(text.find("_zephyra() {"), "_zephyra_controls() { " + lines(controlNames()) +
                                               "; }\n" + takingOptions(commands) + "\n");
    text += kWalk + walkRows(commands) + kWalkEnd + values(commands);
    text += "    case $command in\n";
    for (const CommandFacts& command : commands) text += optionsAndWords(command);
    return text + "    help) " + offer(WordKind::choice, topics) +
           "; _zephyra_offer < <(_zephyra_controls) ;;\n    esac\n}\n"
           "complete -F _zephyra zephyra\n";
}

} // namespace zephyra

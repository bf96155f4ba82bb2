// zephyra(1): every command with what it takes, then what they share.

#include "audiounit/control_text.h"
#include "cli/pages/pages.h"

#include <algorithm>
#include <sstream>
#include <string_view>

namespace zephyra {

namespace {

constexpr const char* kEnding = R"(.SH ENVIRONMENT
.TP
.B ZEPHYRA_SHARED_FOLDER
Where banks and samples are kept, instead of
.IR $XDG_DATA_HOME/zephyra .
.TP
.B ZEPHYRA_RESOURCE_FOLDER
Where the built\-in sounds and factory banks are, instead of
.I share/zephyra/resources
beside the program's
.IR bin .
.TP
.B ZEPHYRA_MODULES
Where the module for AAC is, instead of
.IR lib/zephyra/modules .
.TP
.B ZEPHYRA_CPU_LEVEL
.BR baseline ,
.B v3
or
.BR v4 :
do with fewer of the processor's instructions.
.SH FILES
.TP
.I ~/.local/share/zephyra
The user's banks and samples.
.SH EXIT STATUS
0 when all went well, 1 for a failure, 2 for wrong usage, 130 for what Ctrl\-C ended. One line on
standard error says what was wrong and what would be right.
)";

/// text as roff shows it, character for character.
std::string literal(std::string_view text) {
    static constexpr std::pair<char, const char*> kEscapes[] = {{'\\', "\\(rs"}, {'-', "\\-"},
                                                                {'\'', "\\(aq"}, {'`', "\\(ga"},
                                                                {'^', "\\(ha"},  {'~', "\\(ti"}};
    std::string escaped;
    for (const char c : text) {
        const auto* const row = std::find_if(std::begin(kEscapes), std::end(kEscapes),
                                             [c](const auto& escape) { return escape.first == c; });
        if (c == '.' && (escaped.empty() || escaped.back() == '\n')) escaped += "\\&";
        row == std::end(kEscapes) ? escaped += c : escaped += row->second;
    }
    return escaped;
}

/// Lines as they are, where blanks stand for themselves.
std::string asTyped(std::string_view lines) {
    return ".nf\n" + literal(lines) + (lines.ends_with('\n') ? "" : "\n") + ".fi\n";
}

std::string item(const std::string& head, std::string_view text) {
    return ".TP\n" + head + "\n" + literal(text) + "\n";
}

std::string optionHead(const OptionFacts& option) {
    std::string head;
    for (const std::string& name : option.names)
        head += (head.empty() ? "" : ", ") + ("\\fB" + literal(name) + "\\fR");
    return option.value.empty() ? head : head + " \\fI" + literal(option.value) + "\\fR";
}

std::string controlTable() {
    std::string table = ".SH CONTROLS\nNames for\n.B \\-\\-set\nand\n.BR \\-\\-at ,\n"
                        "with their ranges; case, spaces and punctuation do not matter.\n";
    for (const ControlId id : settableControls()) {
        const ControlRange& range = controlRange(id);
        table += ".TP\n.B " + literal(range.name) + "\n" + literal(rangeText(range)) + "; " +
                 literal(valueText(range, range.defaultValue)) + " at first\n";
    }
    return table;
}

/// The prose and the examples below a command's help: lines that stand in are shown as they are.
std::string footer(const std::string& text) {
    std::istringstream lines(text);
    std::string roff, prose, typed;
    const auto flush = [&] {
        if (!prose.empty()) roff += ".PP\n" + literal(prose);
        if (!typed.empty()) roff += ".PP\n" + asTyped(typed);
        prose.clear(), typed.clear();
    };
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with("  ")) {
            typed += line + "\n";
            continue;
        }
        if (!typed.empty() || line.empty()) flush();
        if (!line.empty()) prose += line + "\n";
    }
    flush();
    return roff;
}

/// The options group by group, in the order in which groups are first met.
std::string optionList(const CommandFacts& command) {
    std::vector<std::string> groups;
    for (const OptionFacts& option : command.options)
        if (std::ranges::count(groups, option.group) == 0) groups.push_back(option.group);
    std::string list;
    for (const std::string& group : groups) {
        if (groups.size() > 1) list += ".PP\n.I " + literal(group) + "\n";
        for (const OptionFacts& option : command.options)
            if (option.group == group) list += item(optionHead(option), option.help);
    }
    return list;
}

/// before: the footer of the command above, which many share.
std::string section(CommandFacts command, const CommandFacts& program, const std::string& before) {
    std::erase_if(command.options, [&](const OptionFacts& option) {
        return std::ranges::count(program.options, option.names, &OptionFacts::names) > 0;
    });
    std::string text = ".SS zephyra " + command.name + "\n" + literal(command.help) + ".\n" +
                       ".PP\n.B " + literal(command.usage.substr(command.usage.find("zephyra"))) +
                       "\n";
    for (const WordFacts& word : command.words)
        text += item("\\fI" + literal(word.name) + "\\fR", word.help);
    text += optionList(command);
    return command.footer == before ? text : text + footer(command.footer);
}

} // namespace

std::string manualPage(const Commands& commands) {
    const CommandFacts& program = commands.front();
    std::string page = ".TH ZEPHYRA 1 \"\" \"zephyra " ZEPHYRA_VERSION "\" \"User Commands\"\n"
                       ".SH NAME\nzephyra \\- granular processor for sound files\n"
                       ".SH SYNOPSIS\n.B zephyra\n.I COMMAND\n.RI [ OPTIONS ]\n"
                       ".SH DESCRIPTION\n" +
                       literal(program.help) + "\n" + footer(program.footer) +
                       ".SH OPTIONS\nEvery command takes these as well.\n" +
                       item("\\fB\\-h\\fR, \\fB\\-\\-help\\fR", "Print the command's help") +
                       optionList(program) + ".SH COMMANDS\n";
    std::string before;
    for (const CommandFacts& command : commands) {
        if (command.name.empty()) continue;
        page += section(command, program, before);
        before = command.footer;
    }
    return page + controlTable() + kEnding;
}

} // namespace zephyra

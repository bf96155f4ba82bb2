#include "cli/pages/command_facts.h"

#include "audiounit/control_text.h"
#include "cli/terminal/usage_text.h"
#include "engine/envelope_menu.h"
#include "rendering/output/output_type.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstddef>
#include <map>
#include <sstream>
#include <string_view>
#include <utility>

namespace zephyra {

namespace {

using Names = std::vector<std::string>;

/// As in "play|stop" and "wav, aiff or ogg".
Names choicesIn(std::string text) {
    for (const char* const between : {", ", " or "})
        for (std::size_t at = text.find(between); at != std::string::npos; at = text.find(between))
            text.replace(at, std::string_view(between).size(), "|");
    Names choices;
    std::istringstream all(text);
    for (std::string one; std::getline(all, one, '|');) choices.push_back(one);
    return choices;
}

Names envelopeNames() {
    Names names;
    for (const std::string_view entry : kEnvelopeMenu)
        names.emplace_back(entry.substr(std::string_view("Grain Envelope: ").size()));
    return names;
}

/// What the placeholder of a value, or a word's name, stands for.
WordKind kindOf(std::string_view placeholder) {
    static constexpr std::pair<std::string_view, WordKind> kKinds[] = {
        {"NAME=VALUE", WordKind::control}, {"CONTROL:KEY=VALUE,...", WordKind::movedControl},
        {"DIR", WordKind::folder},         {"BANK", WordKind::bank},
        {"TO-BANK", WordKind::bank},       {"PRESET", WordKind::preset}};
    static constexpr std::string_view kFiles[] = {"FILE", "INPUT", "OUT"};
    for (const auto& [name, kind] : kKinds)
        if (name == placeholder) return kind;
    const bool isFile = std::ranges::any_of(
        kFiles, [&](std::string_view name) { return placeholder.starts_with(name); });
    return isFile ? WordKind::file : WordKind::nothing;
}

/// The few values of an option that has few; empty for others.
Names choicesOf(const OptionFacts& option) {
    const auto isCalled = [&](const char* name) {
        return std::ranges::count(option.names, name) > 0;
    };
    if (isCalled("--envelope")) return envelopeNames();
    if (isCalled("--type")) return choicesIn(kOutputTypeNames);
    if (isCalled("--as") && option.value == "TYPE") return {"instrument", "effect", "music-effect"};
    return option.value.find('|') == std::string::npos ? Names() : choicesIn(option.value);
}

std::string trimmed(const std::string& text) {
    const std::size_t from = text.find_first_not_of(" \n");
    return from == std::string::npos ? ""
                                     : text.substr(from, text.find_last_not_of(" \n") + 1 - from);
}

OptionFacts factsOf(const CLI::Option& option, const CLI::Formatter& formatter) {
    OptionFacts facts{.help = option.get_description(), .group = option.get_group()};
    for (const std::string& name : option.get_snames()) facts.names.push_back("-" + name);
    for (const std::string& name : option.get_lnames()) facts.names.push_back("--" + name);
    facts.value = trimmed(formatter.make_option_opts(&option));
    facts.choices = choicesOf(facts);
    facts.kind = facts.choices.empty() ? kindOf(facts.value) : WordKind::choice;
    facts.valueMayLack = facts.value.starts_with('[');
    return facts;
}

/// The usual ones, then group by group as the help has them.
void order(std::vector<OptionFacts>& options, const CLI::App& command) {
    const auto* const help = dynamic_cast<const SectionHelp*>(command.get_formatter().get());
    if (!help) return;
    const Names groups = help->sections(command);
    std::multimap<std::ptrdiff_t, OptionFacts> sorted; // which keeps the order of equal ones
    for (OptionFacts& option : options) {
        const auto group = std::ranges::find(groups, option.group);
        const auto place = option.group == "Options" ? -1 : group - groups.begin();
        sorted.emplace(place, std::move(option));
    }
    options.clear();
    for (auto& [place, option] : sorted) options.push_back(std::move(option));
}

/// "BANK [PRESET] NEW" is three words that the parser takes as one.
void addWords(std::vector<WordFacts>& words, const CLI::Option& option) {
    std::istringstream names(option.get_name(true));
    const bool repeats = option.get_items_expected_max() > 3;
    for (std::string name; names >> name;) {
        std::erase_if(name, [](char c) { return c == '[' || c == ']'; });
        words.push_back({name, option.get_description(), kindOf(name), repeats});
    }
}

void addFacts(std::vector<CommandFacts>& all, const CLI::App& command, const std::string& above,
              const std::string& group) {
    const auto& formatter = dynamic_cast<const CLI::Formatter&>(*command.get_formatter());
    const std::string name =
        group + (group.empty() ? "" : " ") + (above.empty() ? "" : command.get_name());
    CommandFacts facts{
        .name = name,
        .help = command.get_description(),
        .usage = trimmed(formatter.make_usage(&command, trimmed(above + " " + command.get_name()))),
        .footer = command.get_footer()};
    for (const CLI::Option* option : command.get_options()) {
        if (option == command.get_help_ptr()) continue;
        if (option->get_positional())
            addWords(facts.words, *option);
        else
            facts.options.push_back(factsOf(*option, formatter));
    }
    order(facts.options, command);
    const auto inner = command.get_subcommands([](const CLI::App*) { return true; });
    for (const CLI::App* one : inner) facts.commands.push_back(one->get_name());
    all.push_back(std::move(facts));
    for (const CLI::App* one : inner)
        addFacts(all, *one, trimmed(above + " " + command.get_name()), name);
}

} // namespace

std::vector<CommandFacts> commandFacts(const CLI::App& app) {
    std::vector<CommandFacts> all;
    addFacts(all, app, "", "");
    return all;
}

std::vector<std::string> controlNames() {
    std::vector<std::string> names;
    for (const ControlId id : settableControls()) {
        names.emplace_back(controlRange(id).name);
        std::erase(names.back(), ' ');
    }
    return names;
}

} // namespace zephyra

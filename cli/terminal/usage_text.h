// HelpText and usageComplaint: what the parser of the command line says, in our form.
#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace zephyra {

/// CLI11's help with descriptions broken into lines that fit a terminal. Made once per command
/// line; subcommands take it over.
class HelpText : public CLI::Formatter {
public:
    HelpText();
    std::string make_option_desc(const CLI::Option* option) const override;
    /// Without CLI11's "(2x)", which says nothing of how many words more there may be.
    std::string make_option_usage(const CLI::Option* option) const override;
};

/// The same with an order of its own, for a command of many options.
class SectionHelp : public HelpText {
public:
    struct Plan {
        std::vector<const char*> usual;    ///< long names of the options that come first, in order
        std::string table;                 ///< follows them
        std::vector<const char*> sections; ///< groups of the others, in order; unknown ones follow
    };
    explicit SectionHelp(Plan plan) : plan_(std::move(plan)) {}

    std::string make_help(const CLI::App* app, std::string name,
                          CLI::AppFormatMode mode) const override;
    /// All options of the section that name means or begins; empty for none.
    std::string section(const CLI::App& app, std::string_view name) const;
    /// Their names, those of empty ones left out.
    std::vector<std::string> sections(const CLI::App& app) const;

private:
    std::string usual(const CLI::App& app) const;
    bool isUsual(const CLI::Option* option) const;

    Plan plan_;
};

/// What is wrong with how the command was called, in one line, for what CLI11 found; it would say
/// it in its own words. app has been parsed. MAIN.
std::string usageComplaint(const CLI::App& app, const CLI::ParseError& error);

/// For a word that stands where one of command's own commands should.
std::string noSuchCommand(const CLI::App& command, std::string_view word);

} // namespace zephyra

// HelpText and usageComplaint: what the parser of the command line says, in our form.
#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <string_view>

namespace zephyra {

/// CLI11's help with descriptions broken into lines that fit a terminal. Made once per command
/// line; subcommands take it over.
class HelpText : public CLI::Formatter {
public:
    std::string make_option_desc(const CLI::Option* option) const override;
    /// Without CLI11's "(2x)", which says nothing of how many words more there may be.
    std::string make_option_usage(const CLI::Option* option) const override;
};

/// What is wrong with how the command was called, in one line, for what CLI11 found; it would say
/// it in its own words. app has been parsed. MAIN.
std::string usageComplaint(const CLI::App& app, const CLI::ParseError& error);

/// For a word that stands where one of command's own commands should.
std::string noSuchCommand(const CLI::App& command, std::string_view word);

} // namespace zephyra

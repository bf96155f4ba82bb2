// HelpText: CLI11's help with descriptions broken into lines that fit a terminal.
#pragma once

#include <CLI/CLI.hpp>
#include <string>

namespace zephyra {

/// Made once per command line; subcommands take it over.
class HelpText : public CLI::Formatter {
public:
    std::string make_option_desc(const CLI::Option* option) const override;
    /// Without CLI11's "(2x)", which says nothing of how many words more there may be.
    std::string make_option_usage(const CLI::Option* option) const override;
};

} // namespace zephyra

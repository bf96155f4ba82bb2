// usageComplaint: what is wrong with how the command was called, in one line.
#pragma once

#include <string>
#include <string_view>

namespace CLI {
class App;
class ParseError;
} // namespace CLI

namespace zephyra {

/// For what CLI11 found; it would say it in its own words. app has been parsed. MAIN.
std::string usageComplaint(const CLI::App& app, const CLI::ParseError& error);

/// For a word that stands where one of command's own commands should.
std::string noSuchCommand(const CLI::App& command, std::string_view word);

} // namespace zephyra

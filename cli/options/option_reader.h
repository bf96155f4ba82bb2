// OptionReader: declares a command's options so that each is read right into what it decides.
#pragma once

#include "cli/options/option_values.h"
#include "rendering/host_request.h"

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace CLI {
class App;
class Option;
} // namespace CLI

namespace zephyra {

/// What is wrong is kept and not thrown, so that a wish for help and unknown options come first.
/// Must outlive the command line, as must all that is read into. MAIN.
class OptionReader {
public:
    /// Reads text, which stood after option.
    using Read = std::function<Complaint(const char* option, const std::string& text)>;

    explicit OptionReader(CLI::App& command) : command_(command) {}
    OptionReader(const OptionReader&) = delete;
    OptionReader& operator=(const OptionReader&) = delete;

    /// The heading in the help of what is declared from now on.
    void beginGroup(const char* heading) { group_ = heading; }

    /// names: "--rate", or "-o,--output", of which complaints tell the first. Options are read in
    /// the order in which they were declared, wherever they were typed: what others ask for, as the
    /// tempo, is declared before them.
    void add(const char* names, const char* placeholder, const char* help, Read read);
    /// One that may be given often.
    void addRepeated(const char* name, const char* placeholder, const char* help, Read read);
    void addFlag(const char* name, const char* help, std::function<void()> given);
    void addFlag(const char* name, const char* help, bool& given);
    /// A flag that may be given a value behind an equals sign, or a time as the word that follows
    /// it. Any other word is an argument of its own; text is empty where there is no value.
    void addFlag(const char* name, const char* placeholder, const char* help, Read read);

    /// How options go together; checked when all have been read, in this order, whether or not each
    /// had a right value.
    void addCheck(std::function<Complaint()> check) { checks_.push_back(std::move(check)); }

    bool isGiven(const char* name) const;

    /// What is wrong, once the command line has been parsed: with the checks, else with the first
    /// value.
    Complaint complaint() const;

private:
    CLI::Option& inGroup(CLI::Option& option, const char* placeholder) const;
    void keep(Complaint wrong);

    CLI::App& command_;
    std::string group_ = "Options";
    Complaint wrong_;
    std::vector<std::function<Complaint()>> checks_;
};

/// Reads a number from low to high, counted in unit (see quantities.h); right says what would be
/// right.
template <typename Number>
OptionReader::Read numberInto(std::optional<Number>& value, const char* unit, double low,
                              double high, const char* right) {
    return [=, &value](const char* option, const std::string& text) {
        double number = 0;
        Complaint wrong = readNumber(option, text, unit, low, high, right, number);
        if (!wrong) value = static_cast<Number>(number);
        return wrong;
    };
}

/// Reads a time (see quantities.h) from low to high seconds. Beats are those of host's tempo, which
/// is declared before.
OptionReader::Read secondsInto(std::optional<double>& seconds, const HostRequest& host, double low,
                               double high, const char* right);

/// Reads the name of a file, which is not empty.
OptionReader::Read pathInto(std::optional<std::filesystem::path>& path);

} // namespace zephyra

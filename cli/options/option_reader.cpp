#include "cli/options/option_reader.h"

#include "platform/text/quantities.h"

#include <CLI/App.hpp>

namespace zephyra {

CLI::Option& OptionReader::inGroup(CLI::Option& option, const char* placeholder) const {
    option.group(group_);
    return *option.option_text(placeholder)->expected(1);
}

void OptionReader::keep(Complaint wrong) {
    if (!wrong_) wrong_ = std::move(wrong);
}

void OptionReader::add(const char* names, const char* placeholder, const char* help, Read read) {
    const std::string all = names;
    const auto readInto = [this, read = std::move(read), name = all.substr(0, all.find(','))](
                              const std::string& text) { keep(read(name.c_str(), text)); };
    inGroup(*command_.add_option_function<std::string>(names, readInto, help), placeholder);
}

void OptionReader::addRepeated(const char* name, const char* placeholder, const char* help,
                               Read read) {
    const auto readEach = [this, read = std::move(read),
                           name](const std::vector<std::string>& texts) {
        for (const std::string& text : texts) keep(read(name, text));
    };
    inGroup(*command_.add_option_function<std::vector<std::string>>(name, readEach, help),
            placeholder)
        .multi_option_policy(CLI::MultiOptionPolicy::TakeAll)
        ->allow_extra_args(false);
}

void OptionReader::addFlag(const char* name, const char* help, std::function<void()> given) {
    command_.add_flag_callback(name, std::move(given), help)->group(group_);
}

void OptionReader::addFlag(const char* name, const char* help, bool& given) {
    command_.add_flag(name, given, help)->group(group_);
}

void OptionReader::addFlag(const char* name, const char* placeholder, const char* help, Read read) {
    constexpr const char* kNoValue = "true"; // what the parser has for a flag that is given
    const auto readInto = [this, read = std::move(read), name](const std::string& text) {
        keep(read(name, text == kNoValue ? std::string() : text));
    };
    inGroup(*command_.add_option_function<std::string>(name, readInto, help), placeholder)
        .expected(0);
}

bool OptionReader::isGiven(const char* name) const {
    return command_.count(name) > 0;
}

Complaint OptionReader::complaint() const {
    for (const auto& check : checks_)
        if (Complaint wrong = check()) return wrong;
    return wrong_;
}

OptionReader::Read secondsInto(std::optional<double>& seconds, const HostRequest& host, double low,
                               double high, const char* right) {
    return [=, &seconds, &host](const char* option, const std::string& text) -> Complaint {
        const std::optional<TypedTime> time = parseTime(text);
        const double typed = time ? time->seconds(host.tempo.value_or(kDefaultTempo)) : -1;
        if (!time || typed < low || typed > high) return wrongValue(option, text, right);
        seconds = typed;
        return {};
    };
}

OptionReader::Read pathInto(std::optional<std::filesystem::path>& path) {
    return [&path](const char* option, const std::string& text) -> Complaint {
        if (text.empty()) return wrongValue(option, text, "a file name");
        path = text;
        return {};
    };
}

} // namespace zephyra

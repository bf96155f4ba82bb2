#include "cli/options/option_values.h"

#include "platform/text/names.h"
#include "platform/text/quantities.h"

#include <algorithm>

namespace zephyra {

namespace {

std::string listed(std::span<const std::string_view> keys) {
    std::string text;
    for (const std::string_view key : keys) text += (text.empty() ? "" : ", ") + std::string(key);
    return text;
}

} // namespace

Complaint readNumber(std::string_view option, std::string_view text, std::string_view unit,
                     double low, double high, const char* right, double& value) {
    const std::optional<double> number = parseIn(unit, text);
    if (!number || *number < low || *number > high) return wrongValue(option, text, right);
    value = *number;
    return {};
}

Complaint KeyValues::add(std::string_view part, std::span<const std::string_view> keys,
                         std::span<const OtherWords> others) {
    const std::size_t sign = part.find('=');
    const std::string plain = plainName(part.substr(0, sign));
    const auto key = std::find_if(keys.begin(), keys.end(),
                                  [&plain](auto known) { return plainName(known) == plain; });
    if (key == keys.end())
        return Failure{"there is no key " + inQuotes(part.substr(0, sign)) + "; " +
                       rightName(plain, keys, others) + " (of " + listed(keys) + ")"};
    if (sign == std::string_view::npos)
        return Failure{std::string(*key) + " has no value; write " + std::string(*key) + "=VALUE"};
    if (find(*key)) return Failure{std::string(*key) + " is given twice; leave one out"};
    entries_.push_back({*key, part.substr(sign + 1)});
    return {};
}

Result<KeyValues> KeyValues::read(std::string_view text, std::span<const std::string_view> keys,
                                  std::span<const OtherWords> others) {
    KeyValues all;
    while (!text.empty()) {
        const std::size_t comma = text.find(',');
        if (auto wrong = all.add(text.substr(0, comma), keys, others)) return std::move(*wrong);
        text.remove_prefix(comma == std::string_view::npos ? text.size() : comma + 1);
    }
    return all;
}

std::optional<std::string_view> KeyValues::find(std::string_view key) const {
    for (const Entry& entry : entries_)
        if (entry.key == key) return entry.value;
    return std::nullopt;
}

Complaint KeyValues::readNumber(std::string_view key, std::string_view unit, double low,
                                double high, const char* right,
                                std::optional<double>& value) const {
    const auto typed = find(key);
    if (!typed) return {};
    return zephyra::readNumber(key, *typed, unit, low, high, right, value.emplace());
}

Complaint KeyValues::readNumber(std::string_view key, std::string_view unit, double low,
                                double high, const char* right, float& value) const {
    std::optional<double> number;
    Complaint wrong = readNumber(key, unit, low, high, right, number);
    if (number) value = static_cast<float>(*number);
    return wrong;
}

} // namespace zephyra

#include "cli/commands/commands.h"

#include "audiounit/control_text.h"
#include "cli/terminal/json_text.h"
#include "cli/terminal/text_table.h"
#include "controls/state_keys.h"
#include "engine/envelope_menu.h"
#include "library/bank_edits.h"
#include "platform/files/folder_entries.h"
#include "platform/text/message_text.h"
#include "platform/text/text_numbers.h"
#include "presets/picked_presets.h"
#include "presets/preset_facts.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <nlohmann/json.hpp>
#include <optional>
#include <string_view>

namespace zephyra {

namespace {

using Json = nlohmann::ordered_json;

/// The control that a record keeps under key; null for none.
const ControlRange* controlKeptAs(std::string_view key) {
    for (const ControlRange& range : controlRanges())
        if (*range.channel && key == controlChannel(range, kStreamSuffix)) return &range;
    return nullptr;
}

std::optional<double> numberIn(const PropertyValue& value) {
    if (const auto* const real = value.as<double>()) return *real;
    if (const auto* const whole = value.as<std::int64_t>()) return static_cast<double>(*whole);
    if (const auto* const flag = value.as<bool>()) return *flag ? 1.0 : 0.0;
    return std::nullopt;
}

std::string envelopeName(double menu) {
    constexpr std::string_view lead = "Grain Envelope: ";
    const std::string_view entry = kEnvelopeMenu[static_cast<std::size_t>(menu)];
    return std::string(entry.starts_with(lead) ? entry.substr(lead.size()) : entry);
}

/// The control's value as people read it; nothing where it holds none that the control takes.
std::optional<std::string> controlText(const ControlRange& range, const PropertyValue& value) {
    const auto number = numberIn(value);
    if (!number || std::isnan(*number)) return std::nullopt;
    constexpr double most = std::numeric_limits<float>::max();
    const float displayed =
        displayedFromLinear(range, static_cast<float>(std::clamp(*number, -most, most)));
    if (!acceptsValue(range, displayed)) return std::nullopt;
    return range.id == ControlId::envelope ? envelopeName(double{displayed})
                                           : valueText(range, displayed);
}

// --- as text ---

struct PlainText {
    std::string operator()(const std::string& text) const { return text; }
    std::string operator()(std::int64_t number) const { return std::to_string(number); }
    std::string operator()(double real) const { return formatNumber(real); }
    std::string operator()(bool flag) const { return flag ? "yes" : "no"; }
    std::string operator()(const PropertyDate& date) const {
        return formatFixed(date.seconds, 0) + " seconds after the beginning of 2001";
    }
    std::string operator()(const PropertyData& data) const {
        return std::to_string(data.size()) + " bytes";
    }
    std::string operator()(const PropertyArray& array) const { return array.empty() ? "none" : ""; }
    std::string operator()(const PropertyDictionary& dictionary) const {
        return dictionary.empty() ? "nothing" : "";
    }
};

/// Without the controls that nothing is assigned to, which are nearly all.
PropertyValue assigned(const PropertyValue& assignments) {
    const auto* const all = assignments.as<PropertyArray>();
    if (!all) return assignments;
    PropertyArray kept = *all;
    std::erase_if(kept, [](const PropertyValue& one) {
        const auto* const record = one.as<PropertyDictionary>();
        const auto type =
            record ? record->find(assignment_key::kType) : PropertyDictionary::const_iterator();
        const auto* const number =
            record && type != record->end() ? type->second.as<std::int64_t>() : nullptr;
        return number && *number == 0;
    });
    return kept;
}

/// A row for the value, and one for each in it.
void addRows(TextTable& table, const std::string& path, const PropertyValue& value) {
    if (const auto* const inside = value.as<PropertyDictionary>(); inside && !inside->empty()) {
        for (const auto& [key, one] : *inside) addRows(table, path + "." + key, one);
        return;
    }
    if (const auto* const all = value.as<PropertyArray>(); all && !all->empty()) {
        for (std::size_t i = 0; i < all->size(); ++i)
            addRows(table, path + "[" + std::to_string(i) + "]", (*all)[i]);
        return;
    }
    table.addRow({path, std::visit(PlainText{}, value.variant())});
}

std::string textOf(const PropertyDictionary& record) {
    TextTable controls, others;
    for (const ControlRange& range : controlRanges()) // in the order that people know
        for (const auto& [key, value] : record)
            if (controlKeptAs(key) == &range)
                controls.addRow(
                    {range.name, controlText(range, value)
                                     .value_or("not set: it takes no " +
                                               std::visit(PlainText{}, value.variant()))});
    for (const auto& [key, value] : record)
        if (!controlKeptAs(key) && key != kSnapshotTags)
            addRows(others, key, key == state_key::kControlAssignments ? assigned(value) : value);
    return controls.text() + (controls.isEmpty() || others.isEmpty() ? "" : "\n") + others.text();
}

// --- as JSON ---

Json jsonOf(const PropertyValue& value);

struct JsonValue {
    Json operator()(const std::string& text) const { return text; }
    Json operator()(std::int64_t number) const { return number; }
    Json operator()(double real) const { return real; }
    Json operator()(bool flag) const { return flag; }
    Json operator()(const PropertyDate& date) const { return {{"secondsSince2001", date.seconds}}; }
    Json operator()(const PropertyData& data) const { return {{"bytes", data.size()}}; }
    Json operator()(const PropertyArray& array) const {
        Json json = Json::array();
        for (const PropertyValue& one : array) json.push_back(jsonOf(one));
        return json;
    }
    Json operator()(const PropertyDictionary& dictionary) const {
        Json json = Json::object();
        for (const auto& [key, one] : dictionary) json[key] = jsonOf(one);
        return json;
    }
};

Json jsonOf(const PropertyValue& value) {
    return std::visit(JsonValue{}, value.variant());
}

std::string jsonText(const std::string& bank, const std::string& key, const std::string& name,
                     const PropertyDictionary& record) {
    Json controls = Json::object();
    for (const ControlRange& range : controlRanges())
        for (const auto& [kept, value] : record)
            if (controlKeptAs(kept) == &range)
                if (const auto text = controlText(range, value)) controls[range.name] = *text;
    const Json json = {{"bank", stemOf(bank)},
                       {"name", name},
                       {"key", key},
                       {"controls", std::move(controls)},
                       {"record", jsonOf(record)}};
    return textOfJson(json);
}

} // namespace

ExitCode runPresetShow(const CommandContext& context, const PresetShowRequest& request) {
    BankFolder banks(context.folders);
    if (request.preset == "*")
        return endWith(ExitCode::wrongUsage, "preset show takes one preset, not all");
    const auto picked = pickPresets(banks, request.bank, request.preset);
    if (!picked) return endWith(ExitCode::failure, picked.message());
    const auto& [bank, content, keys] = picked.value();
    const std::string& key = keys.front();
    const PropertyDictionary& record = *recordOf(*content, key);
    const std::string name = snapshotTag(*content, key).value_or(kUnnamed);
    if (request.json) return printOut(jsonText(bank, key, name, record));
    return printOut(onOneLine(name) + "\n" + onOneLine(key) + "\n\n" + textOf(record));
}

} // namespace zephyra

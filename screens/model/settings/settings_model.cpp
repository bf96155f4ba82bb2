#include "screens/model/settings/settings_model.h"

#include "controls/knob.h"
#include "screens/model/path/knob_text.h"

#include <algorithm>
#include <cmath>

namespace zephyra {

namespace {

constexpr float kStep = 0.02f; // of a slider
constexpr float kFineStep = kStep / 10;

// Short times are what hands look for: a slider's middle is a quarter of its range.
float shareOf(const ControlRange& range, float linear) {
    const float part = (linear - range.minimum) / (range.maximum - range.minimum);
    return std::sqrt(std::clamp(part, 0.0f, 1.0f));
}

float linearOf(const ControlRange& range, float share) {
    const float held = std::clamp(share, 0.0f, 1.0f);
    return range.minimum + held * held * (range.maximum - range.minimum);
}

bool isThere(const SettingEntry& entry, ScreenContext& context) {
    if (entry.group == SettingGroup::program) return static_cast<bool>(context.devices.open);
    return !entry.onlyInstruments || context.source.plugin().isInstrument();
}

} // namespace

SettingsModel::SettingsModel(ScreenContext& context) : context_(context), hand_(context) {
    for (const SettingEntry& entry : settingEntries())
        if (isThere(entry, context)) rows_.push_back({.entry = &entry});
    context_.source.asMain([this](AudioUnitViewController& view) { read(view, {}); });
    context_.source.add(*this);
}

SettingsModel::~SettingsModel() {
    context_.source.remove(*this);
}

void SettingsModel::readAmount(AudioUnitViewController& view, SettingRow& row) const {
    const ControlRange& range = controlRange(row.entry->control);
    const MOK_KNOB* const knob = view.knob(range.id);
    if (!knob) return;
    row.share = shareOf(range, knob->value());
    row.value = knobText(range, displayedFromLinear(range, knob->value())).whole();
}

void SettingsModel::read(AudioUnitViewController& view, const FrameTime&) {
    for (SettingRow& row : rows_) {
        switch (row.entry->kind) {
        case SettingKind::amount:
            readAmount(view, row);
            break;
        case SettingKind::choice:
        case SettingKind::toggle:
            row.chosen = row.entry->read(context_);
            row.value =
                row.chosen < row.entry->choices.size() ? row.entry->choices[row.chosen] : "other";
            break;
        case SettingKind::action:
            row.value = context_.devices.audio ? context_.devices.audio() : "";
            break;
        case SettingKind::fact:
            row.value = context_.devices.midi ? context_.devices.midi() : "";
            break;
        }
    }
}

const SettingEntry* SettingsModel::entryOf(std::size_t row) const {
    return row < rows_.size() ? rows_[row].entry : nullptr;
}

void SettingsModel::choose(std::size_t row, std::size_t choice) {
    const SettingEntry* const entry = entryOf(row);
    if (!entry || choice >= entry->choices.size()) return;
    if (entry->read(context_) != choice) entry->choose(context_, choice);
    context_.source.asMain([this](AudioUnitViewController& view) { read(view, {}); });
}

void SettingsModel::step(std::size_t row, int by, Fineness fineness, double now) {
    const SettingEntry* const entry = entryOf(row);
    if (!entry) return;
    if (entry->kind == SettingKind::amount)
        return slide(row,
                     rows_[row].share +
                         static_cast<float>(by) * (fineness == Fineness::fine ? kFineStep : kStep),
                     now);
    if (entry->choices.empty()) return;
    const auto last = static_cast<int>(entry->choices.size()) - 1;
    const bool isOther = rows_[row].chosen == SettingEntry::kOther;
    const int from = isOther ? (by > 0 ? -1 : last + 1) : static_cast<int>(rows_[row].chosen);
    choose(row, static_cast<std::size_t>(std::clamp(from + by, 0, last)));
}

void SettingsModel::stepToEnd(std::size_t row, bool last, double now) {
    const SettingEntry* const entry = entryOf(row);
    if (!entry) return;
    if (entry->kind == SettingKind::amount) return slide(row, last ? 1.0f : 0.0f, now);
    if (!entry->choices.empty()) choose(row, last ? entry->choices.size() - 1 : 0);
}

void SettingsModel::slide(std::size_t row, float share, double now) {
    const SettingEntry* const entry = entryOf(row);
    if (!entry || entry->kind != SettingKind::amount) return;
    hand_.turnTo(entry->control, linearOf(controlRange(entry->control), share), now);
    context_.source.asMain([&](AudioUnitViewController& view) { readAmount(view, rows_[row]); });
}

void SettingsModel::put(std::size_t row, double place, double now) {
    const SettingEntry* const entry = entryOf(row);
    if (!entry || std::isnan(place)) return;
    if (entry->kind == SettingKind::amount)
        return slide(row, static_cast<float>(std::clamp(place, 0.0, 1.0)), now);
    if (entry->choices.empty()) return;
    const auto last = static_cast<double>(entry->choices.size() - 1);
    choose(row, static_cast<std::size_t>(std::lround(std::clamp(place, 0.0, last))));
}

void SettingsModel::press(std::size_t row) {
    const SettingEntry* const entry = entryOf(row);
    if (!entry) return;
    if (entry->kind == SettingKind::action && context_.devices.open) return context_.devices.open();
    if (entry->choices.empty()) return;
    choose(row, (rows_[row].chosen + 1) % entry->choices.size()); // the first one after kOther
}

void SettingsModel::reset(std::size_t row) {
    const SettingEntry* const entry = entryOf(row);
    if (entry && entry->kind == SettingKind::amount) hand_.reset(entry->control);
}

Result<void> SettingsModel::type(std::size_t row, const std::string& text) {
    const SettingEntry* const entry = entryOf(row);
    if (!entry) return {};
    if (entry->kind == SettingKind::amount) return hand_.type(entry->control, text);
    if (entry->choices.empty())
        return Failure{std::string(entry->name) + " takes no text" +
                       (entry->kind == SettingKind::action ? "; press it to choose" : "")};
    std::string names;
    for (std::size_t i = 0; i < entry->choices.size(); ++i) {
        if (text == entry->choices[i]) return choose(row, i), Result<void>();
        names += (i == 0 ? "" : ", ") + std::string(entry->choices[i]);
    }
    return Failure{std::string(entry->name) + " must be one of: " + names};
}

} // namespace zephyra

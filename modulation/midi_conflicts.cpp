#include "modulation/midi_conflicts.h"

#include "controls/named_knobs.h"
#include "modulation/midi_values.h"
#include "platform/text/message_text.h"

#include <algorithm>
#include <map>
#include <optional>

namespace zephyra {

namespace {

using Navigation = MidiManager::Navigation;

/// In the order of their first appearance.
template <typename Item>
void addOnce(std::vector<Item>& items, const Item& item) {
    if (std::find(items.begin(), items.end(), item) == items.end()) items.push_back(item);
}

bool isController(const MidiTrigger& trigger, int number) {
    if (trigger.source == MidiSource::controller14)
        return number == trigger.number || number == trigger.number + MidiValues::kFineHalf;
    return trigger.source == MidiSource::controller && number == trigger.number;
}

bool sharesChannel(int one, int other) {
    return one == 0 || other == 0 || one == other;
}

/// Whether all that trigger is about, or one half of it, reaches other as well. What comes on any
/// channel does not always reach one that listens to a single channel; that one has a line of its
/// own.
bool reaches(const MidiTrigger& trigger, const MidiTrigger& other) {
    if (other.channel != 0 && other.channel != trigger.channel) return false;
    const auto half = [&](int number) {
        return isController(trigger, number) && isController(other, number);
    };
    return (trigger.source == other.source && trigger.number == other.number) ||
           half(trigger.number) || half(trigger.number + MidiValues::kFineHalf);
}

void addSharedTriggers(std::vector<std::string>& lines, const std::vector<MidiBinding>& bindings,
                       const ControlManager& controls) {
    std::vector<MidiTrigger> triggers;
    for (const MidiBinding& binding : bindings) addOnce(triggers, binding.trigger);
    for (const MidiTrigger& trigger : triggers) {
        std::vector<const Control*> moved;
        for (const MidiBinding& binding : bindings)
            if (reaches(trigger, binding.trigger)) addOnce<const Control*>(moved, binding.control);
        if (moved.size() < 2) continue;
        std::vector<std::string> names;
        for (const Control* const control : moved) names.push_back(controls.displayName(*control));
        lines.push_back(triggerText(trigger) + " moves " + spokenList(names));
    }
}

void addSharedControls(std::vector<std::string>& lines, const std::vector<MidiBinding>& bindings,
                       const ControlManager& controls) {
    std::vector<const Control*> order;
    std::map<const Control*, std::vector<std::string>> movers;
    for (const MidiBinding& binding : bindings) {
        addOnce<const Control*>(order, binding.control);
        movers[binding.control].push_back(triggerText(binding.trigger));
    }
    for (const Control* const control : order)
        if (const auto& triggers = movers[control]; triggers.size() > 1)
            lines.push_back(controls.displayName(*control) + " is moved by " +
                            spokenList(triggers));
}

/// Notes from first to last.
struct NoteRange {
    int first, last;
    bool has(int note) const { return note >= first && note <= last; }
};

std::optional<NoteRange> notesFrom(std::optional<int> first, int count) {
    if (!first) return std::nullopt;
    return NoteRange{*first, std::min(*first + count, 128) - 1};
}

void addNavigation(std::vector<std::string>& lines, const std::vector<MidiBinding>& bindings,
                   const Navigation& navigation, const ControlManager& controls) {
    const auto banks = notesFrom(navigation.firstBankNote, navigation.bankNotes);
    const auto presets = notesFrom(navigation.firstPresetNote, navigation.presetNotes);
    for (const MidiBinding& binding : bindings) {
        const MidiTrigger& trigger = binding.trigger;
        if (!sharesChannel(trigger.channel, navigation.channel)) continue;
        const auto add = [&](const char* what) {
            lines.push_back(triggerText(trigger) + " moves " +
                            controls.displayName(*binding.control) + " and so chooses no " + what);
        };
        const bool note = trigger.source == MidiSource::note;
        if ((navigation.bankSelectsBanks && isController(trigger, 0)) ||
            (note && banks && banks->has(trigger.number)))
            add("bank");
        if (note && presets && presets->has(trigger.number)) add("preset");
    }
    if (!banks || !presets) return;
    const NoteRange both{std::max(banks->first, presets->first),
                         std::min(banks->last, presets->last)};
    if (both.first <= both.last)
        lines.push_back("Notes " + midiNoteName(both.first) + " to " + midiNoteName(both.last) +
                        " choose both a bank and a preset");
}

} // namespace

std::vector<std::string> midiConflicts(const std::vector<MidiBinding>& bindings,
                                       const Navigation& navigation,
                                       const ControlManager& controls) {
    std::vector<std::string> lines;
    addSharedTriggers(lines, bindings, controls);
    addSharedControls(lines, bindings, controls);
    addNavigation(lines, bindings, navigation, controls);
    return lines;
}

} // namespace zephyra

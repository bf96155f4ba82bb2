// Saving and restoring of ControlManager.

#include "controls/state_keys.h"
#include "modulation/control_manager.h"

#include <map>

namespace zephyra {

namespace {

using namespace assignment_key;

/// The current records of one name, in their order, and which of them is next.
struct Namesakes {
    std::vector<std::size_t> records;
    std::size_t next = 0;
    bool isSole() const { return records.size() == 1; }
};

const std::string* savedName(const PropertyDictionary& record) {
    const auto name = record.find(kName);
    return name == record.end() ? nullptr : name->second.as<std::string>();
}

bool hasType(const PropertyDictionary& record) {
    const auto type = record.find(kType);
    return type != record.end() && type->second.as<std::int64_t>();
}

} // namespace

PropertyArray ControlManager::getState() {
    refreshWrapperStates();
    return _params;
}

void ControlManager::refreshWrapperStates() {
    for (std::size_t i = 0; i < _params.size(); ++i) {
        PropertyDictionary& record = recordAt(i);
        const auto keep = [&record](PropertyDictionary info) {
            if (!info.empty()) record[kWrapperState] = std::move(info);
        };
        switch (typeAt(i)) {
        case AssignmentType::none:
            record.erase(kWrapperState);
            break;
        case AssignmentType::scrubY:
        case AssignmentType::secondFinger:
            for (const ScrubReference* const reference : scrubRef)
                keep(reference->getWrapperInfo(controls_[i]));
            break;
        case AssignmentType::lfo:
            keep(_lfo.getWrapperInfo(controls_[i]));
            break;
        default:
            break; // others' business, or a newer program's
        }
    }
}

StateFindings ControlManager::restoreState(const PropertyArray& records) {
    refreshWrapperStates(); // controls that no record names go on as they are
    StateFindings findings;
    takeSaved(records, findings);
    removeAllWidgets();
    for (std::size_t i = 0; i < _params.size(); ++i) bindRecord(i, findings);
    updateMappingParametersFromWrappers();
    followTempo();
    return findings;
}

void ControlManager::takeSaved(const PropertyArray& records, StateFindings& findings) {
    std::map<std::string, Namesakes, std::less<>> byName;
    for (std::size_t i = 0; i < _params.size(); ++i)
        byName[*recordAt(i).at(kName).as<std::string>()].records.push_back(i);

    std::size_t broken = 0, strangers = 0, twice = 0;
    for (const PropertyValue& saved : records) {
        const auto* const record = saved.as<PropertyDictionary>();
        const std::string* const name = record ? savedName(*record) : nullptr;
        const auto found = name ? byName.find(*name) : byName.end();
        Namesakes* const here = found == byName.end() ? nullptr : &found->second;
        if (!name || !hasType(*record)) {
            ++broken;
            if (here && !here->isSole()) ++here->next; // the n-th of several is the n-th one's
        } else if (here && here->isSole()) {
            if (here->next++ != 0) ++twice;
            _params[here->records[0]] = saved;
        } else if (here && here->next < here->records.size()) {
            _params[here->records[here->next++]] = saved;
        } else {
            ++strangers;
        }
    }
    // One line for all: a file may hold any number of them.
    if (broken != 0)
        findings.push_back({{},
                            std::to_string(broken) +
                                " assignment(s) left out: each needs a text for its "
                                "\"name\" and a whole number for its \"type\"",
                            StandIn::asBefore});
    if (strangers != 0)
        findings.push_back(
            {{},
             std::to_string(strangers) + " assignment(s) left out: no such control is here",
             StandIn::nothing});
    complainOfTwice(findings, twice, "assignment(s)");
}

void ControlManager::bindRecord(std::size_t index, StateFindings& findings) {
    PropertyDictionary& record = recordAt(index);
    Control* const control = controls_[index];
    const AssignmentType type = typeAt(index);
    PropertyReader reader(record, findings, "Assignment of " + names_[index], StandIn::usual);
    const PropertyDictionary* const saved = reader.dictionary(kWrapperState);
    PropertyDictionary state = saved ? *saved : PropertyDictionary{};
    const bool second = type == AssignmentType::secondFinger;
    if (second || type == AssignmentType::scrubY) {
        state[wrapper_key::kSecondFinger] = second; // the type decides, whatever the state says
        for (ScrubReference* const reference : scrubRef)
            append(findings, reference->setWrapperInfo_fromDictionary(control, state));
    } else if (type == AssignmentType::lfo) {
        append(findings, _lfo.setWrapperInfo_fromDictionary(control, state));
    }
    const bool hasText = reader.text(kText).has_value();
    if (type == AssignmentType::none)
        setRecord(index, type, kAssignments[0].title);
    else if (!hasText)
        record[kText] = kAssignments[0].title;
    textFromWrappers(index);
}

} // namespace zephyra

#include "modulation/control_manager.h"

#include "controls/scan_target.h"
#include "controls/state_keys.h"
#include "platform/audio_unit/midi_notices.h"

#include <algorithm>
#include <utility>

namespace zephyra {

namespace {

constexpr const char* kUnassigned = kAssignments[0].title;
constexpr const char* kRemoveTitle = "Remove Assignments";

} // namespace

std::string assignmentName(const Control& control) {
    if (dynamic_cast<const MOK_KNOB*>(&control) || dynamic_cast<const Toggle*>(&control) ||
        dynamic_cast<const Button*>(&control))
        return control.channel;
    if (dynamic_cast<const ScanTarget*>(&control)) return "WaveScrubbing" + control.channel;
    return "---";
}

ControlManager::ControlManager(Instance& instance, ControlManagerDataSource& source, Idiom idiom)
    : tempo(instance.runLoop), instance_(instance), dataSource(source), _lfo(instance) {
    addLfoControls();
    if (idiom == Idiom::tablet)
        orientation_ = instance_.notifications.addObserver(
            kDeviceOrientationNotice, [this](const std::any&) { closeMidiAssigments(); });
}

ControlManager::~ControlManager() {
    instance_.notifications.removeObserver(orientation_);
}

void ControlManager::initialize() {
    removeAllWidgets();
    closePanel();
    isFiltered = false;
    filteredData.clear();
    controls_ = dataSource.getWidgetsObjForControlManager();
    names_ = dataSource.getWidgetsObjNamesForControlManager();
    colors_ = dataSource.getWidgetsObjColorsForControlManager();
    scrubRef = dataSource.getScrubReference();
    _params.clear();
    for (const Control* const control : controls_)
        _params.emplace_back(PropertyDictionary{
            {assignment_key::kName, assignmentName(*control)},
            {assignment_key::kType, static_cast<std::int64_t>(AssignmentType::none)},
            {assignment_key::kText, kUnassigned}});
}

Control* ControlManager::getParameterID(std::size_t index) const {
    return index < controls_.size() ? controls_[index] : nullptr;
}

Control* ControlManager::controlNamed(std::string_view name) const {
    const auto found =
        std::find_if(controls_.begin(), controls_.end(),
                     [&](const Control* control) { return assignmentName(*control) == name; });
    return found == controls_.end() ? nullptr : *found;
}

std::string ControlManager::displayName(const Control& control) const {
    const auto index = indexOf(control);
    return index ? names_[*index] : assignmentName(control);
}

AssignmentType ControlManager::typeOf(const Control& control) const {
    const auto index = indexOf(control);
    return index ? typeAt(*index) : AssignmentType::none;
}

AssignmentType ControlManager::typeAt(std::size_t index) const {
    return static_cast<AssignmentType>(
        *recordAt(index).at(assignment_key::kType).as<std::int64_t>());
}

std::optional<std::size_t> ControlManager::indexOf(const Control& control) const {
    const auto found = std::find(controls_.begin(), controls_.end(), &control);
    if (found == controls_.end()) return std::nullopt;
    return static_cast<std::size_t>(found - controls_.begin());
}

void ControlManager::onMain(RunLoop::Task task) {
    instance_.runLoop.post([life = std::weak_ptr<void>(life_), task = std::move(task)] {
        if (!life.expired()) task();
    });
}

// --- Assigning ---

bool ControlManager::assign(Control& control, AssignmentType type) {
    const auto index = indexOf(control);
    if (!index) return false;
    const AssignmentType before = typeAt(*index);
    unbind(control); // also from the same source: it begins anew, with the full range
    setRecord(*index, type, kUnassigned);
    bind(control, type);
    textFromWrappers(*index);
    if (panel.control == &control) updateMappingParametersFromWrappers();
    tell(control, before, type);
    return true;
}

void ControlManager::record(Control& control, AssignmentType type, const std::string& text) {
    const auto index = indexOf(control);
    if (!index) return;
    if (typeAt(*index) != type) unbind(control);
    setRecord(*index, type, text);
    if (panel.control == &control) updateMappingParametersFromWrappers();
}

void ControlManager::setRecord(std::size_t index, AssignmentType type, const std::string& text) {
    PropertyDictionary& record = recordAt(index);
    record[assignment_key::kType] = static_cast<std::int64_t>(type);
    record[assignment_key::kText] = text;
    record.erase(
        assignment_key::kWrapperState); // what drives the control says it when the state is taken
}

void ControlManager::textFromWrappers(std::size_t index) {
    const AssignmentType bound = boundTo(*controls_[index]);
    if (bound != AssignmentType::none)
        recordAt(index)[assignment_key::kText] = assignmentEntry(bound)->assigned;
}

void ControlManager::bind(Control& control, AssignmentType type) {
    if (type == AssignmentType::lfo) _lfo.addWidget(&control);
    if (type != AssignmentType::scrubY && type != AssignmentType::secondFinger) return;
    for (ScrubReference* const reference : scrubRef)
        reference->addWidget_forSecondFinger(&control, type == AssignmentType::secondFinger);
}

void ControlManager::unbind(const Control& control) {
    for (ScrubReference* const reference : scrubRef) reference->removeWidget(&control);
    _lfo.removeWidget(&control);
}

void ControlManager::removeAllWidgets() {
    for (ScrubReference* const reference : scrubRef) reference->removeAllWidgets();
    _lfo.removeAllWidgets();
}

AssignmentType ControlManager::boundTo(const Control& control) const {
    if (_lfo.getWrapperID(&control)) return AssignmentType::lfo;
    for (ScrubReference* const reference : scrubRef)
        if (reference->getWrapperID(&control))
            return reference->followsSecondFinger(&control) ? AssignmentType::secondFinger
                                                            : AssignmentType::scrubY;
    return AssignmentType::none;
}

void ControlManager::tell(Control& control, AssignmentType before, AssignmentType after) {
    const Observer observer = observer_; // stays alive if it replaces itself
    if (observer) observer(control, before, after);
}

// --- Table and search ---

std::size_t ControlManager::numberOfRows() const {
    return isFiltered ? filteredData.size() : _params.size();
}

std::size_t ControlManager::recordOfRow(std::size_t row) const {
    return isFiltered ? filteredData[row].record : row;
}

AssignmentRow ControlManager::row(std::size_t index) const {
    if (index >= numberOfRows()) return {};
    const std::size_t record = recordOfRow(index);
    const AssignmentEntry* const entry = assignmentEntry(typeAt(record));
    return {names_[record], colors_[record],
            *recordAt(record).at(assignment_key::kText).as<std::string>(),
            entry ? entry->icon : ""};
}

bool ControlManager::selectRow(std::size_t index) {
    if (index >= numberOfRows()) return false;
    const std::size_t record = recordOfRow(index);
    panel = {};
    panel.shown = true;
    panel.control = controls_[record];
    panel.currentIndexPath = record;
    updateMappingParametersFromWrappers();
    return true;
}

void ControlManager::searchBar_textDidChange(std::string_view text) {
    isEditing = false;
    isFiltered = !text.empty();
    filteredData.clear();
    if (isFiltered) filteredData = searchAssignments(_params, names_, text);
}

// --- Removing ---

void ControlManager::clearAssignements() {
    onMain([this] {
        bool any = false;
        for (std::size_t i = 0; i < _params.size(); ++i) any |= typeAt(i) != AssignmentType::none;
        if (!any) {
            instance_.alerts.present(
                {kRemoveTitle, "No one connections has been found!", {{"OK"}}});
            return;
        }
        const auto remove = [this, life = std::weak_ptr<void>(life_)](const std::string&) {
            if (!life.expired()) removeAllAssignations();
        };
        instance_.alerts.present(
            {kRemoveTitle, "Do you want remove all connections?", {{"YES", remove, true}, {"NO"}}});
    });
}

void ControlManager::removeAllAssignations() {
    removeAllWidgets();
    std::vector<std::pair<Control*, AssignmentType>> removed;
    for (std::size_t i = 0; i < _params.size(); ++i) {
        if (typeAt(i) != AssignmentType::none) removed.emplace_back(controls_[i], typeAt(i));
        setRecord(i, AssignmentType::none, kUnassigned);
    }
    updateMappingParametersFromWrappers();
    // Told at the end: whoever hears of one finds all of them removed.
    for (const auto& [control, before] : removed) tell(*control, before, AssignmentType::none);
}

// --- MIDI ---

void ControlManager::showMidiManager() {
    instance_.notifications.post(midi_notice::kShowManager, std::any(this));
}

void ControlManager::closeMidiAssigments() {
    instance_.notifications.post(midi_notice::kCloseManager, std::any(this));
}

} // namespace zephyra

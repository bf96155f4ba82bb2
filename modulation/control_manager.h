// ControlManager: which source drives which control, as a table that is searched, edited and saved.
#pragma once

#include "controls/named_knobs.h"
#include "controls/tap_tempo.h"
#include "controls/toggle.h"
#include "modulation/assignment.h"
#include "modulation/assignment_search.h"
#include "modulation/control_manager_data_source.h"
#include "modulation/lfo_widgets_mapping.h"
#include "modulation/mapping_panel.h"
#include "modulation/modulation.h"
#include "platform/instance.h"
#include "platform/lists/property_list.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace zephyra {

/// A row of the table.
struct AssignmentRow {
    std::string title; ///< display name
    int color;         ///< of its group
    std::string text;  ///< what it is assigned to; shown small, in italics
    std::string icon;  ///< empty for none
};

/// The control's identity in records: its channel, "WaveScrubbing" and the stream's channel for a
/// scan target, "---" for what is neither knob, toggle nor button.
std::string assignmentName(const Control& control);

/// Keeps the records and asks the wrappers to do the work; MIDI and tilt are only recorded here,
/// their own managers hear of it through the observer. MAIN.
class ControlManager final : public Modulation {
public:
    enum class Idiom { tablet, other };

    /// The notice that closes the MIDI assignments on a tablet.
    static constexpr const char* kDeviceOrientationNotice = "DeviceOrientationDidChange";

    /// All must outlive this. Call initialize() once the data source has its controls.
    ControlManager(Instance& instance, ControlManagerDataSource& dataSource,
                   Idiom idiom = Idiom::other);
    ~ControlManager() override;

    /// One record per control, all unassigned.
    void initialize();

    // Modulation
    LFO_WIDGETS_MAPPING* getLfoWidgetsMapping() override { return &_lfo; }
    /// The host's tempo; not finite or not above 0 counts as none known.
    void syncStateDidChangedWithBPM(double bpm) override;

    // --- Controls by identity ---

    /// Null beyond the list.
    Control* getParameterID(std::size_t index) const;
    /// The first control of that identity; null when there is none.
    Control* controlNamed(std::string_view name) const;
    /// As the table shows it; the identity of a control without a record.
    std::string displayName(const Control& control) const;
    AssignmentType typeOf(const Control& control) const; ///< none for a control without a record

    // --- Assigning: what the mapping panel does, for any control ---

    /// Takes the control from the source that it had and gives it to this one. False, and nothing
    /// changed, for a control without a record.
    bool assign(Control& control, AssignmentType type);
    /// Only records, for sources with a manager of their own: sets type and text, tells nobody.
    /// What drove the control here goes when the type changes.
    void record(Control& control, AssignmentType type, const std::string& text);
    /// Called after every change that assign() or removal made, with the type before and after.
    using Observer = std::function<void(Control&, AssignmentType, AssignmentType)>;
    void setObserver(Observer observer) { observer_ = std::move(observer); }

    // --- Table and search ---

    /// All records, or those that the search found.
    std::size_t numberOfRows() const;
    AssignmentRow row(std::size_t index) const; ///< empty beyond the last
    /// Opens the mapping panel for that row.
    bool selectRow(std::size_t index);
    /// Case-insensitive, on display names and identities; an empty text ends the search.
    void searchBar_textDidChange(std::string_view text);
    bool isFiltered = false;
    bool isEditing = false; ///< the table's editing mode

    // --- The mapping panel, for the selected control; nothing while it is closed ---

    MappingPanel panel;
    void closePanel();
    void performMapping(std::int64_t segment); ///< refused with a log line beyond the selector
    void setMinMax(float min, float max);      ///< fractions of the control's linear range
    void setGravity(float gravity);
    /// The panel's slider: the velocity of a scrub, the free rate in Hz of an LFO.
    void setVelocityOrRate(double value);
    /// The panel's range in the control's linear values.
    std::string setMinMaxRealRangeLabel() const;
    void setLfoShape(std::int64_t shape);
    void toggleLFO_HZ_TO_LINK(bool linked);
    void setClockSubdivision(int clockSub, double clockSubMult);
    void updateMappingParametersFromWrappers();

    void resetPhaseAll(); ///< of every control that an LFO drives
    void resetPhaseAllAtValue(double phase);
    void resetPhaseCurrent(); ///< of the selected control

    // --- Removing ---

    /// Asks first.
    void clearAssignements();
    void removeAllAssignations();

    // --- MIDI ---

    void showMidiManager();     ///< posts midi_notice::kShowManager with this
    void closeMidiAssigments(); ///< posts midi_notice::kCloseManager with this

    // --- State ---

    /// A copy of the records: "name", "type", "text" and, for scrubs and LFOs, "WrapperState".
    PropertyArray getState();
    /// Records of controls that are not there, and those without a name or a whole number for their
    /// type, are dropped and counted in the answer, as are those that a later one of the same name
    /// replaces. Where several controls have one name, the first record of it goes to the first of
    /// them, the next one to the next. A control that no record names keeps its assignment.
    StateFindings restoreState(const PropertyArray& records);

    // --- The LFO clock's own controls ---

    double BPM_LOCAL = 120.0;       ///< tapped
    std::optional<double> BPM_LINK; ///< the host's; none known at first
    MOK_TAP tempo;                  ///< sets BPM_LOCAL
    MokKnobEnum subdivisions;       ///< "ClockSub" of the selected control
    MOK_KNOB subdivisionsMultiplication;
    Toggle LFO_LINK_TOGGLE;
    Button lfo_sync_local, lfo_sync_all; ///< reset the phase of the selected, of every control
    /// The tempo that counts: the host's, else the tapped one once tapped, else 120.
    double currentTempo() const;

private:
    PropertyDictionary& recordAt(std::size_t index) {
        return *_params[index].as<PropertyDictionary>();
    }
    const PropertyDictionary& recordAt(std::size_t index) const {
        return *_params[index].as<PropertyDictionary>();
    }
    AssignmentType typeAt(std::size_t index) const;
    std::optional<std::size_t> indexOf(const Control& control) const;
    std::size_t recordOfRow(std::size_t row) const;
    void addLfoControls();
    void onMain(RunLoop::Task task);
    void tell(Control& control, AssignmentType before, AssignmentType after);
    void setRecord(std::size_t index, AssignmentType type, const std::string& text);
    void textFromWrappers(std::size_t index);
    void bind(Control& control, AssignmentType type);
    void unbind(const Control& control);
    void removeAllWidgets();
    AssignmentType boundTo(const Control& control) const;

    // control_manager_panel.cpp
    std::vector<WidgetWrapper*> selectedWrappers() const;
    LfoWidgetWrapper* selectedLfo() const;
    void fillFromScrub(const PropertyDictionary& state);
    void fillFromLfo(const LfoWidgetWrapper& wrapper);
    void showInControls();
    void followTempo();

    // control_manager_state.cpp
    void refreshWrapperStates();
    void takeSaved(const PropertyArray& records, StateFindings& findings);
    void bindRecord(std::size_t index, StateFindings& findings);

    Instance& instance_;
    ControlManagerDataSource& dataSource;
    NotificationCenter::Token orientation_ = 0;
    Observer observer_;
    LFO_WIDGETS_MAPPING _lfo;
    PropertyArray _params; // dictionaries with a "name", a whole "type" and a "text", always
    std::vector<Control*> controls_; // these three in the order of _params
    std::vector<std::string> names_;
    std::vector<int> colors_;
    std::vector<ScrubReference*> scrubRef;
    std::vector<AssignmentSearchResult> filteredData;
    bool tempoPosted_ = false;
    std::shared_ptr<void> life_ = std::make_shared<char>(); // posted steps end with this
};

} // namespace zephyra

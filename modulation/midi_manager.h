// MidiManager: MIDI learn, mappings of messages to controls, and what they move.
#pragma once

#include "modulation/control_manager.h"
#include "modulation/midi_binding.h"
#include "modulation/midi_follower.h"
#include "modulation/midi_values.h"
#include "platform/audio_unit/midi_message.h"
#include "platform/instance.h"
#include "platform/lists/property_reader.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace zephyra {

/// Opened and closed by the notices midi_notice::kShowManager and kCloseManager. MAIN.
class MidiManager {
public:
    /// Both must outlive this.
    MidiManager(Instance& instance, ControlManager& controls);
    ~MidiManager();
    MidiManager(const MidiManager&) = delete;
    MidiManager& operator=(const MidiManager&) = delete;

    static constexpr std::size_t kMostBindings = 4096;

    /// Every message that the host hands over, in order: moves what it is bound to, is learned, or
    /// chooses a bank or preset. Whether it did any of that.
    bool receive(const MidiMessage& message);
    /// As if none had come yet: wheels rest, and soft takeovers wait.
    void startAnew();

    // --- The panel ---

    bool isShown() const { return shown_; }
    void show();
    void close(); ///< ends learning

    // --- Learning: touch a control, move a controller ---

    /// The next controller, pitch bend, pressure or note-on binds to it, besides what is there. A
    /// control that is neither knob, toggle, button nor scan target is refused.
    bool learn(Control& control);
    void stopLearning();
    Control* learning() const { return learning_; }
    /// Whether learned bindings take the message's channel or any.
    bool learnsChannel = false;

    // --- Bindings ---

    const std::vector<MidiBinding>& bindings() const { return bindings_; }
    /// One for the same trigger and control is replaced. False, and nothing changed, when something
    /// in it is out of range or its control unknown to the control manager.
    bool bind(const MidiBinding& binding);
    /// What a trigger does that nothing is bound to: no assignment, and no part of the state. One
    /// that is out of range is ignored.
    void setFallback(const MidiBinding& binding);
    void unbind(std::size_t index); ///< ignored beyond the last
    void unbind(const Control& control);
    void unbindAll();
    /// A note has put played to another place, from where the held wheels that are bound to it as
    /// relative bend on. channel: the note's, 1..16, whose wheel counts where a binding takes any;
    /// 0 for a key under a hand, which goes with the wheel that moved last. Sends nothing.
    void carryBend(const Control& played, int channel);
    /// Writes what moves control into its record; one that nothing moves keeps its text.
    void describe(Control& control);
    /// A line for each trigger that moves several controls, and each control that several triggers
    /// move.
    std::vector<std::string> conflicts() const;
    /// Whether the control still waits for its controller (soft takeover).
    bool waitsForSoftTakeover(std::size_t index) const;

    // --- Banks and presets ---

    struct Navigation {
        bool programsSelectPresets = true; ///< program change n is preset n
        bool bankSelectsBanks = true;      ///< controller 0 is the bank, unless it is bound
        int channel = 0;                   ///< 1..16; 0 is any
        /// Note-ons from these notes on (0..127) choose presets and banks; none: they do not.
        std::optional<int> firstPresetNote{}, firstBankNote{};
        int presetNotes = 12, bankNotes = 12; ///< so many notes each, 1..128
        bool operator==(const Navigation&) const = default;
    };
    /// Whether programs and bank selects choose anything, whatever the navigation says; no part of
    /// the state.
    bool followsPrograms = true;
    const Navigation& navigation() const { return navigation_; }
    /// False, and nothing changed, after a log line, when something in it is out of range.
    bool setNavigation(const Navigation& navigation);

    // --- State: "Bindings" (an array) and "Navigation" (a dictionary) ---

    PropertyDictionary getState() const;
    /// Replaces the bindings when the state has any, likewise the navigation. Entries that are out
    /// of range or name no control are dropped and counted in the answer, as are those that a later
    /// one for the same trigger and control replaces.
    StateFindings restoreState(const PropertyDictionary& state);

private:
    /// The coarse half of what was learned last: its fine half may come next.
    struct Fresh {
        MidiTrigger trigger;
        Control* control;
        int channel;
    };

    static Result<void> checkNavigation(const Navigation& navigation);
    bool isKnown(const Control& control) const;
    std::optional<std::size_t> find(const MidiTrigger& trigger, const Control& control) const;
    void assignToMidi(Control& control);
    void place(const MidiBinding& binding);
    void remove(std::size_t index);
    std::vector<std::string> triggersOf(const Control& control) const;
    void showBindings(Control& control);
    bool learnFrom(const MidiMessage& message);
    bool learnFineHalf(const MidiMessage& message);
    void watchFrom(const MidiTrigger& trigger, const Control& control, const MidiMessage& message);
    bool move(const MidiMessage& message);
    bool navigate(const MidiMessage& message);

    // midi_manager_state.cpp
    void restoreBindings(const PropertyArray& saved, PropertyReader& state);
    void restoreNavigation(const PropertyDictionary& saved, PropertyReader& state);

    Instance& instance_;
    ControlManager& controls_;
    NotificationCenter::Token shows_, closes_;
    bool shown_ = false;
    Control* learning_ = nullptr;
    std::optional<Fresh> fresh_;
    std::vector<MidiBinding> bindings_;
    std::vector<std::shared_ptr<MidiFollower>> followers_; // one for each of bindings_
    MidiTrigger fallbackTrigger_;
    std::shared_ptr<MidiFollower> fallback_; // null: none
    std::uint64_t changes_ = 0; // of bindings_: what a control does when moved may change them
    MidiValues values_;
    Navigation navigation_;
};

} // namespace zephyra

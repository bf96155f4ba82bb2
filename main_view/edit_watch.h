// EditWatch: whose hand moved what while an edit was under way.
#pragma once

#include "controls/control.h"

#include <set>
#include <string>
#include <string_view>

namespace zephyra {

class AudioUnitViewController;

/// Hears every control that states keep. What a host, MIDI, an LFO or tilt moved, and no hand, is
/// theirs: undo leaves it to them. MAIN.
class EditWatch {
public:
    /// view outlives this; its controls are there.
    explicit EditWatch(AudioUnitViewController& view);
    ~EditWatch();
    EditWatch(const EditWatch&) = delete;
    EditWatch& operator=(const EditWatch&) = delete;

    /// Nothing was moved so far.
    void begin();
    /// What has no events of its own.
    void movedByHand(const std::string& key) { hands_.insert(key); }
    void movedByOthers(const std::string& key) { others_.insert(key); }
    /// Whether the value under a state's key was moved, and by nobody's hand.
    bool isOthers(const std::string& key) const;

private:
    void listen(Control& control);
    void changed(Control& control);
    bool isDriven(const Control& control) const;

    AudioUnitViewController& view_;
    std::set<std::string> hands_, others_; // keys of states
};

} // namespace zephyra

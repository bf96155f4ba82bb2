// ScreenContext: what every area of a window is given.
#pragma once

#include "screens/model/screen_layout.h"
#include "screens/model/screen_source.h"

#include <array>
#include <bitset>
#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace zephyra {

class KnobHand;

/// What a player chooses of windows; remembered beyond the instance. Plain data.
struct ScreenSettings {
    double zoom = 1.0; ///< ScreenLayout::kLeastZoom..kMostZoom
    bool showsMeter = true, showsScope = true, showsSpectrum = true; ///< off: free of cost
    bool reducedMotion = false; ///< nothing moves for decoration
    int knobStyle = 0;          ///< how drags turn knobs: an InteractionStyle
    bool operator==(const ScreenSettings&) const = default;
};

/// A row of a menu that opens beside a control.
struct MenuRow {
    std::string text; ///< empty: a line between rows
    std::function<void()> chosen = {};
    bool isTicked = false, isEnabled = true;
};

/// What opens from the foot.
enum class Drawer { presets, samples, modulation, takes, keys, pad };
inline constexpr std::size_t kDrawers = 6;

/// The devices that a program of its own plays by; empty in a plug-in, whose host has them.
struct ScreenDevices {
    std::function<void()> open = {};                    ///< shows where they are chosen
    std::function<std::string()> audio = {}, midi = {}; ///< what is open now, in a line
};

/// Message thread. The functions are the window's, and may be empty in tests of one area.
struct ScreenContext {
    ScreenSource& source;
    ScreenSettings settings = {};
    double hostScale = 1.0; ///< pixels a unit at a zoom of 1, as the host's desktop wants it
    /// Keys moved the focus last, not a pointer: what has it shows a frame.
    bool isByKeys = false;
    /// One sentence on what is under the pointer, for the foot; empty when nothing is.
    std::function<void(const std::string& sentence)> help = {};
    /// Opens a menu below box (of the window); what was chosen is called later, or nothing.
    std::function<void(const Box& box, std::vector<MenuRow> rows)> openMenu = {};
    /// A hand begins, ends an edit that undo takes back as one; name as "Density". Nested ones
    /// count as the outermost. Not inside ScreenSource::asMain.
    std::function<void(const std::string& name)> beginEdit = {};
    std::function<void()> endEdit = {};
    /// All that there are, each with its own edit by steps that may wait for more of them.
    std::vector<KnobHand*> hands = {};
    /// settings changed: remembers them, lays out and paints anew.
    std::function<void()> settingsChanged = {};
    /// Asks for a sound file or bank and loads it; for the file of a missing sample.
    std::function<void()> loadFile = {}, locateSample = {};
    /// Something covers the window: fingers that are down let go, and press nothing.
    std::function<void()> cancelTouches = {};
    /// Opens the sheet of settings.
    std::function<void()> openSettings = {};
    ScreenDevices devices = {};
    /// Opens or closes each drawer; one that is empty is not there, and has no tab.
    std::array<std::function<void()>, kDrawers> toggleDrawer = {};
    /// Whether each is open.
    std::bitset<kDrawers> openDrawers = {};
};

/// What a hand does at once, from here to the end of the block, is one edit. Message thread.
class ScreenEdit {
public:
    /// context outlives this.
    ScreenEdit(ScreenContext& context, const std::string& name) : context_(context) {
        if (context_.beginEdit) context_.beginEdit(name);
    }
    ~ScreenEdit() {
        if (context_.endEdit) context_.endEdit();
    }
    ScreenEdit(const ScreenEdit&) = delete;
    ScreenEdit& operator=(const ScreenEdit&) = delete;

private:
    ScreenContext& context_;
};

} // namespace zephyra

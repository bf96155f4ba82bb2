// SettingEntry: what a player may choose of the instance, of windows and of the program, a row
// each.
#pragma once

#include "screens/model/help_texts.h"
#include "screens/model/screen_context.h"
#include "stream/control_ranges.h"

#include <array>
#include <cstdint>
#include <span>
#include <string>

namespace zephyra {

enum class SettingId : std::uint8_t {
    fadeIn,
    fadeOut,
    noteOn,
    noteOff,
    startAnew,
    programs,
    embedding,
    steadyLevel,
    zoom,
    knobStyle,
    level,
    spectrum,
    scope,
    motion,
    audio,
    midi,
};
inline constexpr std::size_t kSettings = 16;

/// Whose a setting is, which says where it is kept.
enum class SettingGroup : std::uint8_t {
    instance, ///< goes along in its state
    windows,  ///< remembered for all of them
    program,  ///< the standalone's
};
inline constexpr std::size_t kSettingGroups = 3;

enum class SettingKind : std::uint8_t {
    amount, ///< a control's value on a slider
    choice, ///< one of a few names
    toggle, ///< of the two "Off" and "On"
    action, ///< opens something
    fact,   ///< is only told
};

/// Plain data; kOther where what holds is none of the names. Both functions: message thread; read
/// also as MAIN, choose not.
struct SettingEntry {
    static constexpr std::size_t kOther = ~std::size_t{0};

    SettingId id;
    SettingGroup group;
    SettingKind kind;
    const char* name;
    HelpId help{};                                         ///< not of an amount
    ControlId control{};                                   ///< of an amount
    std::span<const char* const> choices = {};             ///< of choice and toggle
    std::size_t (*read)(ScreenContext& context) = nullptr; ///< which choice holds
    void (*choose)(ScreenContext&, std::size_t) = nullptr;
    bool onlyInstruments = false;
};

/// One sentence on it.
std::string helpOf(const SettingEntry& entry);

/// A group's title, and where its settings are kept.
struct SettingGroupTitle {
    const char *title, *kept;
};
const SettingGroupTitle& titleOf(SettingGroup group) noexcept;

/// In the order of the sheet. Any thread.
std::span<const SettingEntry, kSettings> settingEntries() noexcept;

/// The zooms that are offered, in percent.
inline constexpr std::array kZooms{75, 100, 125, 150, 200, 250};
/// The one next to a zoom, larger or smaller; the last one at the ends.
double nextZoom(double zoom, bool larger);

/// Hands the style of ScreenSettings to the instance's knobs. Message thread, not inside asMain.
void handKnobStyle(ScreenContext& context);

} // namespace zephyra

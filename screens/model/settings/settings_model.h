// SettingsModel: the rows of the sheet of settings, and what hands do to them.
#pragma once

#include "screens/model/path/knob_hand.h"
#include "screens/model/settings/setting_table.h"

#include <string>
#include <vector>

namespace zephyra {

/// One row at a moment. Plain data.
struct SettingRow {
    const SettingEntry* entry; ///< never null
    std::size_t chosen = 0;    ///< of the choices
    float share = 0.0f;        ///< of an amount's slider, 0..1
    std::string value = {};    ///< as text, whatever the kind
    bool operator==(const SettingRow&) const = default;
};

/// Follows the instance and the window's settings, whoever changes them. Rows are named by their
/// place among rows(); one that is not there is ignored. Message thread.
class SettingsModel final : public ScreenPart {
public:
    explicit SettingsModel(ScreenContext& context);
    ~SettingsModel() override;

    /// Those that this instance and its window have; they stay while this lives.
    const std::vector<SettingRow>& rows() const noexcept { return rows_; }

    /// A choice by its place; one that is not there changes nothing.
    void choose(std::size_t row, std::size_t choice);
    /// A key's or wheel's step: to the next choice, which ends at the last one, or a fiftieth of
    /// the slider, fine a tenth of that. now: seconds on the clock of frame().
    void step(std::size_t row, int by, Fineness fineness, double now);
    /// To the first or last choice or value.
    void stepToEnd(std::size_t row, bool last, double now);
    /// An amount to a place of its slider; places that soon follow are one edit.
    void slide(std::size_t row, float share, double now);
    /// A number as assistive technology sets it: a share of the slider, or a choice by its place.
    /// What is beyond goes to the nearer end, what is no number nowhere.
    void put(std::size_t row, double place, double now);
    /// Presses: a switch is turned over, a choice becomes the next one, round and round, an action
    /// is performed.
    void press(std::size_t row);
    /// An amount back to where a new instance has it.
    void reset(std::size_t row);
    /// An amount, in any unit, or the name of a choice; no other row takes text. The failure says
    /// what would be right, and nothing has changed.
    Result<void> type(std::size_t row, const std::string& text);
    /// Ends a gesture of steps after a moment without one.
    void frame(double now) { hand_.frame(now); }

    void read(AudioUnitViewController& view, const FrameTime& time) override;

private:
    const SettingEntry* entryOf(std::size_t row) const;
    void readAmount(AudioUnitViewController& view, SettingRow& row) const;

    ScreenContext& context_;
    KnobHand hand_;
    std::vector<SettingRow> rows_;
};

} // namespace zephyra

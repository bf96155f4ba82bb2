// PresetLine: the preset that was chosen last, and how a player steps to others.
#pragma once

#include "screens/model/screen_context.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace zephyra {

/// One moment. Plain data.
struct PresetShown {
    std::string name = {}, bank = {}; ///< empty: none was chosen
    bool isChanged = false;           ///< somebody edited since it was chosen
    std::optional<double> loading;    ///< share of its sound that was read, 0..1
    bool operator==(const PresetShown&) const = default;

    std::string title() const { return name.empty() ? "No preset" : name; }
    /// "Glass Weather, changed"
    std::string line() const;
};

/// Message thread.
class PresetLine final : public ScreenPart {
public:
    explicit PresetLine(ScreenContext& context);
    ~PresetLine() override;

    const PresetShown& shown() const noexcept { return shown_; }

    /// Behind the last one comes the first of the next bank. While the host's program plays, they
    /// step through the host's list, which is the factory's banks.
    void next() { step(1); }
    void previous() { step(-1); }
    /// The presets of the bank that is selected, then the banks; choosing a bank asks for a menu
    /// of its presets, see takesMenu.
    std::vector<MenuRow> menu();
    /// Whether the menu is to be opened anew, now that another bank is listed. Once.
    bool takesMenu();

    void read(AudioUnitViewController& view, const FrameTime& time) override;

private:
    /// Who named what plays now.
    enum class Chooser { nobody, store, host };

    void step(int by);
    void choose(int table, std::size_t row);
    void addRows(const LibraryTable& from, int table, std::vector<MenuRow>& rows);
    void addPrograms(std::vector<MenuRow>& rows);
    void followStore(AudioUnitViewController& view);
    void followHost();
    void followEdits(const EditHistory& edits, bool isChosen);

    ScreenContext& context_;
    PresetShown shown_;
    Chooser chooser_ = Chooser::nobody;
    std::string key_, bankFile_;         // of the preset that was chosen in the store
    std::optional<std::size_t> program_; // chosen by the host
    std::uint64_t edits_ = 0;            // that were made when it stood as chosen
    std::string awaitedBank_;            // whose presets the menu waits for
    bool menuIsDue_ = false;
};

} // namespace zephyra

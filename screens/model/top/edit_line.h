// EditLine: undo, redo, A/B and randomise as the top shows them, and what hands do there.
#pragma once

#include "screens/model/button_face.h"
#include "screens/model/screen_context.h"

#include <string>
#include <vector>

namespace zephyra {

enum class EditButton { randomize, undo, redo, compareA, compareB };
inline constexpr std::size_t kEditButtons = 5;

/// One moment. Plain data.
struct EditsShown {
    std::string undo = {}, redo = {}; ///< what would be taken back, done again; empty for nothing
    bool isB = false;                 ///< which of the two versions plays
    bool operator==(const EditsShown&) const = default;
};

/// What buttons and keys do; steps that wait for more of them are over by then. Nothing happens
/// while a hand is at something. Message thread, not inside ScreenSource::asMain.
void undo(ScreenContext& context);
void redo(ScreenContext& context);

/// Message thread.
class EditLine final : public ScreenPart {
public:
    explicit EditLine(ScreenContext& context);
    ~EditLine() override;

    const EditsShown& shown() const noexcept { return shown_; }
    ButtonFace face(EditButton button) const;
    /// One sentence, with the name of what undo and redo would do.
    std::string help(EditButton button) const;
    void press(EditButton button);
    /// How far randomise goes; the choice holds for this window.
    std::vector<MenuRow> randomizeMenu();

    void read(AudioUnitViewController& view, const FrameTime& time) override;

private:
    ScreenContext& context_;
    EditsShown shown_;
    int percent_ = 25;
};

} // namespace zephyra

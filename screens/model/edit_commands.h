// EditCommands: undo, redo, A/B and randomise, as the window asks for them.
#pragma once

#include <cstdint>
#include <string>

namespace zephyra {

/// One moment. Plain data.
struct EditsShown {
    std::string undo = {}, redo = {}; ///< what would be taken back, done again; empty for nothing
    bool isB = false;                 ///< which state of the two plays
    std::uint64_t count = 0;          ///< grows with each edit
    bool operator==(const EditsShown&) const = default;
};

/// Whoever has the states of an instance implements it. Message thread, not inside
/// ScreenSource::asMain but for shown().
class EditCommands {
public:
    EditCommands() = default;
    virtual ~EditCommands() = default;
    EditCommands(const EditCommands&) = delete;
    EditCommands& operator=(const EditCommands&) = delete;

    virtual EditsShown shown() const = 0; ///< once a frame, MAIN
    virtual void undo() = 0;              ///< nothing where there is nothing
    virtual void redo() = 0;
    virtual void compare(bool b) = 0; ///< plays A or B
    /// Every control that is not locked; by amount, 0..1 of its range.
    virtual void randomize(double amount) = 0;
};

} // namespace zephyra

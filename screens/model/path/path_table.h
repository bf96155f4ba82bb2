// PathCell: which control stands where on the path, one row each.
#pragma once

#include "screens/model/screen_layout.h"
#include "stream/control_ranges.h"

#include <span>

namespace zephyra {

enum class PathCellKind {
    knob,
    envelope, ///< the grain's shape, and the menu of all
    voices,   ///< the grains that sound now
    keep,     ///< keeps what LIVE heard as a file
};

/// The upper row says what, the row beneath how far it spreads.
enum class PathRow { big, spread };

/// When a cell is there: synced, note lengths stand in the place of times.
enum class PathWhen { always, scanFree, scanSynced, echoFree, echoSynced };

struct PathCell {
    PathCellKind kind;
    ControlId id; ///< of a knob, and of the envelope
    Section section;
    int column; ///< of all, from 0
    PathRow row;
    PathWhen when;
    int part, parts; ///< which of so many beside each other in one place
    const char* name;
    const char* shortName; ///< where columns are narrow
};

/// In the order of the signal, which is that of the keyboard's focus. Any thread.
std::span<const PathCell> pathCells() noexcept;

/// What decides which cells are there.
struct PathSync {
    bool scan = false, echo = false;
    bool operator==(const PathSync&) const = default;
};
bool isThere(const PathCell& cell, PathSync sync) noexcept;

/// A section's title, and the switches that stand beside it.
struct PathSection {
    Section section;
    const char* title;
    bool hasSwitch, hasSync;
    ControlId switchId, syncId; ///< where it has them
};

/// In the order of the signal. Any thread.
std::span<const PathSection, kSections> pathSections() noexcept;

} // namespace zephyra

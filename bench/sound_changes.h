// SoundChange: what somebody does to a stream that plays, and how it stands before.
#pragma once

#include "bench/sound_player.h"

#include <functional>
#include <string>
#include <vector>

namespace zephyra {

/// Plain data.
struct SoundChange {
    using Act = std::function<void(SoundPlayer& player)>;

    std::string name; ///< "Density up", "sound loaded"
    Act before;       ///< before anything plays; may be empty
    Act change;       ///< between two blocks, and perhaps more than once with sound in between
    /// Moves an echo time, whose glide bends what sounds as a tape would.
    bool movesEchoTime = false;
};

/// Every control of the table from one end of its range to the other and back; switches on and off;
/// every envelope; and everything else that may happen to a stream. The first does nothing: what it
/// measures is the measure's own error.
std::vector<SoundChange> soundChanges();

} // namespace zephyra

// HeldInput: how much of a render's input the sound had heard that grains are cut from.
#pragma once

#include "engine/grain_trace.h"
#include "stream/stream_controller.h"

#include <cstdint>
#include <optional>
#include <string>
#include <utility>

namespace zephyra {

/// Watches a stream whose input is heard from the render's first frame on. Order of calls:
/// beginCycle for each render cycle, then add for what was scheduled in it. MAIN.
class HeldInput {
public:
    /// Before a cycle that ends with this frame of the output.
    void beginCycle(const MOK_SCRUB_GRANULATOR& stream, std::uint64_t end);
    /// Frames of input that what the present cycle is cut from ends with.
    std::uint64_t heard() const noexcept { return held_ ? held_->heard : written_; }
    void add(const GrainRecord& grain);
    /// What is to be told of Freeze when nothing that it held was heard; empty for nothing.
    std::string notice(double sampleRate) const;

private:
    /// The sound that is held now.
    struct Held {
        std::uint64_t hold;  ///< see WaveForm::holds
        std::uint64_t heard; ///< frames of input
        /// Positions in it between which it sounds; none for silence.
        std::optional<std::pair<float, float>> sounding;
    };

    std::uint64_t written_ = 0; // frames of input in the live buffer
    std::optional<Held> held_;
    std::optional<std::uint64_t> firstHeld_, firstUnheld_; // heard by then
    bool isCut_ = false;                                   // a grain was cut from held sound
    bool sounds_ = false;                                  // and it was one that sounds
};

} // namespace zephyra

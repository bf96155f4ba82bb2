// StateRandomizer: random settings, as far from the present ones as a player likes.
#pragma once

#include <cstdint>

namespace zephyra {

class AudioUnitViewController;
struct ControlRange;

/// Moves what shapes grains, pitch, space, scan, echo and ring modulator. Loudness, the transport
/// and every switch stay; so does what is locked (Control::isRandomizable). MAIN.
class StateRandomizer {
public:
    enum class OffSections : std::uint8_t {
        stay, ///< of an echo or ring modulator that is off nothing moves
        move,
    };

    /// view outlives this.
    explicit StateRandomizer(AudioUnitViewController& view) : view_(view) {}

    /// One edit, "Randomise": each control goes so far towards a random place of its range, 0 for
    /// nowhere, 1 all the way; a choice changes with that probability. Other amounts are held to
    /// 0..1; one that is not finite counts as 0. Draws from the instance's random source.
    void randomize(double amount, OffSections offSections = OffSections::stay);

private:
    bool moves(const ControlRange& range, OffSections offSections) const;
    void move(const ControlRange& range, double amount);
    double random();

    AudioUnitViewController& view_;
};

} // namespace zephyra

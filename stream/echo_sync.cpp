#include "stream/echo_sync.h"

#include "stream/control_ranges.h"

#include <algorithm>
#include <array>

namespace zephyra {

namespace {

// Beats per second while the tempo says nothing: one a minute.
constexpr double kRestingBeat = 0.016666666666666666;

/// Echo repeats per quarter note, one for each of kSubdivisionNames.
constexpr std::array<double, kSubdivisionNames.size()> kRepeatsPerBeat = {
    1.0 / 6, 1.0 / 4, 1.0 / 3, 3.0 / 8,  1.0 / 2, 2.0 / 3, 3.0 / 4,  1.0,  4.0 / 3, 3.0 / 2, 2.0,
    8.0 / 3, 3.0,     4.0,     16.0 / 3, 6.0,     8.0,     32.0 / 3, 12.0, 16.0,    32.0};

} // namespace

double syncedEchoSeconds(double beatsPerMinute, std::size_t index) noexcept {
    const double beatsPerSecond = beatsPerMinute > 0 ? 1 / (60 / beatsPerMinute) : kRestingBeat;
    return 1 / (beatsPerSecond * kRepeatsPerBeat[std::min(index, kRepeatsPerBeat.size() - 1)]);
}

} // namespace zephyra

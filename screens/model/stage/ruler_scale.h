// rulerTicks, timeText: the times below the stage, and how times are written on it.
#pragma once

#include <string>
#include <vector>

namespace zephyra {

struct RulerTick {
    double place;      ///< fraction of the ruler's width
    std::string label; ///< empty: a line only
};

/// Round times from first to last second over a width of so many units. Labels stand at least
/// kLeastApart units apart; sparse: every second one is a line only. live: counted back from last,
/// which is now.
std::vector<RulerTick> rulerTicks(double first, double last, double width, bool sparse, bool live);
inline constexpr double kLeastApart = 56.0; ///< units

/// "6.40 s", from a minute on "1:06.4", below 0 with a minus sign; the step says how fine: the
/// smallest time that a pixel tells apart, in seconds.
std::string timeText(double seconds, double step = 0.01);

} // namespace zephyra

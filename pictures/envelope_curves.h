// EnvelopeCurve: an entry of the menu of grain envelopes, as the points of its curve.
#pragma once

#include "platform/random_source.h"
#include "platform/text/result.h"

#include <string>
#include <vector>

namespace zephyra {

struct EnvelopeCurve {
    static constexpr double kLowest = -1, kHighest = 1; ///< gains

    std::string name;         ///< without the menu's prefix
    std::vector<float> gains; ///< evenly over the length of a grain
};

/// Every entry of the menu, in its order; random draws the one that is random. A failure means that
/// memory is short. MAIN.
Result<std::vector<EnvelopeCurve>> envelopeCurves(RandomSource& random);

} // namespace zephyra

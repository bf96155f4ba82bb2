#include "plugin/standalone/device_watch.h"

#include <algorithm>

namespace zephyra {

DeviceWatch::Step DeviceWatch::look(double now, const Signs& signs) {
    if (!signs.isOpen) {
        wasOpen_ = false;
        return now >= nextTry_ ? Step::open : Step::nothing;
    }
    if (!wasOpen_ || signs.blocks != blocks_) lastBlock_ = now;
    wasOpen_ = true;
    blocks_ = signs.blocks;
    const bool isSilent = !signs.mayPause && now - lastBlock_ > kMostSilence;
    if (!signs.hasFailed && !isSilent) return Step::nothing;
    nextTry_ = now + kBetweenTries;
    return Step::close;
}

void DeviceWatch::opened(double began, double ended) {
    nextTry_ = ended + std::max(kBetweenTries, kRestPerTry * (ended - began));
}

} // namespace zephyra

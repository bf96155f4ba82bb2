// How mokGranulatorSF takes other tables: at once where nothing sounds, else through a seam.

#include "engine/granular_stream.h"

namespace zephyra {

void mokGranulatorSF::takeChange() ZEPHYRA_NONBLOCKING {
    const mokSample* const source = sample.load();
    const mokWindow* const shape = window.load();
    const mokSample* const before = blockSample_.load();
    if (source == before && shape == blockWindow_.load()) return;
    const bool readsOn = shape == blockWindow_.load() && source->copyOf == before;
    if (!readsOn && soundingGrains() > 0) return mixGain_.beginSeam();
    for (const auto& grain : grains) {
        grain->source = source;
        grain->envelope = shape;
    }
    blockSample_.store(source); // last: MAIN may free the one before
    blockWindow_.store(shape);
}

/// Of a stream that is off: a stop that has faded to nothing ends its grains, and where none is
/// left MAIN may free what they read.
void mokGranulatorSF::restSwitchedOff() ZEPHYRA_NONBLOCKING {
    if (mixGain_.isSilent()) {
        endGrains();
        mixGain_.standAtFull();
    }
    if (!blockSample_.load() || soundingGrains() > 0) return;
    blockSample_.store(nullptr);
    blockWindow_.store(nullptr);
}

/// How many of frames come before the seam turns.
int mokGranulatorSF::takeGain(int frames) ZEPHYRA_NONBLOCKING {
    blockSounds_ = granularOn;
    if (!blockSounds_) {
        restSwitchedOff();
        return frames;
    }
    takeChange();
    return mixGain_.take(frames);
}

GrainTables mokGranulatorSF::takeTables() ZEPHYRA_NONBLOCKING {
    const GrainTables tables = grainTables(*blockSample_.load(), *blockWindow_.load());
    // A planned run stays inside a table of the size it was planned for. The size is compared, not
    // the pointer: a new sample may stand where a freed one stood.
    if (tables.sourceSize != blockSourceSize_)
        for (const auto& grain : grains) {
            grain->straight = {};
            grain->placeOrigin(tables.sourceSize);
        }
    blockSourceSize_ = tables.sourceSize;
    return tables;
}

} // namespace zephyra

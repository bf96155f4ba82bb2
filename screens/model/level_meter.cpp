#include "screens/model/level_meter.h"

#include <algorithm>
#include <cmath>

namespace zephyra {

namespace {

double decibels(double power) {
    return power > 0.0 ? std::max(10.0 * std::log10(power), LevelMeter::kFloor)
                       : LevelMeter::kFloor;
}

} // namespace

bool LevelMeter::advance(const OutputLevels& levels, const FrameTime& time) {
    if (!isPlaced_) place_ = levels.newest();
    isPlaced_ = true;
    return advance(levels.read(place_), time);
}

bool LevelMeter::advance(const LevelReading& reading, const FrameTime& time) {
    frames_ += reading.frames;
    const SoundArrival::State state = arrival_.look(frames_, time);
    if (state == SoundArrival::State::fresh) last_ = reading;
    if (state == SoundArrival::State::silence) last_ = {};
    LevelReading now = last_;
    if (state == SoundArrival::State::waiting) // its peaks were shown
        for (LevelReading::Channel& channel : now.channels) channel.peak = 0.0f;
    const auto before = channels_;
    const double highest = highest_;
    for (std::size_t c = 0; c < channels_.size(); ++c)
        move(channels_[c], past_[c], now.channels[c], time.elapsed);
    return channels_ != before || highest_ != highest;
}

void LevelMeter::move(Channel& channel, Past& past, const LevelReading::Channel& read,
                      double seconds) {
    const double share = seconds > 0.0 ? 1.0 - std::exp(-seconds / kIntegration) : 0.0;
    past.meanSquare += share * (double{read.meanSquare} - past.meanSquare);
    channel.rms = decibels(past.meanSquare);
    const double peak = decibels(double{read.peak} * double{read.peak});
    channel.peak = std::max({peak, channel.peak - kPeakFall * seconds, kFloor});
    past.held += seconds;
    if (channel.peak >= channel.hold || past.held > kHold) {
        channel.hold = channel.peak;
        if (peak >= channel.peak) past.held = 0.0;
    }
    channel.clipped = channel.clipped || read.clipped;
    highest_ = std::max(highest_, peak);
}

void LevelMeter::clear() {
    for (Channel& channel : channels_) channel.clipped = false;
    for (LevelReading::Channel& channel : last_.channels) channel.clipped = false;
    highest_ = kFloor;
}

} // namespace zephyra

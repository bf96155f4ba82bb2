// AUAudioUnitBus: one input or output of an audio unit, with its format.
#pragma once

#include "platform/text/four_char_code.h"

#include <cstdint>
#include <vector>

namespace zephyra {

/// The standard format: 32-bit floats, one buffer per channel.
struct AVAudioFormat {
    double sampleRate = 44100.0; ///< Hz
    std::uint32_t channelCount = 2;
    bool operator==(const AVAudioFormat&) const = default;
};

/// MAIN, and only while render resources are not allocated.
class AUAudioUnitBus {
public:
    explicit AUAudioUnitBus(AVAudioFormat format = {}, std::uint32_t mostChannels = 2)
        : maximumChannelCount(mostChannels), format_(format) {}

    const AVAudioFormat& format() const noexcept { return format_; }

    /// audio_unit_status::invalidValue, and nothing changed, for a rate that is not finite or not
    /// above 0, and for no channels or more than maximumChannelCount.
    OSStatus setFormat(const AVAudioFormat& format) noexcept;

    const std::uint32_t maximumChannelCount;

private:
    AVAudioFormat format_;
};

enum class AUAudioUnitBusType { input, output };

/// The buses of one side.
struct AUAudioUnitBusArray {
    AUAudioUnitBusType busType = AUAudioUnitBusType::output;
    std::vector<AUAudioUnitBus*> busses; ///< owned by the audio unit
};

} // namespace zephyra

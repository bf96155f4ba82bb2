#include "platform/audio_unit/audio_unit_bus.h"

#include "platform/audio_unit/audio_unit_status.h"

#include <cmath>

namespace zephyra {

OSStatus AUAudioUnitBus::setFormat(const AVAudioFormat& format) noexcept {
    const bool rates = std::isfinite(format.sampleRate) && format.sampleRate > 0;
    if (!rates || format.channelCount == 0 || format.channelCount > maximumChannelCount)
        return audio_unit_status::invalidValue;
    format_ = format;
    return audio_unit_status::noError;
}

} // namespace zephyra

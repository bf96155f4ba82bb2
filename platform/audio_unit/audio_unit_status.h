// audio_unit_status: the codes that an audio unit answers its host with, and what it is loaded as.
#pragma once

#include "platform/text/four_char_code.h"

namespace zephyra {

/// 0 is success.
namespace audio_unit_status {
inline constexpr OSStatus noError = 0;
inline constexpr OSStatus tooManyFrames = -10874;        ///< more than maximumFramesToRender
inline constexpr OSStatus failedInitialization = -10875; ///< buses that do not go together
inline constexpr OSStatus uninitialized = -10867;        ///< render resources are not allocated
inline constexpr OSStatus initialized = -10849;          ///< not while render resources are there
inline constexpr OSStatus noConnection = -10876;         ///< no input to pull from
inline constexpr OSStatus invalidValue = -10851;         ///< a format or length that cannot be
} // namespace audio_unit_status

/// What a host loads an audio unit as.
namespace component_type {
inline constexpr FourCharCode effect = fourCC("aufx");
inline constexpr FourCharCode musicEffect = fourCC("aumf"); ///< an effect that also gets MIDI
inline constexpr FourCharCode instrument = fourCC("aumu");
} // namespace component_type

struct AudioComponentDescription {
    FourCharCode componentType = component_type::effect;
    FourCharCode componentSubType = fourCC("zeph");
    FourCharCode componentManufacturer = fourCC("Zeph");
};

} // namespace zephyra

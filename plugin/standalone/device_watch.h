// DeviceWatch: decides when a sound device counts as lost, and when it is tried again.
#pragma once

#include <cstdint>

namespace zephyra {

/// A device that fails, or that asks for no sound any more, is closed; while none is open, opening
/// is tried every few seconds. Times are seconds of any steady clock. MAIN.
class DeviceWatch {
public:
    static constexpr double kBetweenTries = 3.0; // seconds
    /// A try that takes long holds up the window, so the next one waits longer: that many times.
    static constexpr double kRestPerTry = 5.0;
    /// Without a block. A device that is to be waited for in JUCE's way gets two seconds a block.
    static constexpr double kMostSilence = 5.0;

    /// How the device looks.
    struct Signs {
        bool isOpen = false;
        bool hasFailed = false;   ///< it says so itself
        bool mayPause = false;    ///< blocks may stay away as long as it does not fail
        std::uint64_t blocks = 0; ///< that it asked for until now
    };
    enum class Step { nothing, close, open };

    /// What is to be done now; who is told to open says how that went by opened().
    Step look(double now, const Signs& signs);

    /// began, ended: of the try.
    void opened(double began, double ended);

private:
    double nextTry_ = 0.0;
    bool wasOpen_ = false;
    std::uint64_t blocks_ = 0;
    double lastBlock_ = 0.0; // when blocks_ was seen first
};

} // namespace zephyra

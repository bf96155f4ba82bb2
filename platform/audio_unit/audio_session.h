// AudioSession: the rate and buffer duration of whatever plays the sound.
#pragma once

namespace zephyra {

/// Set by whoever drives the system (the command line tool, the plug-in's host side) and read where
/// buffers depend on it. One record per instance. MAIN or OFF.
struct AudioSession {
    double sampleRate = 44100.0;       ///< Hz
    double IOBufferDuration = 0.01161; ///< seconds; 512 frames at 44100 Hz
};

} // namespace zephyra

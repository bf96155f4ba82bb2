// sineSound, noiseSound, speechSound: the sounds that figures are measured over.
#pragma once

#include "engine/sample_buffer.h"

#include <memory>

namespace zephyra {

/// What a measurement plays.
enum class SoundKind { sine, noise, speech };

/// So many seconds at rate Hz with the guard points written, the same each time. Any thread but
/// RENDER. Throws std::bad_alloc.
///
/// A sine with an amplitude of 0.5. Its ends fade within 10 ms: grains do not read a sound's last
/// frames, so that no sound repeats without a seam.
std::unique_ptr<mokSample> sineSound(double seconds, float rate, double hertz);
/// White noise within 0.5.
std::unique_ptr<mokSample> noiseSound(double seconds, float rate, std::uint32_t seed);
/// What makes speech hard: pulses of a gliding pitch through three moving formants, in syllables of
/// unequal lengths with pauses between them, the loudest sample 0.5. transpose multiplies pitch and
/// formants.
std::unique_ptr<mokSample> speechSound(double seconds, float rate, double transpose);

/// Two seconds of kind at 48000 Hz; other sounds of a kind by another variant, 0 or 1.
std::shared_ptr<const mokSample> soundOf(SoundKind kind, int variant = 0);

} // namespace zephyra

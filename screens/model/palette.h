// palette: the colours of the window, as numbers.
#pragma once

#include "controls/control.h"

namespace zephyra::palette {

/// 0xRRGGBB.
constexpr Color hex(unsigned rgb, float alpha = 1.0f) {
    return {static_cast<float>(rgb >> 16 & 0xFF) / 255.0f,
            static_cast<float>(rgb >> 8 & 0xFF) / 255.0f, static_cast<float>(rgb & 0xFF) / 255.0f,
            alpha};
}

// Surfaces, from far to near.
inline constexpr Color kGround = hex(0x0B0E13);
inline constexpr Color kStage = hex(0x111824);
inline constexpr Color kRaised = hex(0x171D27);
inline constexpr Color kPressed = hex(0x212A37);
// Edges and empty arcs: never alone the bearer of a meaning.
inline constexpr Color kLine = hex(0x242D3A);
inline constexpr Color kTrack = hex(0x2C3646);
// Text, from what steps back to what is read first; each at least 4.5 to 1 on every surface it
// stands on.
inline constexpr Color kDim = hex(0x7D8899);    ///< of sections that are off
inline constexpr Color kFaint = hex(0x8E9AAD);  ///< units, scales, hints
inline constexpr Color kText = hex(0xBAC4D3);   ///< names
inline constexpr Color kArc = hex(0xD3DCE8);    ///< values, switches that are on
inline constexpr Color kBright = hex(0xF2F5FA); ///< numbers, titles, hover, focus
/// What moves by itself now: playing, scan, LFO, MIDI, host, live, armed, clipped. Nothing else.
inline constexpr Color kAccent = hex(0xFC361D);
inline constexpr Color kInk = hex(0x0B0E13);    ///< signs on bright and accent fills
inline constexpr Color kSource = hex(0x7C93B8); ///< waveform, spectrum

/// Of a grain that transposes by so many semitones, held to -24..24. Nothing but pitch has these
/// colours.
Color pitch(double semitones);

/// Of two opaque colours, 1..21, as WCAG 2.1 defines it:
/// https://www.w3.org/TR/WCAG21/#dfn-contrast-ratio
double contrast(Color a, Color b);

/// over by its alpha on an opaque under.
Color blend(Color under, Color over);

} // namespace zephyra::palette

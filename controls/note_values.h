// NoteValue: the note lengths that echo times and LFO rates are chosen from.
#pragma once

#include <array>
#include <cstddef>

namespace zephyra {

struct NoteValue {
    const char* name;      ///< D is dotted, T a triplet
    double repeatsPerBeat; ///< how often it fits into a quarter note
};

/// From the longest to the shortest; a subdivision control's value is the position here.
inline constexpr std::array<NoteValue, 21> kNoteValues = {{
    {"1/1D", 1.0 / 6}, {"1/1", 1.0 / 4},    {"1/2D", 1.0 / 3},   {"1/1T", 3.0 / 8},
    {"1/2", 1.0 / 2},  {"1/4D", 2.0 / 3},   {"1/2T", 3.0 / 4},   {"1/4", 1.0},
    {"1/8D", 4.0 / 3}, {"1/4T", 3.0 / 2},   {"1/8", 2.0},        {"1/16D", 8.0 / 3},
    {"1/8T", 3.0},     {"1/16", 4.0},       {"1/32D", 16.0 / 3}, {"1/16T", 6.0},
    {"1/32", 8.0},     {"1/64D", 32.0 / 3}, {"1/32T", 12.0},     {"1/64", 16.0},
    {"1/128", 32.0},
}};

} // namespace zephyra

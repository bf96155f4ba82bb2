#include "resources/make_samples/birdsong.h"

#include "resources/make_samples/bird_voice.h"
#include "resources/make_samples/room.h"

#include <vector>

namespace zephyra {

namespace {

constexpr double kLength = 13.0;
constexpr std::uint64_t kSeed = 1758;

/// Garden walls: short and dark, so that the silence between calls is silent.
constexpr Room kGarden = {0.6, 0.5, 0.35, 0.03, -20.0};

struct TimedNote {
    double at; ///< seconds from the call's start
    BirdNote note;
};

/// What follows a motif: a row of hurried chirps.
struct Twitter {
    double at;    ///< seconds from the call's start
    int chirps;   ///< how many
    double low;   ///< lowest pitch, Hz
    double high;  ///< highest pitch, Hz
    double level; ///< of the loudest chirp, 0 to 1
};

struct Call {
    double at; ///< seconds
    std::vector<TimedNote> motif;
    Twitter twitter;
};

/// Four calls. The motifs share notes near 1760, 2090, 2350 and 2640 Hz: the bird has a tune in
/// mind.
std::vector<Call> song() {
    return {
        {0.12,
         {{0.00, {0.30, {1700, 1770, 1765, 1980}, 0.75}},
          {0.34, {0.24, {2340, 2120, 2080, 2100}, 0.90}},
          {0.62, {0.42, {1840, 2350, 2380, 2330}, 1.00, 11.0, 0.25}},
          {1.10, {0.20, {2900, 2620, 2200, 1780}, 0.85}},
          {1.34, {0.34, {1700, 1650, 1780, 1690}, 0.80}}},
         {1.76, 14, 3600, 7400, 0.55}},
        {3.45,
         {{0.00, {0.16, {2100, 2360, 2340, 2250}, 0.70}},
          {0.20, {0.16, {2100, 2380, 2350, 2240}, 0.80}},
          {0.42, {0.38, {2640, 2660, 2300, 1770}, 1.00}},
          {0.86, {0.46, {1750, 1760, 1900, 2090}, 0.90, 24.0, 0.7}},
          {1.36, {0.22, {2500, 2900, 2750, 2350}, 0.80}}},
         {1.66, 10, 4200, 7900, 0.50}},
        {6.75,
         {{0.00, {0.44, {1780, 1755, 1765, 1690}, 0.85}},
          {0.50, {0.14, {2640, 2350, 2200, 2120}, 0.75}},
          {0.68, {0.30, {2080, 2100, 2360, 2650}, 1.00}},
          {1.03, {0.12, {2950, 2700, 2500, 2380}, 0.70}},
          {1.19, {0.36, {2360, 2340, 2100, 1840}, 0.95, 13.0, 0.3}},
          {1.60, {0.18, {1620, 1900, 2300, 2500}, 0.70, 0.0, 0.0, 0.5, 1.26}}},
         {1.84, 16, 3400, 7700, 0.60}},
        {10.15,
         {{0.00, {0.22, {2350, 2090, 2080, 2120}, 0.80}},
          {0.27, {0.22, {1790, 1760, 1750, 1810}, 0.85}},
          {0.54, {0.50, {2090, 2650, 2640, 2350}, 1.00, 9.0, 0.22}},
          {1.10, {0.28, {2350, 2080, 1800, 1590}, 0.90}}},
         {1.44, 12, 3900, 7500, 0.50}},
    };
}

/// A chirp between the twitter's pitches: down, up, or up and down again, some with both voices.
BirdNote chirp(const Twitter& twitter, Chance& chance) {
    const double low = twitter.low * chance.between(1.0, 1.35);
    const double high = twitter.high * chance.between(0.75, 1.0);
    const double middle = chance.between(low, high);
    BirdNote note{chance.between(0.028, 0.075), {high, middle, low, low * 1.05}, 0.0};
    const double shape = chance.unit();
    if (shape < 0.25) note.hz = {low, low, middle, high};
    if (shape > 0.7) note.hz = {low, high, middle, low};
    note.rasp = chance.unit() < 0.4 ? chance.between(0.4, 0.9) : 0.0;
    if (chance.unit() < 0.35) note.second = chance.between(0.68, 0.8);
    return note;
}

void addTwitter(Signal& sound, double start, const Twitter& twitter, Chance& chance) {
    double at = start + twitter.at;
    for (int i = 0; i < twitter.chirps; ++i) {
        BirdNote note = chirp(twitter, chance);
        const double fade = 1.0 - 0.6 * i / twitter.chirps;
        note.level = twitter.level * fade * chance.between(0.55, 1.0);
        mixInto(sound, birdNote(note, chance), at);
        at += note.length + chance.between(0.004, 0.03);
    }
}

} // namespace

Signal birdsong() {
    Chance chance(kSeed);
    Signal sound(frames(kLength), 0.0);
    for (const Call& call : song()) {
        for (const TimedNote& timed : call.motif)
            mixInto(sound, birdNote(timed.note, chance), call.at + timed.at);
        addTwitter(sound, call.at, call.twitter, chance);
    }
    addRoom(sound, kGarden);
    fadeEdges(sound, 0.01, 0.05);
    return sound;
}

} // namespace zephyra

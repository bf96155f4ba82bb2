#include "resources/make_samples/texture.h"

#include "resources/make_samples/bowed_glass.h"
#include "resources/make_samples/glass_strike.h"
#include "resources/make_samples/room.h"
#include "resources/make_samples/sparkle.h"

#include <cmath>
#include <utility>

namespace zephyra {

namespace {

constexpr double kLength = 12.0;
constexpr std::uint64_t kSeed = 8;

/// C3 in equal temperament; the chord above it is in pure ratios, so that it beats slowly.
constexpr double kRoot = 130.8128;

constexpr double kStrikeLevel = 2.0;
constexpr double kBowedLevel = 0.16;
constexpr double kSparkleLevel = 0.4;
constexpr int kSparkles = 90;
constexpr Room kHall = {1.0, 2.6, 0.55, 0.018, -15.0};

/// log2 of Hz, as formants are given.
Curve formantPath(std::vector<Curve::Point> hertz) {
    for (Curve::Point& point : hertz) point.value = std::log2(point.value);
    return Curve(std::move(hertz));
}

/// From "oo" through "ah" and "ee" back to "oh": the colour turns once in the sound.
Timbre vowels() {
    return {
        {{formantPath({{0.0, 420}, {2.5, 340}, {5.5, 780}, {8.0, 330}, {11.5, 500}}), 0.35, 1.3},
         {formantPath({{0.0, 1300}, {2.5, 760}, {5.5, 1250}, {8.0, 2300}, {11.5, 850}}), 0.28, 2.6},
         {formantPath({{0.0, 2900}, {2.5, 2300}, {5.5, 2700}, {8.0, 3300}, {11.5, 2400}}), 0.22,
          2.4}},
        Curve({{0.0, 1.0}, {2.5, 1.5}, {5.5, 0.85}, {8.0, 0.85}, {12.0, 1.7}})};
}

/// The chord opens from a fifth to a major ninth and closes again; the stroke comes before the bow.
std::vector<BowedTone> chord() {
    return {
        {kRoot / 2, Curve({{0, 0.1}, {1.5, 0.5}, {6, 0.35}, {9, 0.45}, {12, 0.4}}), 0.3, 2},
        {kRoot, Curve({{0, 0.2}, {1.2, 0.9}, {4, 0.6}, {7.5, 0.6}, {12, 0.5}}), 0.5, 4},
        {kRoot * 3 / 2, Curve({{0, 0.1}, {1.8, 0.8}, {5, 0.4}, {9.5, 0.7}, {12, 0.5}}), 0.6, 6},
        {kRoot * 2, Curve({{0, 0.2}, {1.4, 0.4}, {3.5, 0.8}, {7, 0.3}, {12, 0.5}}), 0.6, 7},
        {kRoot * 9 / 4, Curve({{0.8, 0}, {3.2, 0.7}, {6, 0.2}, {8, 0.1}, {10, 0.5}, {12, 0.2}}),
         0.6, 8},
        {kRoot * 5 / 2, Curve({{2.5, 0}, {5.2, 0.65}, {8, 0.45}, {11, 0.15}, {12, 0.1}}), 0.7, 9},
        {kRoot * 15 / 4, Curve({{4.8, 0}, {7.6, 0.4}, {9.8, 0.25}, {11.5, 0}}), 0.7, 10},
    };
}

struct TimedStrike {
    double at;
    double level;
    Strike strike;
};

/// The opening stroke, then single touches that keep the sound moving.
const TimedStrike kStrikes[] = {
    {0.0, 1.0, {kRoot * 2, 0.0015, 7.0, 0.9}},      {0.0, 0.6, {kRoot * 3, 0.002, 5.5, 0.7}},
    {0.0, 0.5, {kRoot, 0.003, 8.0, 0.5}},           {2.9, 0.18, {kRoot * 9 / 2, 0.012, 4.0, 0.4}},
    {4.6, 0.17, {kRoot * 4, 0.015, 4.5, 0.4}},      {6.3, 0.18, {kRoot * 5, 0.010, 3.5, 0.5}},
    {8.1, 0.18, {kRoot * 15 / 4, 0.014, 4.0, 0.4}}, {9.6, 0.14, {kRoot * 6, 0.012, 3.0, 0.4}},
};

void addScaled(Signal& sound, Signal part, double level, double at) {
    for (double& sample : part) sample *= level;
    mixInto(sound, part, at);
}

} // namespace

Signal texture() {
    Chance chance(kSeed);
    Signal sound(frames(kLength), 0.0);
    for (const TimedStrike& timed : kStrikes)
        addScaled(sound, glassStrike(timed.strike, kLength - timed.at, chance),
                  kStrikeLevel * timed.level, timed.at);
    const Timbre timbre = vowels();
    for (const BowedTone& tone : chord())
        addScaled(sound, bowedGlass(tone, timbre, kLength, chance), kBowedLevel, 0.0);
    addScaled(sound,
              sparkle({kRoot * 2, kRoot * 3, kRoot * 5 / 2}, kSparkles, kLength - 1.0, chance),
              kSparkleLevel, 0.6);
    addRoom(sound, kHall);
    fadeEdges(sound, 0.002, 1.4);
    return sound;
}

} // namespace zephyra

// What a plug-in's host tells of the music, and what the unit hears where it does not.

#include "hosting/host_time.h"
#include "tests/support/testing.h"

namespace zephyra {
namespace {

using Told = PluginTransport;
constexpr double kNone = std::numeric_limits<double>::quiet_NaN();
constexpr std::uint32_t kBlock = 11025; // an eighth at 120 beats per minute: half a quarter

/// "p" per block: the position, "m" while it moves, "!" for a jump, "-" for no context.
std::string heard(std::initializer_list<Told> blocks) {
    HostTime time;
    time.start(44100);
    std::string all;
    for (const Told& told : blocks) {
        time.follow(told);
        AUMusicalContext context;
        AUTransportState state;
        const bool tells = time.musicalContext(context);
        if (tells)
            all += std::to_string(std::lround(context.currentBeatPosition * 100));
        else
            all += "-";
        if (time.transportState(state)) {
            if (state.flags & transport_flag::moving) all += "m";
            if (state.flags & transport_flag::jumped) all += "!";
        }
        all += " ";
        time.goOn(kBlock);
    }
    return all;
}

TEST(HostTime, KeepsUpWhatAHostDoesNotTell) {
    const Told nothing, tempo{.tempo = 120.0}, moves{.moving = true}, stops{.moving = false};
    const auto at = [](double beats) { return Told{.tempo = 120.0, .beats = beats}; };
    const auto rolls = [](double beats) { return Told{.beats = beats, .moving = true}; };
    const struct {
        std::initializer_list<Told> blocks;
        const char* heard;
    } rows[] = {
        {{nothing, nothing}, "- - "},
        {{Told{.tempo = kNone, .numerator = 0.0, .beats = HUGE_VAL}, nothing}, "- - "},
        {{tempo, nothing, nothing}, "0 50 100 "},
        {{moves, nothing, stops, nothing, moves, nothing}, "0m 50m 100 100 100m 150m "},
        {{rolls(3.5), nothing, tempo, nothing}, "350m 400m 450m 500m "},
        {{rolls(-0.5), rolls(0.0), rolls(0.5)}, "-50m 0m 50m "},
        // Its transport does what the positions do.
        {{at(2), at(2.5), at(2.5), at(2.5), at(3)}, "200m 250m 250 250 300m "},
        {{tempo, at(16)}, "0 1600m! "},
        {{rolls(2), Told{.tempo = kNone, .beats = kNone}, nothing}, "200m 250m 300m "},
        {{rolls(2), Told{.tempo = 240.0}, nothing, Told{.tempo = -1.0}}, "200m 250m 350m 450m "},
        {{rolls(2), Told{.tempo = 0.0}, nothing}, "200m 250m 250m "},
        {{rolls(4), rolls(4.5), rolls(4), rolls(4.5)}, "400m 450m 400m! 450m "},
        {{rolls(4), nothing, rolls(4)}, "400m 450m 400m! "}, // told when it changes, and only then
        {{rolls(4), rolls(4.49), rolls(4.98), rolls(16)}, "400m 449m 498m 1600m! "},
        // What a host rounds: in floats, and in ticks of a quarter's 480th.
        {{rolls(3.5), rolls(4.0000004), rolls(4.4999997)}, "350m 400m 450m "},
        {{rolls(1.0 / 480), rolls(0.5)}, "0m 50m "},
    };
    for (const auto& row : rows) EXPECT_EQ(heard(row.blocks), row.heard);
}

TEST(HostTime, FollowsPositionsAloneAlsoAfterAnotherStart) {
    HostTime time;
    for (int round = 0; round < 2; ++round) {
        time.start(44100);
        for (const double beats : {4.0, 4.0, 4.5}) time.follow({.beats = beats}), time.goOn(kBlock);
        EXPECT_TRUE(time.isMoving()) << round;
        time.follow({.beats = 4.5});
        time.follow({.beats = 4.5}); // of a block of 0 frames
        EXPECT_FALSE(time.isMoving()) << round;
        time.goOn(kBlock);
    }
    time.start(22050); // the position goes on from where it stood
    time.follow({.moving = true});
    time.goOn(kBlock);
    time.start(44100);
    time.goOn(kBlock);
    EXPECT_EQ(time.beatPosition(), 6.0);
    time.follow({.tempo = 1e308, .beats = 1.0, .moving = true});
    time.goOn(kBlock);
    EXPECT_TRUE(std::isfinite(time.beatPosition()));
    HostTime without;
    without.setTransport(true);
    without.goOn(kBlock);
    EXPECT_EQ(without.beatPosition(), 0.0); // no tempo, no beats
}

TEST(HostTime, BeginsABarWhereTheHostsRoundingWouldMissIt) {
    HostTime time;
    time.start(44100);
    AUMusicalContext context;
    for (const double beats : {3.9999999, 3.5, 7.9999}) {
        time.follow({.beats = beats, .moving = true});
        time.musicalContext(context);
        EXPECT_EQ(context.currentBeatPosition, beats == 3.9999999 ? 4.0 : beats);
    }
    EXPECT_EQ(context.currentTempo, 120.0);
    EXPECT_EQ(context.timeSignatureNumerator, 4.0);
}

} // namespace
} // namespace zephyra

// What is heard while sample or window change under grains that sound, against a slow model.

#include "engine/granular_stream.h"
#include "tests/support/test_sounds.h"
#include "tests/support/testing.h"

namespace zephyra {
namespace {

constexpr int kFrames = 6000;
constexpr int kInterval = 882; // 50 grains a second, of two seconds
constexpr int kSeam = 441;     // 10 ms

/// Where the sound or the envelope becomes which of three: 1, 2 and 3 times as loud all along.
struct Change {
    int frame;
    int loudness;
    bool isWindow = false;
};

struct Case {
    const char* name;
    std::vector<Change> changes;
    int copyOf = 0;       // what the second sound is a copy of
    int firstGrain = 882; // before that nothing sounds
};

std::ostream& operator<<(std::ostream& out, const Case& c) {
    return out << c.name;
}

const Case kCases[] = {
    {"another sample", {{2000, 2}}},
    {"another envelope", {{2000, 3, true}}},
    {"both at once", {{2000, 2}, {2000, 3, true}}},
    {"the last of two wins", {{2000, 2}, {2200, 3}}},
    {"back to the first", {{2000, 2}, {2200, 1}}},
    {"another on the way up", {{2000, 2}, {2700, 3}}},
    {"one after the other", {{2000, 2}, {4000, 3}}},
    {"a copy of what sounds", {{2000, 2}}, 1},
    {"a copy of another", {{2000, 2}}, 3},
    {"before the first grain", {{500, 2}}, 0, 1000},
};

/// All grains are equally loud, for as long as it takes.
std::vector<float> slowModel(const Case& c) {
    std::vector<float> out(kFrames);
    int sound = 1, nextSound = 1, shape = 1, nextShape = 1;
    int grains = 0, due = c.firstGrain, seam = kSeam;
    bool falls = false;
    for (int n = 0; n < kFrames; ++n) {
        for (const Change& change : c.changes)
            if (change.frame == n) (change.isWindow ? nextShape : nextSound) = change.loudness;
        if (!falls && (sound != nextSound || shape != nextShape)) {
            const bool isCopy = shape == nextShape && nextSound == 2 && sound == c.copyOf;
            if (grains > 0 && !isCopy)
                falls = true;
            else
                sound = nextSound, shape = nextShape;
        }
        if (!falls && n >= due) {
            ++grains;
            due = n + kInterval;
        }
        seam = falls ? seam - 1 : std::min(seam + 1, kSeam);
        const float gain = static_cast<float>(seam) / kSeam;
        out[static_cast<std::size_t>(n)] = 0.1f * static_cast<float>(grains * sound * shape) * gain;
        if (seam > 0) continue;
        falls = false;
        grains = 0;
    }
    return out;
}

class TableSeam : public testing::TestWithParam<Case> {
protected:
    TableSeam() {
        for (int k = 0; k < 3; ++k) {
            const auto i = static_cast<std::size_t>(k);
            const auto loudness = static_cast<float>(k + 1);
            sounds[i] = std::make_unique<mokSample>(44100, 44100.0f);
            std::fill_n(sounds[i]->getPtr(), 44100 + mokBuffer::kGuardPoints, loudness);
            shapes[i].rescale(loudness);
        }
    }

    /// In blocks of so many frames, and shorter ones up to a change.
    std::vector<float> render(const Case& c, int blockFrames) {
        sounds[1]->copyOf =
            c.copyOf ? sounds[static_cast<std::size_t>(c.copyOf - 1)].get() : nullptr;
        mokGranulatorSF engine(sounds[0].get(), &shapes[0], 24, 44100.0f, 1);
        engine.setLevel(0.1f);
        engine.setWidth(0);
        engine.setRndDensity(0);
        engine.setRndLength(0);
        engine.setLength(2000);
        StereoBlock out(kFrames);
        for (int at = 0; at < kFrames;) {
            int end = std::min(at + blockFrames, kFrames);
            for (const Change& change : c.changes) {
                if (change.frame > at) end = std::min(end, change.frame);
                if (change.frame != at) continue;
                const auto i = static_cast<std::size_t>(change.loudness - 1);
                change.isWindow ? engine.setWindow(&shapes[i]) : engine.setSample(sounds[i].get());
            }
            if (at < c.firstGrain) end = std::min(end, c.firstGrain);
            engine.granularOn = at >= c.firstGrain;
            engine.GranularStreamProcessing(end - at, out.from(static_cast<std::size_t>(at)));
            at = end;
        }
        return out.left;
    }

    std::unique_ptr<mokSample> sounds[3];
    mokWindow shapes[3]{
        {4096, kWindowRectangular}, {4096, kWindowRectangular}, {4096, kWindowRectangular}};
};

TEST_P(TableSeam, IsOneDipOnTheOldTablesWhateverTheBlocks) {
    const auto expected = slowModel(GetParam());
    const auto whole = render(GetParam(), 4096);
    for (std::size_t n = 0; n < kFrames; ++n) ASSERT_NEAR(whole[n], expected[n], 1e-5f) << n;
    for (const int blockFrames : {1, 64, 480}) EXPECT_EQ(render(GetParam(), blockFrames), whole);
}

INSTANTIATE_TEST_SUITE_P(All, TableSeam, testing::ValuesIn(kCases));

TEST_F(TableSeam, LetsGoOfWhatSoundedWhenItHasGoneDownOrNothingSoundsAnyMore) {
    for (const bool stops : {false, true}) {
        mokGranulatorSF engine(sounds[0].get(), &shapes[0], 24, 44100.0f, 1);
        const RenderCycle& cycle = engine.renderCycle();
        Retirement retired(cycle, [&](const void* table) { return engine.holds(table); });
        StereoBlock out(1000);
        const auto render = [&](int frames) {
            engine.GranularStreamProcessing(frames, out.from(0));
            retired.collect();
            return retired.waiting();
        };
        engine.granularOn = true;
        render(1000);
        engine.setSample(sounds[1].get());
        retired.retire(std::shared_ptr<const mokSample>(sounds[0].get(), [](const auto*) {}));
        EXPECT_EQ(render(kSeam - 1), 1u);
        if (stops) {
            engine.setMixLevel(0.0f);
            engine.granularOn = false;
            EXPECT_EQ(render(1), 1u); // cut in the middle, and may go on
            engine.granularOn = true;
            render(1000);
            engine.granularOn = false;
        }
        render(1);
        EXPECT_EQ(render(1), 0u);
        EXPECT_EQ(engine.holds(sounds[1].get()), !stops);
    }
}

} // namespace
} // namespace zephyra

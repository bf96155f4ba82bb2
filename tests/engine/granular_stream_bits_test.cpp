// The engine's output against the literal loop, bit for bit, on every level this processor has.

#include "tests/support/literal_stream.h"
#include "tests/support/stream_probe.h"
#include "tests/support/test_sounds.h"
#include "tests/support/testing.h"

namespace zephyra {
namespace {

struct Case {
    const char* name;
    std::uint64_t frames = 44100;
    float sourceRate = 44100, outputRate = 44100;
    int window = kWindowHanning;
    unsigned long windowPoints = mokWindow::kPoints;
    float density = 282, length = 85, pitch = 0, rndPitch = 0, jitter = 5, rnd = 0.5f;
    float width = 0.25f, pan = 0, speed = 1, start = 0, end = 1, level = 0.5f;
    std::uint64_t offset = 0;
    std::uint32_t seed = 12345;
    GrainQuality quality = GrainQuality::classic;
};

std::ostream& operator<<(std::ostream& out, const Case& c) {
    return out << c.name;
}

const Case kCases[] = {
    {.name = "defaults", .density = 50},
    {.name = "a full pool"},
    {.name = "two octaves up, spread", .pitch = 24, .rndPitch = 24},
    {.name = "wide jitter wraps the source", .jitter = 1000, .rnd = 1},
    {.name = "short grains", .density = 400, .length = 5, .rnd = 1},
    {.name = "long grains", .density = 20, .length = 2000},
    {.name = "a live buffer's seam", .frames = 30011, .jitter = 900, .offset = 12345},
    {.name = "a live buffer's seam at the end", .frames = 9000, .pitch = 7, .offset = 8999},
    {.name = "panned right", .width = 1, .pan = 0.7f},
    {.name = "backwards region", .speed = -3, .start = 0.8f, .end = 0.3f},
    {.name = "a negative gain", .level = -0.75f},
    {.name = "a source of 16 frames", .frames = 16, .pitch = -12},
    {.name = "a small odd envelope", .window = kWindowBlackman, .windowPoints = 333},
    {.name = "a large envelope", .window = kWindowSync, .windowPoints = 70001},
    {.name = "fine grains", .pitch = 7, .rndPitch = 12, .quality = GrainQuality::fine},
    {.name = "fine grains over a live buffer's seam",
     .frames = 9000,
     .jitter = 900,
     .offset = 8999,
     .quality = GrainQuality::fine},
    {.name = "fine grains at the end of a source",
     .frames = 3000001,
     .jitter = 1000,
     .start = 0.9999f,
     .quality = GrainQuality::fine},
    {.name = "best grains",
     .density = 100,
     .rndPitch = 24,
     .jitter = 1000,
     .quality = GrainQuality::best},
    {.name = "best grains, four octaves up in few frames",
     .frames = 700,
     .sourceRate = 96000,
     .density = 15,
     .pitch = 48,
     .quality = GrainQuality::best},
    {.name = "best grains of 16 frames",
     .frames = 16,
     .density = 20,
     .pitch = 5,
     .quality = GrainQuality::best},
    {.name = "no envelope", .window = kWindowRectangular},
    {.name = "a long source", .frames = 17000001, .density = 100, .jitter = 1000},
    {.name = "a live buffer's seam far into it",
     .frames = 3000001,
     .density = 100,
     .pitch = 5,
     .jitter = 1000,
     .start = 0.4999f,
     .offset = 1500000},
    {.name = "the end of a very long source",
     .frames = 70000003,
     .density = 50,
     .pitch = 10,
     .jitter = 1000,
     .start = 0.9999f,
     .offset = 69990000},
    // 1 / length / rate = 2^-11 exactly, so every sum is exact; and 3 · 2^-12 rounds to even.
    {.name = "an exact envelope step", .outputRate = 32768, .length = 62.5f, .rnd = 0}};

using Level = CpuLevel;

class EngineBits : public testing::TestWithParam<std::tuple<Case, Level>> {};

/// Noise, which a long source repeats: other places sound the same a prime number of frames away
/// only.
std::unique_ptr<mokSample> sourceOf(const Case& c) {
    constexpr std::uint64_t period = 1000003;
    auto sample = noiseSample(std::min(c.frames, period), c.sourceRate);
    if (c.frames > period) {
        auto whole = std::make_unique<mokSample>(c.frames, c.sourceRate);
        for (std::uint64_t at = 0; at < c.frames; at += period)
            std::copy_n(&sample->data[0], std::min(period, c.frames - at), &whole->data[at]);
        whole->writeGuardPoint();
        sample = std::move(whole);
    }
    sample->offset = c.offset;
    return sample;
}

/// The same sound from the engine and the literal loop, over one random partition into blocks, in
/// some of which the sample may not be read.
void compare(const Case& c, mokSample& sample, Level level, int frames, std::mt19937& random,
             int largestBlock) {
    const mokWindow window(c.windowPoints, c.window);

    mokGranulatorSF engine(&sample, &window, mokGranulatorSF::kVoices, c.outputRate, c.seed);
    engine.setMixer(grainMixer(level));
    engine.granularOn = true;
    engine.setDensity(c.density);
    engine.setLength(c.length);
    engine.setRndLength(c.rnd);
    engine.setRndDensity(c.rnd);
    engine.setPitch(c.pitch);
    engine.setRndPitch(c.rndPitch);
    engine.setJittering(c.jitter);
    engine.setWidth(c.width);
    engine.setPan(c.pan);
    engine.setSpeed(c.speed);
    engine.setStart(c.start);
    engine.setEnd(c.end);
    engine.setLevel(c.level);
    engine.setQuality(c.quality);

    LiteralStream literal(sample, window, mokGranulatorSF::kVoices);
    const auto f = StreamProbe::fields(engine);
    literal.sampleRate = c.outputRate;
    literal.seed = c.seed;
    literal.quality = c.quality;
    literal.level = f.level;
    literal.width = f.width;
    literal.panA = f.panA;
    literal.panB = f.panB;
    literal.grainLength = f.grainLength;
    literal.density = f.density;
    literal.playbackRate = f.playbackRate;
    literal.rndLength = f.rndLength;
    literal.rndDensity = f.rndDensity;
    literal.rndPitch = f.rndPitch;
    literal.jitter = f.jitter;
    literal.scanSpan = f.scanSpan;
    literal.scanStart = f.scanStart;
    literal.phasorIncrement = f.scanIncrement;

    StereoBlock got(static_cast<std::size_t>(frames)), expected(static_cast<std::size_t>(frames));
    for (int at = 0; at < frames;) {
        const int block = std::min<int>(frames - at, 1 + static_cast<int>(random() % largestBlock));
        const auto from = static_cast<std::size_t>(at);
        sample.ready = random() % 8 != 0;
        engine.GranularStreamProcessing(block, got.from(from));
        literal.render(block, expected.left.data() + at, expected.right.data() + at);
        at += block;
    }
    for (std::size_t n = 0; n < static_cast<std::size_t>(frames); ++n) {
        ASSERT_EQ(std::bit_cast<std::uint32_t>(got.left[n]),
                  std::bit_cast<std::uint32_t>(expected.left[n]))
            << "left, frame " << n << ": " << got.left[n] << " and " << expected.left[n];
        ASSERT_EQ(std::bit_cast<std::uint32_t>(got.right[n]),
                  std::bit_cast<std::uint32_t>(expected.right[n]))
            << "right, frame " << n << ": " << got.right[n] << " and " << expected.right[n];
    }
    EXPECT_EQ(engine.startedGrains(), literal.started);
    EXPECT_EQ(engine.droppedGrains(), literal.dropped);
    EXPECT_GT(literal.started, 1u);
    EXPECT_EQ(StreamProbe::seed(engine), literal.seed);
}

TEST_P(EngineBits, EqualTheLiteralLoopWhateverTheBlocks) {
    const auto& [c, level] = GetParam();
    std::mt19937 random(99);
    const auto sample = sourceOf(c);
    for (int largestBlock : {1, 7, 64, 512, 4096})
        compare(c, *sample, level, largestBlock == 1 ? 6000 : 30000, random, largestBlock);
}

std::vector<Level> supportedLevels() {
    std::vector<Level> levels;
    for (Level level : {Level::baseline, Level::v3, Level::v4})
        if (level <= supportedCpuLevel()) levels.push_back(level);
    return levels;
}

std::string caseName(const testing::TestParamInfo<EngineBits::ParamType>& info) {
    std::string name = std::get<0>(info.param).name;
    name += std::string("_") + cpuLevelName(std::get<1>(info.param));
    for (char& character : name)
        if (!std::isalnum(static_cast<unsigned char>(character))) character = '_';
    return name;
}

INSTANTIATE_TEST_SUITE_P(Cases, EngineBits,
                         testing::Combine(testing::ValuesIn(kCases),
                                          testing::ValuesIn(supportedLevels())),
                         caseName);

TEST(EngineBits, HoldForRandomSettings) {
    std::mt19937 random(2024);
    const auto uniform = [&random](float low, float high) {
        return low + (high - low) * static_cast<float>(random() % 100001) * 1e-5f;
    };
    for (int trial = 0; trial < (kIsWatched ? 21 : 90); ++trial) {
        SCOPED_TRACE(trial);
        const Case c{.name = "random",
                     .frames = 20 + random() % 60000,
                     .sourceRate = uniform(8000, 96000),
                     .outputRate = uniform(22050, 96000),
                     .density = uniform(20, 400),
                     .length = uniform(5, 400),
                     .pitch = uniform(-24, 24),
                     .rndPitch = uniform(0, 24),
                     .jitter = uniform(0, 1000),
                     .rnd = uniform(0, 1),
                     .width = uniform(0, 1),
                     .pan = uniform(-1, 1),
                     .speed = uniform(-4, 4),
                     .start = uniform(0, 1),
                     .end = uniform(0, 1),
                     .level = uniform(0, 1),
                     .offset = trial % 2 ? random() % 20000 : 0,
                     .seed = static_cast<std::uint32_t>(random()) | 1u,
                     .quality = static_cast<GrainQuality>(trial % 3)};
        compare(c, *sourceOf(c), chosenCpuLevel(), 20000, random, 700);
        if (HasFatalFailure()) return;
    }
}

} // namespace
} // namespace zephyra

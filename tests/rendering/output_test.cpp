// The way of a render's samples into its file, or into what is none.

#include "platform/text/decibels.h"
#include "rendering/render_output.h"
#include "tests/support/failing_calls.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace zephyra {
namespace {

RenderPlan planOf(std::uint64_t frames) {
    return {.sampleRate = 44100,
            .playFrames = frames,
            .frames = frames,
            .blockFrames = 512,
            .seed = 1,
            .start = {}};
}

/// Whether a render of a constant level, half of it on the right, was written.
bool write(RenderOutput& output, const RenderRequest& request, std::uint32_t frames, float level,
           std::uint32_t block = 512, const ByteStream::GoesOn& goesOn = {}) {
    bool done = output.open(request, planOf(frames), goesOn).ok();
    for (std::uint32_t first = 0; done && first < frames; first += block) {
        const std::uint32_t part = std::min(block, frames - first);
        std::vector<float> left(part, level), right(part, level / 2);
        done = output.write(left.data(), right.data(), part).ok();
    }
    return done && output.finish({}) && output.close();
}

std::vector<float> rawOf(const fs::path& file) {
    const std::string bytes = readText(file);
    std::vector<float> samples(bytes.size() / sizeof(float));
    std::memcpy(samples.data(), bytes.data(), samples.size() * sizeof(float));
    return samples;
}

TEST(RenderOutput, FallsSmoothlyToNothingInTheLastTenMillisecondsWhateverTheBlock) {
    const TemporaryFolder folder;
    RenderRequest request{
        .output = folder / "a", .type = rawOutputType(), .format = SampleFormat::floats};
    for (const std::uint32_t frames : {1u, 2u, 300u, 441u, 442u, 5000u}) {
        const std::uint32_t faded = std::min(frames, 441u);
        for (const std::uint32_t block : {1u, 64u, 8192u}) {
            SCOPED_TRACE(testing::Message() << frames << " frames in blocks of " << block);
            RenderOutput output;
            ASSERT_TRUE(write(output, request, frames, 0.5f, block));
            const std::vector<float> got = rawOf(request.output);
            ASSERT_EQ(got.size(), 2 * frames);
            EXPECT_EQ(std::tuple(got[2 * frames - 2], got[2 * frames - 1]), std::tuple(0.0f, 0.0f));
            EXPECT_FLOAT_EQ(static_cast<float>(output.file().peak()),
                            *std::ranges::max_element(got));
            for (std::uint32_t n = 0; n < frames; ++n) {
                const float before = n == 0 ? 0.5f : got[2 * n - 2];
                if (n + faded < frames)
                    ASSERT_EQ(got[2 * n], 0.5f) << n;
                else // at most the steepest place of such a curve, in the middle
                    ASSERT_TRUE(before > got[2 * n] &&
                                before - got[2 * n] <= 0.76f / static_cast<float>(faded) + 1e-6f)
                        << n << ": " << before << " to " << got[2 * n];
                ASSERT_FLOAT_EQ(got[2 * n + 1], got[2 * n] / 2);
            }
        }
    }
}

TEST(RenderOutput, AnAutomaticGainTurnsDownOnlyWhatIsTooLoudAndAGivenOneAlways) {
    const TemporaryFolder folder;
    const OutputType& ogg = *findOutputType("ogg");
    const std::tuple<OutputGain, OutputType, float, double> rows[] = {
        {{.aim = OutputGain::Aim::clipFree}, rawOutputType(), 4.0f, -0.1},
        {{.aim = OutputGain::Aim::clipFree}, rawOutputType(), 0.9f, 20 * std::log10(0.9)},
        {{.aim = OutputGain::Aim::clipFree}, rawOutputType(), 0.0f, -INFINITY},
        {{.aim = OutputGain::Aim::clipFree}, ogg, 0.9f, -1.0},
        {{OutputGain::Aim::peak, -1}, rawOutputType(), 0.1f, -1},
        {{OutputGain::Aim::peak, -1}, rawOutputType(), 0.0f, -INFINITY},
        {{.decibels = -6}, rawOutputType(), 4.0f, 20 * std::log10(4.0) - 6},
        {{.decibels = 6}, rawOutputType(), 0.25f, 20 * std::log10(0.25) + 6},
    };
    for (const auto& [gain, type, level, peak] : rows) {
        const RenderRequest request{.output = folder / "a",
                                    .type = type,
                                    .format =
                                        type.isRaw() ? SampleFormat::floats : SampleFormat::shorts,
                                    .gain = gain};
        RenderOutput output;
        double heard = 0;
        output.setListener([&](const float* left, const float*, std::uint32_t frames) {
            heard = std::max(heard, double{*std::max_element(left, left + frames)});
        });
        ASSERT_TRUE(write(output, request, 70000, level));
        EXPECT_EQ(output.file().peak(), heard) << "the picture shows what is in the file";
        EXPECT_TRUE(std::abs(decibelsOf(heard) - peak) < 0.001 || decibelsOf(heard) == peak)
            << decibelsOf(heard) << " instead of " << peak;
        EXPECT_EQ(output.file().limitedSamples(), 0u);
        if (!type.isRaw()) continue;
        const std::vector<float> got = rawOf(request.output);
        ASSERT_EQ(got.size(), 140000u);
        for (std::size_t i = 0; i < 130000; ++i)
            ASSERT_FLOAT_EQ(got[i], static_cast<float>(heard / (i % 2 ? 2 : 1))) << i;
    }
    std::vector<float> left(9, 4.0f), right = left;
    left[3] = INFINITY; // is written as 0
    const RenderRequest request{.output = folder / "a",
                                .type = rawOutputType(),
                                .format = SampleFormat::floats,
                                .gain = OutputGain{.aim = OutputGain::Aim::clipFree}};
    RenderOutput output;
    ASSERT_TRUE(output.open(request, planOf(2000), {}) &&
                output.write(left.data(), right.data(), 9) && output.finish({}));
    EXPECT_NEAR(decibelsOf(output.gain()), decibelsOf(0.25) - 0.1, 0.001);
}

TEST(RenderOutput, IsWholeOrNotAtAllWhateverFails) {
    RenderRequest requests[] = {
        {.type = rawOutputType(), .format = SampleFormat::floats},
        {.gain = OutputGain{.aim = OutputGain::Aim::clipFree}},
    };
    for (RenderRequest& request : requests)
        expectWholeOrNotAtAll(
            [&request](const fs::path& path) {
                request.output = path;
                RenderOutput output;
                return write(output, request, 2000, 2.0f);
            },
            "old");
    const TemporaryFolder folder;
    requests[1].output = folder / "a";
    RenderOutput stopped; // when only the way from the disk to the file is left
    EXPECT_FALSE(write(stopped, requests[1], 2000, 2.0f, 512, [] { return false; }));
}

TEST(RenderOutput, OfWhatIsCopiedIntoAStreamNothingIsLeftBehindWhateverFails) {
    const TemporaryFolder folder(quickFolder());
    ::setenv("TMPDIR", folder.path().c_str(), 1);
    for (const bool automatic : {false, true})
        for (std::size_t failing = 0, calls = 1; failing < calls; ++failing) {
            const RenderRequest request{
                .output = "/dev/null",
                .type = *findOutputType("flac"),
                .gain = automatic ? std::optional(OutputGain{.aim = OutputGain::Aim::clipFree})
                                  : std::nullopt};
            std::size_t count = 0;
            FileCall failed = FileCall::status;
            setFileCallGate([&](FileCall call, const fs::path&) {
                if (count == failing) failed = call;
                return count++ == failing ? EIO : 0;
            });
            bool succeeded = false;
            {
                RenderOutput output;
                succeeded = write(output, request, 2000, 2.0f);
            }
            setFileCallGate({});
            calls = std::max(calls, count);
            const bool tidies = failed == FileCall::remove || failed == FileCall::list;
            for (const FileCall needed :
                 {FileCall::makeFolder, FileCall::read, FileCall::write, FileCall::rename})
                EXPECT_FALSE(succeeded && failed == needed) << failing;
            EXPECT_TRUE(tidies || folder.entries() == 0) << failing;
            for (const auto& left : fs::directory_iterator(folder.path())) fs::remove_all(left);
        }
    ::unsetenv("TMPDIR");
}

TEST(RenderOutput, APipeIsWaitedForAndWrittenIntoAsLongAsTheRenderGoesOn) {
    const TemporaryFolder folder;
    RenderRequest request{.output = folder / "pipe"};
    ASSERT_EQ(::mkfifo(request.output.c_str(), 0600), 0);
    int asked = 0;
    const auto soonNoMore = [&asked] { return ++asked < 3; };
    RenderOutput unread;
    EXPECT_FALSE(write(unread, request, 100, 0.5f, 100, soonNoMore)) << "nobody reads";

    std::string read;
    std::thread reader([&] { read = readText(request.output); });
    RenderOutput output;
    EXPECT_TRUE(write(output, request, 100000, 0.5f));
    reader.join();
    request.output = folder / "file";
    RenderOutput file;
    ASSERT_TRUE(write(file, request, 100000, 0.5f));
    EXPECT_TRUE(read == readText(request.output));

    request.output = folder / "pipe";
    const int idle = ::open(request.output.c_str(), O_RDONLY | O_NONBLOCK);
    asked = -20; // about what fits into a pipe
    RenderOutput stalled;
    EXPECT_FALSE(write(stalled, request, 100000, 0.5f, 100000, soonNoMore)) << "nobody empties it";
    ::close(idle);
}

} // namespace
} // namespace zephyra

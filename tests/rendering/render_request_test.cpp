// The files that a render reads.

#include "platform/sound/audio_file_float_wav.h"
#include "rendering/offline_render.h"
#include "rendering/render_source.h"
#include "tests/support/temporary_folder.h"

#include <gtest/gtest.h>

namespace zephyra {
namespace {

TEST(RenderSource, IsReadUntilWhoeverAsksForItWantsNoMore) {
    const TemporaryFolder folder;
    const std::vector<float> sound(40000, 0.25f);
    FloatWavWriter writer;
    ASSERT_TRUE(writer.open(folder / "in.wav", 44100, 1));
    const float* const channel = sound.data();
    ASSERT_TRUE(writer.write(&channel, 40000));
    ASSERT_TRUE(writer.close());
    for (const bool live : {false, true}) {
        const RenderRequest request{.input = folder / "in.wav", .live = live};
        double last = 0;
        const auto read = readRenderSource(request, Folders{}, std::make_shared<FileFacts>(),
                                           [&last](double share) {
                                               last = share;
                                               return true;
                                           });
        ASSERT_TRUE(read) << read.message();
        EXPECT_EQ(last, 1.0);
        EXPECT_EQ(read.value().shownSamples().size(), 40000u);
        EXPECT_EQ(read.value().source.inputLeft.size(), live ? 40000u : 0u);
        EXPECT_FALSE(readRenderSource(request, Folders{}, std::make_shared<FileFacts>(),
                                      [](double) { return false; }));
    }
}

} // namespace
} // namespace zephyra

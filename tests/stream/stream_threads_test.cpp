// Every setter, swap and switch of a stream while another thread renders: for the thread sanitizer.

#include "engine/envelope_menu.h"
#include "tests/support/test_sounds.h"
#include "tests/support/test_stream.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cmath>
#include <thread>
#include <vector>

namespace zephyra {
namespace {

TEST(StreamThreads, MayTurnEverythingWhileAnotherThreadRenders) {
    TestStream stream;
    stream->play(true);
    std::atomic<bool> stop = false, finite = true;
    std::atomic<int> cycles = 0;
    std::thread renderer([&] {
        std::vector<float> in(700, 0.5f);
        const ChannelList input{in.data(), in.data()};
        StereoBlock out(700);
        while (!stop) {
            const int frames = 1 + cycles % 700;
            GranulatorProcessing(&stream.controller, frames, &input.list, out.from(0));
            if (!std::isfinite(out.left[0] + out.right[0])) finite = false;
            ++cycles;
        }
    });

    for (int round = 0; round < 60 || cycles < 60; ++round) {
        for (const ControlRange& range : controlRanges()) {
            const float norm = static_cast<float>((round * 7) % 11) / 10.0f;
            const float linear = range.minimum + norm * (range.maximum - range.minimum);
            const bool counts =
                range.kind == ControlKind::choice || range.kind == ControlKind::whole;
            stream->setControl(range.id,
                               counts ? std::trunc(linear) : displayedFromLinear(range, linear));
        }
        stream->setRegion(0.1f * static_cast<float>(round % 10), 0.5f);
        stream->loadSound(noiseSample(round % 2 ? 50000 : 300, 44100.0f));
        stream->pickEnvelope(static_cast<std::size_t>(round) % kEnvelopeMenu.size());
        if (round % 5 == 0) stream.session.sampleRate = round % 2 ? 44100.0 : 48000.0;
        stream->enableLive(round % 3 != 0);
        if (round % 4 == 0) stream->waveForm().clearBuffer();
        stream->waveForm().resetLiveWriteIndex();
        std::vector<float> shown(1000);
        stream->waveForm().copyLive(stream->waveForm().getWriteLiveIndex(), shown);
        stream->waveForm().takeRedrawRequest();
        stream->play(round % 7 != 0);
        stream->collect();
    }
    stop = true;
    renderer.join();
    EXPECT_TRUE(finite);
    stream->collect();
    EXPECT_EQ(stream->waitingObjects(), 0u);
}

} // namespace
} // namespace zephyra

// What becomes of the host's MIDI on its way to the main queue.

#include "hosting/midi_inlet.h"
#include "tests/support/hosted_unit.h"

namespace zephyra {
namespace {

struct InletTest : testing::Test {
    void push(std::vector<std::uint8_t> bytes) { inlet.push(bytes.data(), bytes.size()); }

    Instance instance;
    std::vector<MidiMessage> heard;
    MidiInlet inlet{instance, [this](const MidiMessage& message) { heard.push_back(message); }};
};

TEST_F(InletTest, ABurstThatIsTooLongEndsWhereItShouldAndLaterMessagesComeLater) {
    for (std::size_t i = 0; i < MidiInlet::kCapacity; ++i) push({0xB0, 1, 1});
    for (std::uint8_t value = 10; value <= 12; ++value)
        push({0xB0, 1, value, 0xB1, 1, value, 0xE0, 0, value, 0xC0, value, 0xD0, value, 0xA0, 1,
              value, 0x90, value, 100});
    push({0x80, 12, 0});
    EXPECT_EQ(inlet.replaced(), 13u); // two rounds of six kinds, and the note that ended
    instance.runLoop.runPosted();
    EXPECT_EQ(heard.size(), std::size_t{MidiInlet::kMostAtOnce});
    instance.runLoop.setClock(RunLoop::Clock::sample); // which waits for all of it
    instance.runLoop.runPosted();
    push({0xB0, 1, 13});
    instance.runLoop.runPosted();
    ASSERT_EQ(heard.size(), MidiInlet::kCapacity + 10);
    heard.erase(heard.begin(), heard.begin() + MidiInlet::kCapacity);
    const std::vector<MidiMessage> expected{
        {{0xB0, 1, 12}}, {{0xB1, 1, 12}}, {{0x90, 10, 100}}, {{0x90, 11, 100}}, {{0x80, 12, 0}},
        {{0xA0, 1, 12}}, {{0xC0, 12, 0}}, {{0xD0, 12, 0}},   {{0xE0, 0, 12}},   {{0xB0, 1, 13}}};
    EXPECT_TRUE(heard == expected);
}

TEST_F(InletTest, ValuesNeverGoBackHoweverTheTwoThreadsMeet) {
    constexpr int kMessages = 2000000;
    std::atomic<bool> over = false;
    std::thread render([&] {
        for (int i = 0; i < kMessages; ++i) { // a bend that only rises
            const auto bend = static_cast<int>(i * 16383LL / (kMessages - 1));
            push({0xE0, static_cast<std::uint8_t>(bend & 127),
                  static_cast<std::uint8_t>(bend >> 7)});
        }
        over = true;
    });
    std::uint64_t seen = 0;
    int last = 0;
    for (bool ended = false; !std::exchange(ended, over.load());) {
        if (ended) instance.runLoop.setClock(RunLoop::Clock::sample); // takes all that is left
        instance.runLoop.runPosted();
        for (const MidiMessage& message : heard)
            EXPECT_LE(std::exchange(last, message.bend()), last);
        seen += heard.size();
        heard.clear();
    }
    render.join();
    EXPECT_EQ(last, 16383);
    EXPECT_EQ(seen + inlet.replaced(), std::uint64_t{kMessages});
}

TEST(LatestMidi, HoldsWhatComesWhileItIsTakenForTheNextRound) {
    LatestMidi latest;
    const MidiMessage first{{0xB0, 1, 1}}, last{{0xE0, 0, 9}};
    for (int i = 0; i < 2; ++i) EXPECT_EQ(latest.store(last), i == 0);
    std::vector<MidiMessage> taken;
    for (int round = 0; round < 2; ++round) {
        EXPECT_TRUE(latest.any());
        latest.take([&](const MidiMessage& message) {
            EXPECT_TRUE(latest.any()); // or the ring would overtake what is still to come
            taken.push_back(message);
            if (message == last) latest.store(first); // its word was passed
        });
    }
    EXPECT_TRUE(taken == (std::vector{last, first}) && !latest.any());
}

TEST(LatestMidi, LosesNoCountHoweverTheTwoThreadsMeet) {
    LatestMidi latest;
    std::atomic<int> taken = 0;
    const auto take = [&] { latest.take([&](const MidiMessage&) { ++taken; }); };
    std::thread render([&] { // all over the words, so that one counts while the other does
        for (int i = 0; taken < 1000000; ++i)
            latest.store({{static_cast<std::uint8_t>(0x90 + i / 128 % 48),
                           static_cast<std::uint8_t>(i % 128), 1}});
    });
    while (taken < 1000000) take();
    render.join();
    take();
    EXPECT_FALSE(latest.any());
    latest.store({{0xB0, 1, 1}});
    EXPECT_TRUE(latest.any());
}

TEST(OfflineHostEvents, ReachUnitAndInletInTheOrderOfTheOffsetsWhateverTheirLengthAndOnce) {
    HostedUnit hosted(component_type::musicEffect);
    hosted.ready();
    std::vector<MidiMessage> heard;
    MidiInlet inlet(hosted.instance, [&](const MidiMessage& message) { heard.push_back(message); });
    hosted.host.setMidiInlet(&inlet);
    const std::uint8_t controllers[] = {0xB0, 1, 2, 3, 4, 5}, note[] = {0x90, 72, 9},
                       before[] = {0x9F, 60, 9};
    hosted.host.queueMidi(controllers, 6, 10); // what is cut off does not reach into another event
    hosted.host.queueMidi(controllers + 1, 1, 11);
    hosted.host.queueMidi(note, 3, 9);
    hosted.host.queueMidi(before, 3, 8);
    hosted.queue(ControlId::width, 1.0f);
    hosted.host.queueRamp(static_cast<AUParameterAddress>(ControlId::width), 0.5f, 64, 0);
    hosted.render(512);
    hosted.render(512);
    const std::vector<MidiMessage> expected{
        {{0x9F, 60, 9}}, {{0x90, 72, 9}}, {{0xB0, 1, 2}}, {{0xB0, 3, 4}}};
    EXPECT_TRUE(heard == expected);
    EXPECT_EQ(hosted.stream.linear(ControlId::pitch), 12.0f); // the unit plays it as well
    EXPECT_EQ(hosted.stream.linear(ControlId::width), 0.5f);
    hosted.host.setMidiInlet(nullptr);
}

} // namespace
} // namespace zephyra

// The menu of envelopes: its texts, what each entry is, and how it is found by name.

#include "engine/envelope_menu.h"
#include "platform/random_source.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace zephyra {
namespace {

TEST(EnvelopeMenu, OffersTheseEntriesInThisOrder) {
    const char* const expected[] = {
        "Grain Envelope: Gaussian",   "Grain Envelope: Blackman-Harris",
        "Grain Envelope: Hanning",    "Grain Envelope: Barlett",
        "Grain Envelope: Sync",       "Grain Envelope: Hamming",
        "Grain Envelope: Mok",        "Grain Envelope: Rectangular",
        "Grain Envelope: Pulse 1",    "Grain Envelope: Pulse 2",
        "Grain Envelope: Sinusoidal", "Grain Envelope: Random",
    };
    ASSERT_EQ(kEnvelopeMenu.size(), std::size(expected));
    for (std::size_t i = 0; i < std::size(expected); ++i)
        EXPECT_STREQ(kEnvelopeMenu[i], expected[i]);
    EXPECT_STREQ(kEnvelopeMenu[kDefaultEnvelope], "Grain Envelope: Hanning");
}

TEST(EnvelopeMenu, MakesTheShapeThatEachEntryNames) {
    const auto fill = [](std::size_t entry, mokWindow& window) {
        switch (entry) {
        case 0:
            return window.genGaussian();
        case 1:
            return window.genBlackmanHarris();
        case 2:
            return window.genHanning();
        case 3:
            return window.genBarlett();
        case 4:
            return window.genSync(0.75f);
        case 5:
            return window.genHamming();
        case 6:
            return window.genBlackmanMok();
        case 7:
            return window.genRectangular();
        case 8:
            return window.genPulse();
        case 9:
            return window.genPulse2();
        case 10:
            return window.genSine();
        default:
            return window.genRandom();
        }
    };
    for (std::size_t entry = 0; entry < kEnvelopeMenu.size(); ++entry) {
        const RandomSource before = setRandomSource(std::mt19937(5));
        mokWindow expected(4096, kWindowBarlettHanning);
        fill(entry, expected);
        setRandomSource(std::mt19937(5));
        const auto window = makeEnvelope(entry);
        setRandomSource(before);
        ASSERT_TRUE(window);
        ASSERT_EQ(window->size, 4096u);
        EXPECT_TRUE(std::equal(window->getPtr(), window->getPtr() + 4099, expected.getPtr()))
            << kEnvelopeMenu[entry];
    }
    EXPECT_EQ(makeEnvelope(kEnvelopeMenu.size()), nullptr);
}

TEST(EnvelopeMenu, FindsAnEntryByAnyReasonableSpelling) {
    const struct {
        const char* name;
        std::optional<std::size_t> entry;
    } cases[] = {
        {"Grain Envelope: Hanning", 2},
        {"Hanning", 2},
        {"hanning", 2},
        {"  H A N N I N G ", 2},
        {"grainenvelope:hamming", 5},
        {"Blackman-Harris", 1},
        {"blackman harris", 1},
        {"pulse1", 8},
        {"Pulse 2", 9},
        {"mok", 6},
        {"Pulse", std::nullopt},
        {"Pulse 12", std::nullopt},
        {"Han", std::nullopt},
        {"Grain Envelope: ", std::nullopt},
        {"", std::nullopt},
    };
    for (const auto& c : cases) EXPECT_EQ(findEnvelope(c.name), c.entry) << c.name;
}

} // namespace
} // namespace zephyra

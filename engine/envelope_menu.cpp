#include "engine/envelope_menu.h"

#include "platform/random_source.h"

#include <new>
#include <string>

namespace zephyra {

namespace {

using Generator = void (*)(mokWindow&, RandomSource&);

/// In the menu's order.
constexpr std::array<Generator, kEnvelopeMenu.size()> kGenerators = {
    [](mokWindow& window, RandomSource&) { window.genGaussian(); },
    [](mokWindow& window, RandomSource&) { window.genBlackmanHarris(); },
    [](mokWindow& window, RandomSource&) { window.genHanning(); },
    [](mokWindow& window, RandomSource&) { window.genBarlett(); },
    [](mokWindow& window, RandomSource&) { window.genSync(mokWindow::kSyncPeak); },
    [](mokWindow& window, RandomSource&) { window.genHamming(); },
    [](mokWindow& window, RandomSource&) { window.genBlackmanMok(); },
    [](mokWindow& window, RandomSource&) { window.genRectangular(); },
    [](mokWindow& window, RandomSource&) { window.genPulse(); },
    [](mokWindow& window, RandomSource&) { window.genPulse2(); },
    [](mokWindow& window, RandomSource&) { window.genSine(); },
    [](mokWindow& window, RandomSource& random) { window.genRandom(random); }};

/// Letters and digits alone, in lower case.
std::string plain(std::string_view text) {
    std::string result;
    for (char c : text) {
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
        if ((c >= 'a' && c <= 'z') || (c >= '0' && c <= '9')) result += c;
    }
    return result;
}

/// plain(), without the words that all entries begin with.
std::string plainEntry(std::string_view text) {
    constexpr std::string_view kCommon = "grainenvelope";
    std::string result = plain(text);
    if (result.starts_with(kCommon)) result.erase(0, kCommon.size());
    return result;
}

} // namespace

std::shared_ptr<mokWindow> makeEnvelope(std::size_t menuIndex, RandomSource& random) {
    if (menuIndex >= kGenerators.size()) return nullptr;
    try {
        auto window = std::make_shared<mokWindow>(mokWindow::kPoints, kWindowRectangular);
        kGenerators[menuIndex](*window, random);
        return window;
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

std::optional<std::size_t> findEnvelope(std::string_view name) {
    const std::string wanted = plainEntry(name);
    for (std::size_t i = 0; i < kEnvelopeMenu.size(); ++i)
        if (plainEntry(kEnvelopeMenu[i]) == wanted) return i;
    return std::nullopt;
}

} // namespace zephyra

// Presets and sessions of the whole system: what each keeps, and what brings them back.

#include "tests/support/hosted_unit.h"

namespace zephyra {
namespace {

struct Librarian : HostedUnit {
    explicit Librarian(const TemporaryFolder& shared) : HostedUnit(component_type::instrument) {
        instance.folders = {shared.path(), {}};
        ready();
    }
    /// Other settings for each number; an LFO moves other controls as well.
    void play(std::size_t number) {
        for (const ControlRange& range : controlRanges())
            stream.setLinear(range.id, static_cast<float>(number));
        for (std::size_t i = number; const auto& one : view.assignable.all())
            view.assignments.assign(*one.control,
                                    i++ % 3 ? AssignmentType::none : AssignmentType::lfo);
    }
    /// No time passes, in which an LFO would move on.
    void settle() {
        for (int i = 0; i < 4; ++i) render(0);
    }
};

TEST(Preset, ComesBackByMidiAsItWasSavedWhateverWasPlayedBefore) {
    const TemporaryFolder shared;
    Librarian player(shared), restored(shared);
    std::vector<PropertyDictionary> wanted;
    for (const std::size_t number : {0u, 1u, 2u}) {
        player.play(number);
        if (number < 2) player.view.presets.addBank(); // the last goes into the second as well
        wanted.push_back(player.view.snapshotState());
        player.view.presets.saveSnap();
        player.render(4000);
    }
    const std::uint8_t everyStep[] = {0, 1, 2, 0, 2, 1, 0};
    for (const std::uint8_t number : everyStep) {
        player.midi({0xB0, 0, std::min<std::uint8_t>(number, 1), 0xC0,
                     static_cast<std::uint8_t>(number / 2)});
        player.settle();
        const PropertyDictionary got = player.view.snapshotState();
        for (const auto& [key, value] : wanted[number])
            EXPECT_TRUE(got.contains(key) && got.at(key) == value) << int{number} << ": " << key;
        EXPECT_EQ(got.size(), wanted[0].size()); // not one of a session, nor the name
        player.render(4000);
    }
    // A session has what a hand changed since.
    player.stream.setLinear(ControlId::density, 77);
    restored.view.presets.selectBankFromIndex(0);
    restored.view.presets.selectSnapFromIndex(0); // would be loaded behind the session
    restored.view.restoreState(player.view.getState());
    restored.settle();
    EXPECT_TRUE(restored.view.getState() == player.view.getState());
}

TEST(Preset, OfWhatLiveHeardGetsItsFileBeforeItIsSaved) {
    for (const bool paced : {false, true}) {
        const TemporaryFolder shared;
        Librarian player(shared);
        player.stream.setLiveAllowed(true);
        player.stream.setLinear(ControlId::live, 1.0f);
        player.instance.session.sampleRate = 44100.0;
        player.render(1000);
        player.stream.setLinear(ControlId::live, 0.0f);
        if (paced) {
            player.instance.runLoop.setClock(RunLoop::Clock::wall);
            player.instance.runLoop.tryAdvanceByWall(0.0);
        }
        player.view.presets.addBank();
        for (int save = 0; save < 2; ++save) player.view.presets.saveSnap();
        player.instance.runLoop.finishWork();
        const Bank* const bank = player.view.presets.getSelectedBankDictionary();
        ASSERT_EQ(bank->size(), 2u) << paced;
        for (const auto& [key, record] : *bank)
            EXPECT_EQ(record.as<PropertyDictionary>()
                          ->at("Sample_0")
                          .as<PropertyDictionary>()
                          ->at("RelativePath"),
                      PropertyValue("Rec 1.wav"));
        EXPECT_TRUE(fs::exists(shared / "Rec 1.wav"));
        EXPECT_FALSE(fs::exists(shared / "Rec 2.wav"));
    }
}

} // namespace
} // namespace zephyra

// What starts and ends an instance in a host: notes, pedals, Play Stop, states.

#include "tests/support/hosted_plugin.h"

namespace zephyra {
namespace {

using enum ControlId;

struct Player : HostedPlugin {
    explicit Player(PluginKind kind = PluginKind::instrument) : HostedPlugin(kind) { render(); }
    /// Blocks of a bounce, or in real time.
    void pass(int blocks = 1) {
        for (int i = 0; i < blocks; ++i) isLive ? renderLive() : void(render());
    }
    void fadeOutIn(float seconds) {
        const auto held = main();
        system().view._fadeOutTime.setValue(seconds);
    }
    /// Plays messages of three bytes as a text has them, a block after each; "|" lets one go by,
    /// and "+" plays what follows in the block of what was before.
    void play(const std::string& text) {
        std::istringstream words(text);
        std::vector<std::uint8_t> bytes;
        bool goesBy = false; // the block of what was before
        for (std::string word; words >> word;) {
            if (std::exchange(goesBy, false) && word != "+") pass();
            if (word == "|") pass();
            if (word == "|" || word == "+") continue;
            bytes.push_back(static_cast<std::uint8_t>(std::stoi(word, nullptr, 16)));
            if (bytes.size() < 3) continue;
            midi({bytes[0], bytes[1], bytes[2]});
            bytes.clear();
            goesBy = true;
        }
        if (goesBy) pass();
    }

    bool isLive = false;
};

TEST(InstrumentNotes, PlayUntilTheLastKeyAndThePedalAreUp) {
    const std::tuple<const char*, bool, const char*> rows[] = {
        {"90 3C 64", true, "a note"},
        {"90 3C 00", false, "the end of none"},
        {"80 3C 00", false, "the same"},
        {"90 3C 64 80 3C 40", false, "its end"},
        {"90 3C 64 90 3C 00", false, "an end as a note of velocity 0"},
        {"90 3C 64 90 40 64 80 3C 40", true, "one of two"},
        {"90 3C 64 90 40 64 80 3C 40 80 40 40", false, "both"},
        {"90 3C 64 91 3C 64 80 3C 40", true, "the same key of another channel"},
        {"90 3C 64 81 3C 40", true, "another channel's end"},
        {"B0 40 7F 90 3C 64 80 3C 40", true, "the pedal holds"},
        {"B0 40 7F 90 3C 64 80 3C 40 B0 40 3F", false, "and lets go"},
        {"B0 40 7F 90 3C 64 80 3C 40 B0 79 00", false, "by a reset of controllers"},
        {"B0 40 7F 91 3C 64 81 3C 40", false, "another channel's pedal"},
        {"B0 40 3F 90 3C 64 80 3C 40", false, "a pedal that is up"},
        {"90 3C 64 B0 40 7F 80 3C 40 B0 40 00", false, "a pedal that came later"},
        {"90 3C 64 B0 40 7F B0 40 00", true, "a pedal, while the key stays down"},
        {"90 3C 64 90 40 64 B0 7B 00", false, "all keys up"},
        {"90 3C 64 91 40 64 B0 7B 00", true, "of one channel"},
        {"B0 40 7F 90 3C 64 B0 7B 00", true, "all keys up, the pedal down"},
        {"B0 40 7F 90 3C 64 B0 7B 00 B0 40 00", false, "and up"},
        {"B0 40 7F 90 3C 64 B0 78 00", false, "sound off, pedal or not"},
        {"90 3C 64 91 3C 64 B0 78 00", true, "of one channel"},
        {"90 3C 64 80 3C 40 90 3C 64", true, "again, while it fades"},
        {"90 3C 64 80 3C 40 + 90 40 64", true, "an end and a note in one moment"},
        {"90 3C 64 + 80 3C 40", false, "a note and its end in one moment"},
        {"90 3C 64 + 80 3C 40 + 90 3C 64", true, "and again"},
        {"90 3C 64 + B0 78 00 + 90 3C 64", true, "sound off and a note in one moment"}};
    for (const auto& [text, plays, what] : rows)
        for (const bool live : {false, true}) {
            if (live && !std::strchr(text, '+')) continue; // MAIN takes one at a time anyway
            Player player;
            player.isLive = live;
            player.fadeOutIn(0.1f);
            player.play(text);
            player.pass(live ? 20 : 2);
            EXPECT_TRUE(live ? player.willPlay(plays) : player.plays() == plays) << what << live;
            EXPECT_EQ(player.value(playStop), plays ? 1.0f : 0.0f) << what << live;
        }
}

TEST(InstrumentNotes, FadeByTheFadeTimeAndSoundOffDoesNot) {
    Player player;
    player.fadeOutIn(1.0f);
    player.play("90 3C 64");
    EXPECT_GT(player.render(50), 0.01f);
    player.play("80 3C 40");
    EXPECT_GT(player.render(30), 0.01f); // after a third of a second
    player.play("B0 78 00");             // also what fades already
    EXPECT_LT(player.render(20), 1e-3f); // where the fade would be at half
    player.play("90 3C 64");
    player.render(60); // longer than a stop takes to cut what still sounds
    EXPECT_GT(player.render(), 0.01f);
}

TEST(InstrumentNotes, EndOnlyWhatTheyBeganUnlessItIsToGoOn) {
    Player player;
    player.set(playStop, 1.0f);
    player.play("| 90 3C 64 80 3C 40");
    EXPECT_TRUE(player.plays()) << "Play goes on";
    player.play("B0 78 00");
    EXPECT_FALSE(player.plays()) << "sound off ends it";
    player.play("90 3C 64");
    player.set(playStop, 0.0f);
    player.play("| 80 3C 40");
    EXPECT_FALSE(player.plays()) << "what a hand has ended";
    player.play("90 3C 64");
    player.set(playStop, 0.0f); // and by hand again, while the key is down
    player.render();
    player.set(playStop, 1.0f);
    player.play("| 80 3C 40");
    EXPECT_TRUE(player.plays());

    Player going;
    going.setSettings({.notesEnd = NotesEnd::goOn});
    going.play("90 3C 64 80 3C 40");
    EXPECT_TRUE(going.plays());

    Player tuned;
    tuned.setSettings({.notesBegin = NotesBegin::tune});
    tuned.play("90 3F 64");
    EXPECT_FALSE(tuned.plays());
    EXPECT_EQ(tuned.value(pitch), 3.0f);
    tuned.set(playStop, 1.0f);
    tuned.play("| 80 3F 40");
    EXPECT_TRUE(tuned.plays()) << "what a hand has begun";
}

TEST(InstrumentNotes, TakeTurnsWithPlayStopAlsoInRealTime) {
    for (const bool offline : {false, true})
        for (const bool noteIsLast : {false, true}) {
            Player player;
            player.set(playStop, 1.0f);
            player.render(3);
            player.set(playStop, 0.0f, 7);
            player.set(playStop, 0.0f, 9);
            player.midi({0x90, 60, 100}, noteIsLast ? 9 : 8);
            player.isLive = !offline;
            player.pass(20);
            EXPECT_TRUE(offline ? player.plays() == noteIsLast : player.willPlay(noteIsLast))
                << offline;
        }
}

TEST(InstrumentNotes, AreOverWhereTheHostStopsTheInstrument) {
    for (const bool isTaken : {true, false}) {
        HostedPlugin plugin(PluginKind::instrument);
        const auto prepareAgain = [&] {
            EXPECT_TRUE(plugin.prepare({48000.0, HostedPlugin::kFrames}).ok());
        };
        plugin.midi({0x90, 60, 100});
        if (isTaken) {
            EXPECT_TRUE(plugin.willPlay(true));
            prepareAgain();
        } else {
            const auto held = plugin.main(); // MAIN has not heard of the note yet
            plugin.renderLive();
            prepareAgain();
        }
        EXPECT_TRUE(plugin.willPlay(false));
        plugin.midi({0x90, 64, 100});
        EXPECT_TRUE(plugin.willPlay(true));
        plugin.midi({0x80, 64, 0});
        EXPECT_TRUE(plugin.willPlay(false)) << "though no end came of the first";
    }
}

TEST(InstrumentNotes, AreNotWhatIsLearnedOrChoosesPresets) {
    Player player;
    MidiManager& manager = player.system().view.midiManager;
    {
        const auto held = player.main();
        ASSERT_TRUE(manager.bind({.trigger = {.source = MidiSource::note, .number = 0x30},
                                  .control = player.system().view.control(playStop)}));
        manager.setNavigation({.firstPresetNote = 0x18});
    }
    player.play("90 18 64");
    EXPECT_FALSE(player.plays());
    player.play("90 30 64 80 30 40");
    EXPECT_TRUE(player.plays()) << "a button that starts";
    player.play("90 30 64 80 30 40");
    EXPECT_FALSE(player.plays()) << "and stops";
}

TEST(InstrumentNotes, LeaveTheTransportToTheHostWithScanSync) {
    Player player;
    player.sync(true);
    player.set(playStop, 1.0f);
    player.play("| 90 3C 64 80 3C 40");
    EXPECT_TRUE(player.plays()) << "it waits for the host, whatever notes end";
    player.set(playStop, 0.0f);
    player.play("| 90 3C 64 |");
    EXPECT_FALSE(player.plays());
    player.set(playStop, 1.0f);
    player.play("| B0 78 00 90 3C 64 80 3C 40 90 3C 64 |");
    EXPECT_TRUE(player.plays()) << "armed still";
    player.set(playStop, 0.0f);
    player.transport.tempo = 120.0;
    player.transport.beats = 0.0;
    player.transport.moving = true;
    player.play("| | 80 3C 40 |");
    EXPECT_TRUE(player.plays());
}

TEST(PluginStart, IsAsTheKindSays) {
    HostedPlugin effect(PluginKind::effect), instrument(PluginKind::instrument),
        standalone(PluginKind::standalone);
    EXPECT_GT(effect.render(60), 0.01f);
    EXPECT_EQ(effect.value(live), 1.0f);
    for (HostedPlugin* const plugin : {&instrument, &standalone}) {
        EXPECT_EQ(plugin->render(60), 0.0f) << "nothing of the input";
        EXPECT_EQ(plugin->value(live), 0.0f);
        plugin->midi({0x90, 60, 100, 0x90, 64, 100}); // more than a message
        EXPECT_EQ(plugin->render(20), 0.0f);
        plugin->midi({0x90, 60, 100});
        EXPECT_GT(plugin->render(60), 0.01f);
    }
    effect.midi({0x90, 60, 100});
    effect.midi({0x80, 60, 100});
    effect.midi({0xB0, 120, 0});
    effect.render();
    EXPECT_TRUE(effect.plays()) << "notes do not end an effect";
}

TEST(PluginStart, IsAsTheStateHasItUnlessSomethingWasPlayedSinceThatWasAskedFor) {
    // The state waits for MAIN, which a screen holds; RENDER goes on meanwhile.
    using enum PluginKind;
    using Act = std::function<void(Player&)>;
    const Act none = [](Player&) {},
              note =
                  [](Player&p) {
                      p.midi({0x90, 60, 100});
                  },
              end =
                  [](Player&p) {
                      p.midi({0x80, 60, 0}, 9);
                  },
              play = [](Player&p) { p.set(playStop, 1.0f); },
              stop = [](Player&p) { p.set(playStop, 0.0f); };
    const auto both = [](const Act& one, const Act& other) {
        return [one, other](Player& p) { one(p), other(p); };
    };
    const auto late = [note](Player& p) { // behind more than MAIN takes at a time
        for (int i = 0; i < 4000; ++i) p.midi({0xB0, 1, 1});
        note(p);
    };
    const struct {
        PluginKind kind;
        bool played, synced, moves; // before, the state's scan, the host
        Act before, after;
        bool plays, playsOn; // and when the key is up
        const char* what;
        NotesBegin notes = NotesBegin::start; // the state's
    } rows[] = {
        {effect, false, false, false, none, none, true, true, "it plays"},
        {effect, true, true, false, none, none, false, false, "until the host moves it"},
        {effect, false, true, true, none, none, true, true, "which it does"},
        {effect, false, false, true, none, stop, false, false, "stopped since"},
        {effect, false, false, true, none, note, true, true, "notes are nothing to it"},
        {instrument, false, false, false, none, none, false, false, "it waits"},
        {instrument, true, false, true, none, none, false, false, "whatever played"},
        {instrument, false, true, true, none, none, true, true, "or for the host alone"},
        {standalone, true, false, false, none, none, false, false, "it waits as well"},
        {instrument, false, false, true, none, play, true, true, "started since"},
        {instrument, false, false, true, none, note, true, false, "a note since"},
        {instrument, true, false, true, none, note, true, false, "and what played is its"},
        {instrument, true, false, true, none, note, false, false, "it tunes", NotesBegin::tune},
        {instrument, false, false, true, none, both(note, end), false, false, "a short one"},
        {instrument, false, false, true, note, none, false, false, "a note before"},
        {instrument, false, false, true, late, none, false, false, "that comes late"},
        {instrument, true, false, true, both(stop, note), none, false, false, "that waits"},
        {instrument, false, true, true, none, note, true, true, "the host moves it"}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        Player plugin(row.kind), saved(row.kind);
        plugin.isLive = true;
        saved.sync(row.synced);
        saved.setSettings({.notesBegin = row.notes});
        const std::string state = saved.state();
        plugin.set(playStop, row.played ? 1.0f : 0.0f);
        plugin.transport.moving = row.moves;
        plugin.pass();
        ASSERT_TRUE(plugin.willPlay(row.played));
        const StateOrder& states = plugin.system().instance.states;
        const StateOrder::Number asked = states.now();
        std::thread host;
        {
            const auto screen = plugin.main();
            row.before(plugin);
            plugin.pass();
            host = std::thread([&] { EXPECT_TRUE(plugin.restore(state).ok()); });
            while (states.now() == asked) std::this_thread::yield();
            row.after(plugin);
            plugin.pass();
        }
        host.join();
        plugin.pass(20);
        EXPECT_TRUE(plugin.willPlay(row.plays));
        end(plugin);
        plugin.pass(20);
        EXPECT_TRUE(plugin.willPlay(row.playsOn));
    }
}

} // namespace
} // namespace zephyra

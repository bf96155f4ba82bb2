// What a host keeps of an instance: state, version, settings, programs; and what it refuses.

#include "platform/sound/float_file_writer.h"
#include "tests/support/hosted_plugin.h"
#include "tests/support/test_sounds.h"

namespace zephyra {
namespace {

using enum ControlId;

PropertyDictionary listOf(const std::string& state) {
    return *must(readPropertyList(std::as_bytes(std::span(state)))).as<PropertyDictionary>();
}

std::string changed(const std::string& state, const char* key,
                    const std::optional<PropertyValue>& value) {
    PropertyDictionary list = listOf(state);
    list.erase(key);
    if (value) list.emplace(key, *value);
    return must(writePropertyList(PropertyValue(list)));
}

TEST(PluginState, ComesBackWithSettingsProgramAndWhatANewerProgramAdded) {
    HostedPlugin saved(PluginKind::instrument), loaded(PluginKind::instrument);
    saved.setProgram(5);
    saved.set(width, 0.75f);
    saved.render();
    const PluginSettings settings = {.notesEnd = NotesEnd::fade,
                                     .startAnew = StartAnew::always,
                                     .followsPrograms = true,
                                     .notesBegin = NotesBegin::tune,
                                     .embedSeconds = 5.0};
    saved.setSettings(settings);
    const std::string state = changed(saved.state(), "FromTheFuture", PropertyValue(7));
    EXPECT_EQ(listOf(state).at("StateVersion"), PropertyValue("1.0"));
    EXPECT_TRUE(loaded.restore(changed(state, "StateVersion", PropertyValue("1.9"))).ok());
    loaded.render();
    EXPECT_EQ(loaded.settings(), settings);
    EXPECT_EQ(loaded.system().instance.defaults.value("EmbedSeconds")->as<double>()[0], 5.0);
    EXPECT_EQ(loaded.currentProgram(), 5u);
    EXPECT_EQ(loaded.value(width), 0.75f);
    EXPECT_TRUE(loaded.state() == state);
    EXPECT_TRUE(loaded.restore(changed(state, "EmbedSeconds", PropertyValue(-1.0))).ok());
    EXPECT_EQ(loaded.settings().embedSeconds, 60.0);
    const PropertyDictionary usual = listOf(HostedPlugin(PluginKind::effect).state());
    EXPECT_FALSE(usual.contains("EmbedSeconds") || usual.contains("NotesBegin"));
    // As a preset it keeps the sound, not what is of a session.
    const PropertyDictionary snapshot = loaded.snapshot();
    EXPECT_TRUE(snapshot.contains("FromTheFuture"));
    for (const char* const key :
         {"StateVersion", "NotesEnd", "NotesBegin", "EmbedSeconds", "Program"})
        EXPECT_FALSE(snapshot.contains(key)) << key;
}

TEST(PluginState, HoldsWhatTheHostHasJustSet) {
    HostedPlugin plugin(PluginKind::effect);
    for (int i = 1; i <= 20; ++i) { // else the clock might be quicker, by chance
        const float set = 0.04f * static_cast<float>(i);
        plugin.setParameter(static_cast<AUParameterAddress>(width), set);
        plugin.setParameter(static_cast<AUParameterAddress>(width), NAN);
        EXPECT_EQ(listOf(plugin.state()).at("Width_0"), PropertyValue(set));
    }
}

TEST(PluginState, NamesTheSoundThatIsBeingReadAndNotWhatLiveHeardBefore) {
    HostedPlugin plugin(PluginKind::effect);
    plugin.render(2);
    EXPECT_TRUE(listOf(plugin.state()).contains("Captured_0"));
    plugin.setProgram(44); // LIVE off, with a sound
    const PropertyDictionary state = listOf(plugin.state());
    EXPECT_TRUE(state.contains("Sample_0") && !state.contains("Captured_0"));
}

TEST(PluginState, OfTheCommandOrAPresetLoadsAndNotesGoOn) {
    HostedPlugin plugin(PluginKind::instrument);
    EXPECT_EQ(plugin.settings(), PluginSettings());
    plugin.setProgram(3);
    plugin.setSettings({.startAnew = StartAnew::never, .followsPrograms = true});
    plugin.set(width, 0.75f);
    plugin.render();
    const std::string preset = must(writePropertyList(PropertyValue(plugin.snapshot())));
    plugin.set(width, 0.25f);
    plugin.render();
    EXPECT_TRUE(plugin.restore(preset).ok());
    EXPECT_EQ(plugin.value(width), 0.75f);
    EXPECT_EQ(plugin.settings(), PluginSettings{.notesEnd = NotesEnd::goOn});
    EXPECT_EQ(plugin.currentProgram(), 0u);
}

TEST(PluginState, IsRefusedInOneLineThatChangesNothing) {
    HostedPlugin plugin(PluginKind::effect);
    const std::string own = plugin.state();
    const std::pair<std::string, const char*> rows[] = {
        {"", "the state cannot be read"},
        {"<plist", "the state cannot be read"},
        {own.substr(0, own.size() / 2), "the state cannot be read"},
        {must(writePropertyList(PropertyValue(PropertyArray{}))), "no dictionary, but a"},
        {changed(own, "StateVersion", PropertyValue("2.0")),
         "is of version 2.0, of a newer program"},
        {changed(own, "StateVersion", PropertyValue("10.0")), "is of version 10.0"},
        {changed(own, "StateVersion", PropertyValue(1)), "StateVersion is no text, but a whole"},
        {changed(own, "StateVersion", PropertyValue("1")), "must be like \"1.0\""},
        {changed(own, "StateVersion", PropertyValue("1.x")), "must be like \"1.0\""},
        {changed(own, "StateVersion", PropertyValue("-1.0")), "must be like \"1.0\""},
        {changed(own, "StateVersion", PropertyValue("a\nb.0")), "must be like \"1.0\""}};
    plugin.set(playStop, 0.0f);
    plugin.set(width, 0.75f);
    plugin.render();
    const std::string before = plugin.state();
    for (const auto& [state, said] : rows) {
        const std::string message = failureOf(plugin.restore(state));
        EXPECT_THAT(message, HasSubstr(said));
        EXPECT_EQ(message.find('\n'), message.npos);
        EXPECT_TRUE(plugin.state() == before) << said;
        EXPECT_FALSE(plugin.plays());
    }
    // What is wrong in it alone is passed over.
    plugin.lines.clear();
    EXPECT_TRUE(plugin
                    .restore(changed(changed(own, "NotesEnd", PropertyValue("sing")), "Program",
                                     PropertyValue(-3)))
                    .ok());
    EXPECT_THAT(plugin.lines, Contains(HasSubstr("NotesEnd: \"sing\" is not known")));
    EXPECT_TRUE(plugin.restore(changed(own, "Program", PropertyValue(48))).ok());
    EXPECT_EQ(plugin.currentProgram(), 0u);
}

TEST(PluginState, KeepsASampleWhoseFileIsGoneAlsoBeforeItIsLoaded) {
    const TemporaryFolder folder;
    const auto noise = noiseSample(24000, 48000);
    const float* const channels[] = {noise->getPtr()};
    FloatFileWriter file;
    ASSERT_TRUE(file.open(folder / "gone.wav", 48000.0, 1) && file.write(channels, 24000) &&
                file.close());
    HostedPlugin plugin(PluginKind::instrument);
    plugin.loadSample(folder / "gone.wav");
    plugin.render();
    const std::string saved = plugin.state();
    fs::remove(folder / "gone.wav");
    HostedPlugin loaded(PluginKind::instrument);
    {
        const auto busy = loaded.main(); // whoever holds MAIN keeps the sound from coming
        EXPECT_TRUE(loaded.restore(saved).ok());
        EXPECT_TRUE(listOf(loaded.state()).at("Sample_0") == listOf(saved).at("Sample_0"));
    }
    loaded.midi({0x90, 60, 100});
    EXPECT_GT(loaded.render(20), 0.01f);
    EXPECT_TRUE(loaded.state() == saved);
}

TEST(PluginState, IsReadAndSetByManyThreadsWhileOneRendersAndPrepares) {
    HostedPlugin plugin(PluginKind::instrument);
    plugin.setProgram(1);
    plugin.setSettings({.startAnew = StartAnew::never});
    const std::string one = plugin.state();
    plugin.setProgram(2);
    plugin.setSettings({.startAnew = StartAnew::always});
    const std::string two = plugin.state();
    std::atomic<int> working = 10;
    std::vector<std::thread> threads;
    for (int n = 0; n < 10; ++n)
        threads.emplace_back([&, n] {
            for (int i = 0; i < 5; ++i) {
                EXPECT_TRUE(plugin.restore((n + i) % 2 ? one : two).ok());
                const PropertyDictionary read = listOf(plugin.state());
                const bool isOne = read.at("Program") == PropertyValue(1);
                EXPECT_EQ(read.at("StartAnew"), PropertyValue(isOne ? "never" : "always"));
                EXPECT_EQ(read.at("Density_0"), listOf(isOne ? one : two).at("Density_0"));
                plugin.setParameter(static_cast<AUParameterAddress>(width), 0.5f);
                plugin.setBypass(i % 2 == 0);
            }
            --working;
        });
    for (int round = 0; working > 0; ++round) {
        plugin.renderLive();
        plugin.render(round % 8 == 1); // offline
        if (round % 8 != 0) continue;
        EXPECT_TRUE(plugin.prepare({round % 16 ? 48000.0 : 22050.0, HostedPlugin::kFrames}));
    }
    for (std::thread& thread : threads) thread.join();
}

TEST(PluginPrograms, AreTheFactorysAndLeavePlayingAsItIs) {
    HostedPlugin plugin(PluginKind::instrument), other(PluginKind::effect);
    EXPECT_EQ(plugin.programs().size(), 48u);
    EXPECT_EQ(&plugin.programs(), &other.programs()); // read once
    std::set<std::string> names;
    for (const AUAudioUnitPreset& program : plugin.programs())
        EXPECT_TRUE(names.insert(program.name).second && program.name.ends_with(')'));
    EXPECT_EQ(plugin.currentProgram(), 0u);
    EXPECT_FALSE(plugin.chosenProgram());
    EXPECT_TRUE(plugin.restore(plugin.state()).ok());
    EXPECT_FALSE(plugin.chosenProgram()); // 0 is the first one's
    plugin.setProgram(7);
    plugin.render();
    EXPECT_FALSE(plugin.plays());
    const float seventh = plugin.value(density);
    plugin.setProgram(48);
    EXPECT_EQ(plugin.currentProgram(), 7u);
    plugin.midi({0x90, 60, 100});
    plugin.render();
    plugin.setProgram(9);
    EXPECT_NE(plugin.value(density), seventh) << "at once";
    plugin.render();
    EXPECT_TRUE(plugin.plays());
    EXPECT_EQ(plugin.currentProgram(), 9u);
    plugin.midi({0x80, 60, 100});
    plugin.render();
    EXPECT_FALSE(plugin.plays());
}

} // namespace
} // namespace zephyra

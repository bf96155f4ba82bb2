// Samples that cannot get lost: states find them again, carry them along, or say what is missing.

#include "stream/kept_sound.h"
#include "stream/sound_keeping.h"
#include "tests/support/stream_player.h"

namespace zephyra {
namespace {

/// 400 frames of 16 bits with both extremes, other ones for each seed.
std::string rawSound(int seed) {
    std::string bytes("\x00\x80\xFF\x7F", 4);
    for (int n = 0; n < 398; ++n)
        for (const int value : {n * seed, n % 100}) bytes += static_cast<char>(value);
    return bytes;
}

struct KeptSamples : testing::Test {
    KeptSamples() {
        for (const char* name : {"shared/drums", "resources/birds", "away"})
            fs::create_directories(folder / name);
        for (Player* each : {&first, &second})
            each->instance.folders.resources = folder / "resources";
        writeText(kept, rawSound(1));
    }
    void load(const fs::path& path) { load(path, first); }
    static void load(const fs::path& path, Player& player) {
        player.loader.loadSamplePerform(path);
        player.finishWork();
    }
    static Frames heard(Player& player) {
        const mokSample& sound = player.sound();
        return {sound.getPtr(), sound.getPtr() + sound.size};
    }
    static PropertyDictionary& sampleOf(PropertyDictionary& state) {
        return *state.at("Sample_0").as<PropertyDictionary>();
    }
    bool embeds(StateUse use = StateUse::session) {
        PropertyDictionary state = first.state(use);
        return sampleOf(state).contains("Audio");
    }
    /// Which of the sounds 1 to 3 plays after restoring state; 0 for none of them.
    int restored(const PropertyDictionary& state) {
        Player player(folder);
        player.instance.folders.resources = folder / "resources";
        player.restore(state);
        report = player.report;
        int seed = 3;
        do writeText(folder / "away/expected.raw", rawSound(seed));
        while (heard(player) != readSoundFile(folder / "away/expected.raw").value().samples &&
               --seed > 0);
        return seed;
    }

    TemporaryFolder folder;
    Player first{folder}, second{folder};
    SampleReport report; // of the sound restored last
    const fs::path kept = folder / "shared/drums/kept.RAW";
};

TEST_F(KeptSamples, AreFoundByPathRelativePathNameAndContentThenInTheState) {
    load(kept);
    const PropertyDictionary whole = first.state();
    // Where the sound has gone, what took its name there; with and without the copy, by which road
    // a sound is found, and which one plays.
    using enum SampleRoad;
    struct Found {
        SampleRoad road;
        int plays;
    };
    const std::tuple<const char*, const char*, Found, Found> cases[] = {
        {"shared/drums/kept.RAW", "", {path, 1}, {path, 1}},
        {"shared/other.RAW", "", {content, 1}, {content, 1}},
        {"shared/other.RAW", "drums/kept.RAW", {content, 1}, {content, 1}},
        {"resources/kept.RAW", "kept.RAW", {builtIn, 1}, {builtIn, 1}},
        {"away/kept.RAW", "", {embedded, 1}, {none, 0}},
        // A name does not make it the sound.
        {"away/kept.RAW", "kept.RAW", {embedded, 1}, {name, 2}}};
    for (const auto& [to, decoy, copied, bare] : cases) {
        fs::rename(kept, folder / to);
        if (*decoy) writeText(folder / "shared" / decoy, rawSound(2));
        PropertyDictionary state = whole;
        for (const auto& [road, plays] : {copied, bare}) {
            EXPECT_EQ(restored(state), plays) << to << decoy;
            EXPECT_EQ(report.road, road) << to << decoy;
            EXPECT_EQ(std::tuple(report.asked, report.isOtherSound), std::tuple(kept, plays == 2));
            EXPECT_EQ(report.end, plays == 0 ? SampleEnd::missing : SampleEnd::taken);
            EXPECT_EQ(report.problem.empty(), plays != 0);
            sampleOf(state).erase("Audio");
        }
        if (*decoy) fs::remove(folder / "shared" / decoy);
        fs::rename(folder / to, kept);
    }
    // Where no content is known; never below the folder that the program runs in.
    const fs::path here = fs::current_path();
    fs::current_path(folder / "away");
    writeText("loose.raw", rawSound(3));
    writeText(folder / "shared/top.raw", rawSound(2));
    for (const auto& [asked, relative, plays, road] :
         {std::tuple("/elsewhere/kept.RAW", "drums/kept.RAW", 1, relativePath),
          {"/elsewhere/top.raw", "", 2, name},
          {"loose.raw", "", 0, none},
          {"../away/loose.raw", "../away/loose.raw", 0, none}}) {
        const PropertyDictionary sample{{"Path", asked}, {"RelativePath", relative}};
        EXPECT_EQ(restored({{"Sample_0", sample}}), plays) << asked;
        EXPECT_EQ(report.road, road) << asked;
    }
    fs::current_path(here);
}

TEST_F(KeptSamples, ComeBackFromTheStateTheSameAndGoAlongAgain) {
    load(kept);
    PropertyDictionary state = first.state();
    sampleOf(state)["Newer"] = "kept";
    fs::remove(kept);
    second.instance.defaults.setValue("EmbedSeconds", 0.0); // it is the only copy
    second.restore(state);
    EXPECT_EQ(second.takeAlert(), "");
    EXPECT_TRUE(heard(second) == heard(first) && second.state() == state);
    // A copy that is damaged, cut or another sound's is as good as none, but stays.
    const PropertyDictionary audio = *sampleOf(state).at("Audio").as<PropertyDictionary>();
    const auto whole = audio.at("FLAC").as<PropertyData>()->bytes();
    PropertyData::Bytes cut(whole.begin(), whole.end()), flipped = cut;
    cut.resize(cut.size() / 2);
    flipped[flipped.size() / 2] ^= std::byte{0x10};
    const std::tuple<const char*, PropertyValue, const char*> damages[] = {
        {"FLAC", PropertyData(cut), ".Audio.FLAC: "},
        {"FLAC", PropertyData(flipped), ".Audio.FLAC: "},
        {"FLAC", "text", ".Audio.FLAC: missing; the sound as FLAC data is needed"},
        {"Frames", 399, ".Audio.FLAC: holds 400 frames, not as many as \"Frames\" says"},
        {"Scale", 1e300, ".Audio: cannot be played"},
        {"SampleRate", -1.0, ".Audio: cannot be played"}};
    for (const auto& [key, value, finding] : damages) {
        PropertyDictionary damaged = state;
        (*sampleOf(damaged).at("Audio").as<PropertyDictionary>())[key] = value;
        Player other(folder);
        other.restore(damaged);
        EXPECT_THAT(other.takeAlert(), HasSubstr(kept.string() + " that goes along is damaged"))
            << key;
        ASSERT_FALSE(other.report.findings.empty()) << key;
        EXPECT_THAT(lineOf(other.report.findings.back()), StartsWith(kept.string() + finding));
        EXPECT_EQ(other.report.findings.back().standIn, StandIn::nothing);
        EXPECT_TRUE(other.state().at("Sample_0") == damaged.at("Sample_0")) << key;
    }
}

TEST_F(KeptSamples, GoAlongAsTheSettingSaysUnlessTheyCameWithTheProgram) {
    for (const double seconds : {0.01, 0.7, 1.0}) { // of which 0.7 · 44100 is too little
        mokSample sound(static_cast<std::uint64_t>(std::lround(seconds * 44100)), 44100);
        EXPECT_TRUE(isEmbeddable(sound, seconds)) << seconds;
        EXPECT_TRUE(sound.allocate(sound.size + 1, 44100) && !isEmbeddable(sound, seconds));
    }
    for (const auto& [setting, goesAlong] : {std::pair(PropertyValue(60), true),
                                             {0, false},
                                             {-1, false},
                                             {"many", true},
                                             {0.009, false}}) {
        first.instance.defaults.setValue("EmbedSeconds", setting);
        load(kept);
        EXPECT_EQ(embeds(), goesAlong);
        EXPECT_FALSE(embeds(StateUse::snapshot));
    }
    first.instance.defaults.removeValue("EmbedSeconds"); // counts for what was loaded before, too
    EXPECT_TRUE(embeds());
    const auto encoded = first->sampleReference().embedded;
    EXPECT_TRUE(encoded && embeds());
    EXPECT_EQ(first->sampleReference().embedded, encoded) << "encoded twice";
    first.instance.defaults.setValue("EmbedSeconds", 0);
    load(kept);
    first.instance.defaults.removeValue("EmbedSeconds");
    StateSounds sounds(first.controller); // another sound comes while they are encoded
    sounds.encode();
    writeText(folder / "away/new.raw", rawSound(2));
    load(folder / "away/new.raw");
    PropertyDictionary late;
    sounds.addTo(late, first.controller);
    EXPECT_EQ(first->sampleReference().path, folder / "away/new.raw");
    fs::copy_file(kept, folder / "resources/built in.RAW");
    load(kept);
    EXPECT_FALSE(embeds());
    // The folders of a machine stay out of what moves to another one.
    fs::create_directory_symlink(folder / "shared", folder / "link");
    for (const auto& [file, path, relative] :
         {std::tuple(kept, std::string("kept.RAW"), "drums/kept.RAW"),
          {folder / "link/new.raw", "new.raw", "new.raw"},
          {folder / "resources/birds/owl.raw", "owl.raw", "birds/owl.raw"},
          {folder / "away/far.raw", (folder / "away/far.raw").string(), ""}}) {
        writeText(file, rawSound(3));
        load(file);
        PropertyDictionary snapshot = first.state(StateUse::snapshot);
        EXPECT_EQ(sampleOf(snapshot).at("Path"), PropertyValue(path));
        EXPECT_EQ(sampleOf(snapshot).at("RelativePath"), PropertyValue(relative));
        EXPECT_EQ(restored(snapshot), 3);
    }
}

TEST_F(KeptSamples, AreAskedForWhenMissingUnlessAnotherSoundCameSince) {
    load(kept);
    PropertyDictionary state = first.state();
    sampleOf(state).erase("Audio");
    fs::rename(kept, folder / "away/found.raw");
    second.restore(state);
    EXPECT_THAT(second.instance.alerts.current()->message, HasSubstr(kept.string()));
    const auto locate = [&](const fs::path& file) {
        second.instance.alerts.answer("Locate");
        const bool asked = second.instance.documents.pick({file});
        second.finishWork();
        return asked;
    };
    sampleOf(state)["ContentHash"] = "another";
    sampleOf(state)["Newer"] = "kept";
    second.restore(state); // says the same once more, and is what the first alert means now
    writeText(folder / "away/broken.wav", "no sound");
    EXPECT_TRUE(locate(folder / "away/broken.wav"));
    EXPECT_TRUE(second.state().at("Sample_0") == state.at("Sample_0"));
    EXPECT_TRUE(locate(folder / "away/found.raw"));
    PropertyDictionary located = second.state();
    EXPECT_TRUE(heard(second) == heard(first) && sampleOf(located).contains("Newer"));

    // It stays missing while none takes its place: one is not wanted any more, or is no sound.
    second.restore(state);
    for (const bool waits : {true, false}) {
        EXPECT_EQ(second.loader.missing(), kept);
        second.loader.loadSamplePerform(folder / "away/broken.wav");
        EXPECT_EQ(second.loader.missing(), "");
        if (!waits) second.loader.cancel();
        second.finishWork();
    }
    EXPECT_EQ(second.loader.missing(), kept);
    second.instance.alerts.answer("Ok"); // to what the broken one came to

    // While the alert, or the picker, waits, another sound is asked for, or came by another way.
    SampleReference another = second->sampleReference();
    another.path = folder / "away/new.raw";
    writeText(another.path, rawSound(2));
    for (const auto& [picking, loading] :
         {std::pair(false, false), {false, true}, {true, false}, {true, true}}) {
        second.restore(state);
        if (picking) second.instance.alerts.answer("Locate");
        if (loading)
            second.loader.loadSamplePerform(another.path);
        else
            second->loadSound(std::make_shared<mokSample>(100u, 8000.0f), another);
        EXPECT_EQ(locate(folder / "away/found.raw"), picking);
        EXPECT_EQ(second->sampleReference().path, another.path);
        second.instance.alerts.answer("Ok");
    }
}

TEST_F(KeptSamples, GetAFileOfTheirOwnBeforeASnapshotNamesThem) {
    load(kept);
    fs::remove(kept);
    writeText(folder / "shared/kept.wav", "another");
    second.restore(first.state());
    const mokSample* const plays = &second.sound();
    second->setDisplayed(ControlId::normalize, 0.5f);
    for (int again = 0; again < 2; ++again) ASSERT_TRUE(keepSoundAsFile(second.controller));
    EXPECT_EQ(second->sampleReference().relativePath, "kept 1.wav");
    EXPECT_EQ(readText(folder / "shared/kept.wav"), "another");
    second->setNormalizeTouched(false);
    EXPECT_EQ(restored(second.state(StateUse::snapshot)), 1);
    EXPECT_EQ(&second.sound(), plays);
    second->setNormalizeTouched(true);

    // What LIVE heard: positions in it stay where they were.
    second->ui_enableLiveInput();
    second->waveForm().initLiveBuffer_andSamplingRate(100, 8000.0);
    second.hear(Frames(71, 0.25f));
    second.hear({3.0f});
    ASSERT_TRUE(keepSoundAsFile(second.controller)); // LIVE: none is kept
    EXPECT_TRUE(second->waveForm().isLiveCurrent());
    second->ui_enableLiveInput();
    ASSERT_TRUE(keepSoundAsFile(second.controller));
    Frames expected(28, 0.0f);
    expected.resize(99, 0.25f);
    expected.push_back(3.0f);
    EXPECT_EQ(heard(second), expected);
    EXPECT_EQ(readSoundFile(folder / "shared/Rec 1.wav").value().samples, expected);
    EXPECT_EQ(second->sampleReference().relativePath, "Rec 1.wav");

    // Another sound comes while the file is written: nobody needs the file.
    const auto capture = [this] {
        for (int press = 0; press < 2; ++press) {
            second->ui_enableLiveInput();
            second.hear(Frames(10, 0.5f));
        }
    };
    writeText(folder / "away/new.raw", rawSound(2));
    for (const auto& [captured, again] : {std::pair(false, false), {true, false}, {true, true}}) {
        second.restore(first.state());
        if (captured) capture();
        SoundKeeping keeping(second.controller);
        ASSERT_TRUE(keeping.isNeeded());
        keeping.write();
        load(folder / "away/new.raw", second);
        if (again) capture();
        const SampleReference reference = second->sampleReference();
        EXPECT_TRUE(keeping.finish(second.controller));
        EXPECT_EQ(second->sampleReference(), reference);
        EXPECT_EQ(second->waveForm().isLiveCurrent(), again);
    }
    EXPECT_FALSE(fs::exists(folder / "shared/kept 2.wav") ||
                 fs::exists(folder / "shared/Rec 2.wav"));
}

TEST_F(KeptSamples, AreCapturedOnceWithWhatAStateSaidOfThem) {
    first->ui_enableLiveInput();
    first.hear(Frames(50, 0.5f));
    first->ui_enableLiveInput();
    PropertyDictionary state = first.state();
    (*state.at("Captured_0").as<PropertyDictionary>())["Newer"] = "kept";
    second.restore(state);
    EXPECT_TRUE(second.state() == state);
    second->ui_enableLiveInput();
    second->waveForm().initLiveBuffer_andSamplingRate(100, 8000.0);
    second.hear(Frames(100, 0.5f));
    state = second.state();
    EXPECT_EQ(state.at("Captured_0").as<PropertyDictionary>()->at("Frames"), PropertyValue(100));
    second.hear(Frames(100, 0.25f)); // over all of it: nothing else tells
    second->ui_enableLiveInput();
    EXPECT_FALSE(second.state().at("Captured_0") == state.at("Captured_0"));
    EXPECT_FALSE(second.state(StateUse::snapshot).contains("Captured_0"));
}

TEST(KeptSound, IsExactFor24BitsOfItsLoudestFrame) {
    for (const float level : {1.0f, 0x1p-20f, 0x1p20f}) {
        const Frames frames{-level, level * (1.0f - 0x1p-23f), level * 0x1p-23f, 0.0f};
        const auto state = keptSound(frames, 44100.5);
        PropertyReader reader(state.value());
        const auto read = readKeptSound(reader, 4);
        EXPECT_EQ(read.value().frames, frames);
        EXPECT_EQ(read.value().sampleRate, 44100.5);
        EXPECT_FALSE(readKeptSound(reader, 3));
    }
}

} // namespace
} // namespace zephyra

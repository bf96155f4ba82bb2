// A bank and a sound are read once, however many parts of the program want them.

#include "cli/command_line.h"
#include "hosting/hosted_instance.h"
#include "tests/cli/program.h"
#include "tests/support/counted_reads.h"

namespace zephyra {
namespace {

TEST(OneRead, ARenderFromAPresetOpensItsBankAndItsSoundOnceAlsoUnderANewName) {
    const TemporaryFolder folder;
    const auto render = [&](std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), {"zephyra", "render"});
        arguments.insert(arguments.end(),
                         {"--shared-folder", folder.path().string(), "-o",
                          (folder / "out.wav").string(), "--seconds", "0.1", "--quiet"});
        std::vector<const char*> texts;
        for (const std::string& argument : arguments) texts.push_back(argument.c_str());
        EXPECT_EQ(runCommandLine(static_cast<int>(texts.size()), texts.data()), ExitCode::success);
    };
    const fs::path sound = folder / "in.wav", bank = folder / "B.zephyra";
    writeWav(sound, tone(22050));
    writeWav(folder / "another.wav", tone(100));
    render({sound.string(), "--save-bank", "B", "--save-preset", "P"});
    const auto expectOnce = [&](std::initializer_list<fs::path> files) {
        for (const fs::path& file : files) ageFile(file);
        const CountedReads reads;
        render({"--bank", "B", "--preset", "P"});
        for (const fs::path& file : files)
            EXPECT_TRUE(reads.opens(file) == 1 && reads.reads(file) == 1) << file;
    };
    expectOnce({bank, sound});
    fs::rename(sound, folder / "renamed.wav");
    expectOnce({folder / "another.wav", folder / "renamed.wav"});
}

/// Loads a preset of the first bank as a user does, and waits for its sound.
std::shared_ptr<const mokSample> soundOf(HostedInstance& hosted, std::int64_t preset,
                                         bool waits = true) {
    RunLoop& loop = hosted.instance.runLoop;
    {
        const RunLoop::Scope main(loop);
        hosted.view.presets.selectSnapFromIndex(preset);
    }
    waits ? loop.finishWork() : loop.runPosted();
    return hosted.stream().waveForm().fileSound();
}

TEST(OneRead, SteppingThroughPresetsReadsTheirSoundOnceForAllInstancesUntilItChanges) {
    const TemporaryFolder folder;
    const fs::path bank = folder / "Glass Weather.zephyra", sound = folder / "Zephyra_Sample08.mp3";
    for (const fs::path& file : {bank, sound}) {
        fs::copy_file(fs::path(ZEPHYRA_SOURCE_DIR "/resources") / file.filename(), file);
        ageFile(file);
    }
    HostedInstance hosted(component_type::instrument, [&](Instance& fresh) {
        fresh.folders = {{}, folder.path()};
    });
    HostedInstance other(component_type::instrument, [&](Instance& fresh) {
        fresh.folders = hosted.instance.folders;
        fresh.fileFacts = hosted.instance.fileFacts;
    });
    other.instance.defaults.setValue("EmbedSeconds", 0.0);
    for (HostedInstance* each : {&hosted, &other}) each->view.presets.selectBankFromIndex(0);

    const CountedReads reads;
    const auto first = soundOf(hosted, 0);
    const auto& reference = hosted.stream().sampleReference();
    EXPECT_EQ(reference.path, sound.string());
    for (std::int64_t preset = 1; preset < 12; ++preset) {
        const bool waits = preset % 3 != 0; // else the next comes before this one's sound is there
        const auto heard = soundOf(hosted, preset, waits);
        if (!waits) continue;
        EXPECT_EQ(heard, first) << preset;
        EXPECT_EQ(reference.frames, 529200u) << preset;
    }
    EXPECT_EQ(std::tuple(reads.opens(sound), reads.reads(sound)), std::tuple(1, 1));
    EXPECT_EQ(reads.opens(bank), 0) << "it was read when it was chosen";
    soundOf(other, 0);
    EXPECT_EQ(reads.opens(sound), 2) << "to be decoded; it was hashed before";
    EXPECT_EQ(other.stream().sampleReference().contentHash, reference.contentHash);

    std::fstream(sound, std::ios::in | std::ios::out | std::ios::binary).seekp(200000) << "other";
    fs::last_write_time(sound, fs::file_time_type::clock::now() + std::chrono::hours(1));
    const auto changed = soundOf(hosted, 1);
    EXPECT_NE(changed, first); // plays all the same
    const int opened = reads.opens(sound);
    EXPECT_EQ(soundOf(hosted, 2), changed) << "the content is the same";
    EXPECT_GT(reads.opens(sound), opened) << "which nobody can know unread";
}

} // namespace
} // namespace zephyra

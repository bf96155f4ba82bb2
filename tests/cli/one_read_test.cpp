// A bank and a sound are read once, however many parts of the program want them.

#include "cli/command_line.h"
#include "hosting/hosted_instance.h"
#include "tests/cli/program.h"
#include "tests/support/counted_reads.h"

#include <gtest/gtest.h>

namespace zephyra {
namespace {

namespace fs = std::filesystem;

class OneRead : public testing::Test {
protected:
    void render(std::vector<std::string> arguments) const {
        const std::string shared = folder.path().string(), output = (folder / "out.wav").string();
        arguments.insert(arguments.begin(), {"zephyra", "render"});
        arguments.insert(arguments.end(), {"--shared-folder", shared, "-o", output, "--seconds",
                                           "0.1", "--seed", "3", "--quiet"});
        std::vector<const char*> texts;
        for (const std::string& argument : arguments) texts.push_back(argument.c_str());
        ASSERT_EQ(runCommandLine(static_cast<int>(texts.size()), texts.data()), ExitCode::success);
    }
    /// A preset P of a bank B that plays in.wav.
    void savePreset() const {
        writeWav(sound, tone(22050));
        render({sound.string(), "--save-bank", "B", "--save-preset", "P"});
        for (const fs::path& file : {bank, sound}) ageFile(file);
    }
    void renderPreset() const { render({"--bank", "B", "--preset", "P"}); }

    TemporaryFolder folder;
    const fs::path sound = folder / "in.wav", bank = folder / "B.zephyra";
};

TEST_F(OneRead, ARenderFromAPresetOpensItsBankAndItsSoundOnce) {
    savePreset();
    const CountedReads reads;
    renderPreset();
    for (const fs::path& file : {bank, sound}) {
        EXPECT_EQ(reads.opens(file), 1) << file;
        EXPECT_EQ(reads.reads(file), 1) << file;
    }
}

TEST_F(OneRead, ASoundThatWasRenamedIsOpenedOnceWhenItsContentIsFound) {
    savePreset();
    fs::rename(sound, folder / "renamed.wav");
    writeWav(folder / "another.wav", tone(100));
    ageFile(folder / "another.wav");
    const CountedReads reads;
    renderPreset();
    for (const char* name : {"another.wav", "renamed.wav"})
        EXPECT_EQ(reads.opens(folder / name), 1) << name;
}

/// The presets of a factory bank, stepped through as a user does.
class Stepping : public testing::Test {
protected:
    Stepping() {
        for (const fs::path& file : {bank, sound}) {
            fs::copy_file(fs::path(ZEPHYRA_SOURCE_DIR "/resources") / file.filename(), file);
            ageFile(file);
        }
        view.presets.selectBankFromIndex(0);
    }
    void load(std::int64_t preset) {
        {
            const RunLoop::Scope main(hosted.instance.runLoop);
            view.presets.selectSnapFromIndex(preset);
        }
        hosted.instance.runLoop.runPosted();
    }
    std::shared_ptr<const mokSample> heard() {
        hosted.instance.runLoop.waitForWork();
        hosted.instance.runLoop.runPosted();
        return hosted.stream().waveForm().fileSound();
    }

    TemporaryFolder folder;
    const fs::path bank = folder / "Glass Weather.zephyra", sound = folder / "Zephyra_Sample08.mp3";
    HostedInstance hosted{component_type::instrument, [this](Instance& fresh) {
                              fresh.folders = {{}, folder.path()};
                          }};
    AudioUnitViewController& view = hosted.view;
};

TEST_F(Stepping, ReadsASoundThatAllPresetsPlayOnce) {
    const CountedReads reads;
    load(0);
    const auto first = heard();
    EXPECT_EQ(hosted.stream().sampleReference().path, sound.string());
    for (std::int64_t preset = 1; preset < 12; ++preset) {
        load(preset);
        if (preset % 3 == 0) continue; // the next comes before this one's sound is there
        EXPECT_EQ(heard(), first) << preset;
        EXPECT_EQ(hosted.stream().sampleReference().frames, 529200u) << preset;
    }
    EXPECT_EQ(reads.opens(sound), 1);
    EXPECT_EQ(reads.reads(sound), 1);
    EXPECT_EQ(reads.opens(bank), 0) << "it was read when it was chosen";
}

TEST_F(Stepping, ReadsASoundAgainThatHasChangedOrHasJustBeenWritten) {
    load(0);
    const auto first = heard();
    const CountedReads reads;
    std::fstream(sound, std::ios::in | std::ios::out | std::ios::binary).seekp(200000) << "other";
    fs::last_write_time(sound, fs::file_time_type::clock::now() + std::chrono::hours(1));
    load(1);
    const auto changed = heard();
    EXPECT_NE(changed, first); // plays all the same
    const int opened = reads.opens(sound);
    load(2);
    EXPECT_EQ(heard(), changed) << "the content is the same";
    EXPECT_GT(reads.opens(sound), opened) << "which nobody can know unread";
}

TEST_F(Stepping, SharesWhatItKnowsWithOtherInstances) {
    load(0);
    heard();
    const CountedReads reads;
    HostedInstance other(component_type::instrument, [this](Instance& fresh) {
        fresh.folders = {{}, folder.path()};
        fresh.fileFacts = hosted.instance.fileFacts;
    });
    other.instance.defaults.setValue("EmbedSeconds", 0.0);
    other.view.presets.selectBankFromIndex(0);
    other.view.presets.selectSnapFromIndex(0);
    other.instance.runLoop.runPosted();
    other.instance.runLoop.waitForWork();
    other.instance.runLoop.runPosted();
    EXPECT_EQ(reads.opens(sound), 1); // to be decoded; it was hashed before
    EXPECT_EQ(other.stream().sampleReference().contentHash,
              hosted.stream().sampleReference().contentHash);
}

} // namespace
} // namespace zephyra

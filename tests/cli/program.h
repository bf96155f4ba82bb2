// ProgramTest: the real program, run as a user runs it in a folder of their own.
#pragma once

#include "platform/text/log.h"
#include "stream/audio_file_writer.h"
#include "tests/support/testing.h"

#include <nlohmann/json.hpp>
#include <sys/wait.h>

namespace zephyra {

using nlohmann::json;

struct ProgramRun {
    int code; ///< exit code, -1 when a signal ended the program
    std::string out, err;
};

/// A mono WAV file of 16-bit samples.
inline void writeWav(const fs::path& file, const std::vector<std::int16_t>& samples,
                     std::uint32_t rate = 44100) {
    Log log;
    EAFWrite writer(log);
    writer.openFileForWrite_sr_channels_wordLength_type(file, rate, 1, 16, audio_file_type::wave);
    writer.writeShortsMok_fromArray(static_cast<std::uint32_t>(samples.size()), samples.data());
    EXPECT_EQ(writer.closeFile(), 0);
}

/// A tone of 441 Hz, half of full scale.
inline std::vector<std::int16_t> tone(std::size_t frames) {
    std::vector<std::int16_t> samples(frames);
    for (std::size_t n = 0; n < frames; ++n)
        samples[n] =
            static_cast<std::int16_t>(16384 * std::sin(static_cast<double>(n) * 0.0628319));
    return samples;
}

struct ProgramTest : testing::Test {
    explicit ProgramTest(std::size_t frames = 22050) { writeWav(folder / "in.wav", tone(frames)); }

    /// Runs `zephyra` in folder with arguments as a shell reads them. before is shell text in
    /// front, for limits and the environment; the banks in use are in the folder "shared".
    ProgramRun run(const std::string& arguments, const std::string& before = "") const {
        const TemporaryFolder streams;
        const std::string command =
            "cd '" + folder.path().string() + "'; " + before + " env ZEPHYRA_SHARED_FOLDER='" +
            (folder / "shared").string() + "' " + environment + " '" +
            ZEPHYRA_BINARY_DIR "/cli/zephyra' >'" + (streams / "out").string() + "' 2>'" +
            (streams / "err").string() + "' " + arguments;
        const int status = std::system(command.c_str());
        return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, readText(streams / "out"),
                readText(streams / "err")};
    }
    /// Its bytes, of a render that must end well. seen is its report.
    std::string rendered(const std::string& arguments) {
        const ProgramRun ended = run("render -o out.wav --json " + arguments);
        EXPECT_EQ(ended.code, 0) << arguments << "\n" << ended.err;
        seen = json::parse(ended.out, nullptr, false);
        return readText(folder / "out.wav");
    }
    /// One line says so, and nothing is written. shell: in front, as for run.
    void expectRefused(const std::string& arguments, int code, const std::string& said,
                       const std::string& shell = "") const {
        SCOPED_TRACE(shell + arguments);
        const auto before = folder.entries();
        const ProgramRun ended = run(arguments, shell);
        EXPECT_EQ(ended.code, code);
        EXPECT_THAT(ended.err, HasSubstr(said));
        EXPECT_EQ(std::count(ended.err.begin(), ended.err.end(), '\n'), 1) << ended.err;
        EXPECT_EQ(ended.out, "");
        EXPECT_EQ(folder.entries(), before) << "a file was left behind";
    }

    TemporaryFolder folder;
    std::string environment; ///< further variables, as env takes them
    json seen;
};

} // namespace zephyra

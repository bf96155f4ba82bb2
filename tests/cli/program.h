// runZephyra: the real program, run as a user runs it.
#pragma once

#include "tests/support/temporary_folder.h"

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <sys/wait.h>
#include <vector>

namespace zephyra {

struct ProgramRun {
    int code; ///< exit code, -1 when a signal ended the program
    std::string out, err;
};

/// Runs `zephyra` with arguments (as a shell reads them) in folder. before is shell text in front,
/// for limits and the environment.
inline ProgramRun runZephyra(const TemporaryFolder& folder, const std::string& arguments,
                             const std::string& before = "") {
    const TemporaryFolder streams;
    const std::string command = "cd '" + folder.path().string() + "'; " + before + " '" +
                                ZEPHYRA_BINARY_DIR "/cli/zephyra' >'" + (streams / "out").string() +
                                "' 2>'" + (streams / "err").string() + "' " + arguments;
    const int status = std::system(command.c_str());
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, readText(streams / "out"),
            readText(streams / "err")};
}

/// A mono WAV file of 16-bit samples.
inline void writeWav(const std::filesystem::path& file, const std::vector<std::int16_t>& samples,
                     std::uint32_t rate = 44100) {
    const auto little = [](std::uint32_t value, int bytes) {
        std::string text;
        for (int i = 0; i < bytes; ++i) text += static_cast<char>(value >> 8 * i & 0xFF);
        return text;
    };
    std::string data;
    for (const std::int16_t sample : samples) data += little(static_cast<std::uint16_t>(sample), 2);
    const auto bytes = static_cast<std::uint32_t>(data.size());
    writeText(file, "RIFF" + little(36 + bytes, 4) + "WAVEfmt " + little(16, 4) + little(1, 2) +
                        little(1, 2) + little(rate, 4) + little(rate * 2, 4) + little(2, 2) +
                        little(16, 2) + "data" + little(bytes, 4) + data);
}

/// A tone of 441 Hz, half of full scale.
inline std::vector<std::int16_t> tone(std::size_t frames) {
    std::vector<std::int16_t> samples(frames);
    for (std::size_t n = 0; n < frames; ++n)
        samples[n] =
            static_cast<std::int16_t>(16384 * std::sin(static_cast<double>(n) * 0.0628319));
    return samples;
}

} // namespace zephyra

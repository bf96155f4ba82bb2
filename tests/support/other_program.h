// outputOf: what another program says about a file, or makes of it.
#pragma once

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

namespace zephyra {

/// Everything the shell command writes to its standard output.
inline std::string outputOf(const std::string& command) {
    std::string output;
    FILE* pipe = ::popen(command.c_str(), "r");
    if (!pipe) return output;
    char block[65536];
    while (const std::size_t bytes = std::fread(block, 1, sizeof block, pipe))
        output.append(block, bytes);
    ::pclose(pipe);
    return output;
}

/// The file's name as one word of a shell command.
inline std::string quoted(const std::filesystem::path& file) {
    std::string word;
    return word.append(1, '\'').append(file.string()).append(1, '\'');
}

/// The file's samples as other programs read them: interleaved, 32 bits, full scale 2^31. Few know
/// SD2, which is converted first; leaves a file in its folder.
inline std::vector<std::int32_t> decodedByOtherProgram(const std::filesystem::path& file) {
    std::filesystem::path readable = file;
    if (file.extension() == ".sd2") {
        readable += ".caf";
        outputOf("sndfile-convert -pcm32 " + quoted(file) + " " + quoted(readable));
    }
    const std::string bytes = outputOf("ffmpeg -v error -i " + quoted(readable) + " -f s32le -");
    std::vector<std::int32_t> samples(bytes.size() / sizeof(std::int32_t));
    std::memcpy(samples.data(), bytes.data(), samples.size() * sizeof(std::int32_t));
    return samples;
}

} // namespace zephyra

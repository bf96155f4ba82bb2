#include "resources/make_samples/mp3_file.h"

#include <sndfile.h>

namespace zephyra {

namespace {

/// 0 is the highest rate the format offers (320 kbit/s), 1 the lowest (32 kbit/s): about 160
/// kbit/s, at which a mono sound is transparent and 12 s stay below 250 kB.
constexpr double kCompressionLevel = 0.55;

} // namespace

std::string writeMp3(const std::filesystem::path& path, const Signal& sound) {
    SF_INFO info{};
    info.samplerate = kSampleRate;
    info.channels = 1;
    info.format = SF_FORMAT_MPEG | SF_FORMAT_MPEG_LAYER_III;
    SNDFILE* file = sf_open(path.c_str(), SFM_WRITE, &info);
    if (file == nullptr) return path.string() + ": cannot be written: " + sf_strerror(nullptr);

    int mode = SF_BITRATE_MODE_CONSTANT;
    double level = kCompressionLevel;
    sf_command(file, SFC_SET_BITRATE_MODE, &mode, sizeof mode);
    sf_command(file, SFC_SET_COMPRESSION_LEVEL, &level, sizeof level);
    const auto length = static_cast<sf_count_t>(sound.size());
    std::string problem;
    if (sf_write_double(file, sound.data(), length) != length)
        problem = path.string() + ": is not complete: " + sf_strerror(file);
    if (sf_close(file) != 0 && problem.empty()) problem = path.string() + ": could not be finished";
    return problem;
}

} // namespace zephyra

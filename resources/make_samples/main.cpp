// make_samples FOLDER: synthesises the built-in samples and stores them in FOLDER.
#include "resources/make_samples/birdsong.h"
#include "resources/make_samples/mp3_file.h"
#include "resources/make_samples/texture.h"

#include <cstdio>
#include <filesystem>

namespace {

/// Peaks before encoding, in decibels of full scale. The texture's stroke stands well above what
/// follows; the whistles are all nearly full, so they end higher in loudness at a lower peak.
constexpr double kTexturePeak = -1.3;
constexpr double kBirdsongPeak = -7.0;

bool make(const std::filesystem::path& path, zephyra::Signal sound, double peakDecibels) {
    zephyra::normalise(sound, peakDecibels);
    const std::string problem = zephyra::writeMp3(path, sound);
    if (!problem.empty()) std::fprintf(stderr, "make_samples: %s\n", problem.c_str());
    return problem.empty();
}

} // namespace

int main(int count, char** arguments) {
    if (count != 2) {
        std::fputs("make_samples: name one existing folder to write to\n", stderr);
        return 2;
    }
    const std::filesystem::path folder = arguments[1];
    const bool texture = make(folder / "Zephyra_Sample08.mp3", zephyra::texture(), kTexturePeak);
    const bool birdsong = make(folder / "Blackbird.mp3", zephyra::birdsong(), kBirdsongPeak);
    return texture && birdsong ? 0 : 1;
}

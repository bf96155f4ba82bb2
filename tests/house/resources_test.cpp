// The built-in samples as they are stored: what a new user hears first.
#include "platform/sound/sound_file.h"

#include "tests/support/testing.h"

namespace zephyra {
namespace {

const fs::path kFolder = fs::path(ZEPHYRA_SOURCE_DIR) / "resources";
constexpr int kRate = 44100;

using Samples = std::vector<double>;

/// The mono samples of a file; empty when it is not one at kRate.
Samples decode(const fs::path& path) {
    const auto file = readSoundFile(path);
    EXPECT_TRUE(file) << file.message();
    if (!file || file.value().info.channels != 1 || file.value().info.sampleRate != kRate)
        return {};
    return {file.value().samples.begin(), file.value().samples.end()};
}

double rms(const Samples& samples) {
    double sum = 0.0;
    for (const double sample : samples) sum += sample * sample;
    return std::sqrt(sum / static_cast<double>(samples.size()));
}

// Encoders and math libraries differ a little between machines, so the sounds are compared.
TEST(BuiltInSamples, areWhatTheGeneratorMakesSmallAndNeitherClipNorWhisper) {
    const fs::path made = fs::path(ZEPHYRA_BINARY_DIR) / "made_samples";
    fs::create_directories(made);
    const std::string command =
        std::string("\"") + ZEPHYRA_MAKE_SAMPLES + "\" \"" + made.string() + "\"";
    ASSERT_EQ(std::system(command.c_str()), 0);
    const std::tuple<const char*, double, double> cases[] = {{"Zephyra_Sample08.mp3", 12.0, 0.7},
                                                             {"Blackbird.mp3", 13.0, 0.35}};
    for (const auto& [name, seconds, lowestPeak] : cases) {
        const Samples stored = decode(kFolder / name);
        Samples difference = decode(made / name);
        ASSERT_EQ(stored.size(), std::lround(seconds * kRate)) << name;
        ASSERT_EQ(difference.size(), stored.size()) << name;
        for (std::size_t i = 0; i < stored.size(); ++i) difference[i] -= stored[i];
        EXPECT_LT(rms(difference), 0.01 * rms(stored)) << name << ": build the target samples";
        const auto [lowest, highest] = std::minmax_element(stored.begin(), stored.end());
        const double peak = std::max(-*lowest, *highest);
        EXPECT_TRUE(peak > lowestPeak && peak < 1.0) << name << ": " << peak;
        EXPECT_LT(fs::file_size(kFolder / name), 400'000u) << name;
    }
}

} // namespace
} // namespace zephyra

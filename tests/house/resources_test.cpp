// The built-in samples as they are stored: what a new user hears first.
#include <gtest/gtest.h>

#include <sndfile.h>

#include <algorithm>
#include <cmath>
#include <complex>
#include <cstdlib>
#include <filesystem>
#include <numbers>
#include <string>
#include <vector>

namespace zephyra {
namespace {

const std::filesystem::path kFolder = std::filesystem::path(ZEPHYRA_SOURCE_DIR) / "resources";
const char* const kTexture = "Zephyra_Sample08.mp3";
const char* const kBirdsong = "Blackbird.mp3";
constexpr int kRate = 44100;

using Samples = std::vector<double>;

/// The mono samples of a file; empty when it is not one at kRate.
Samples decode(const std::filesystem::path& path) {
    SF_INFO info{};
    SNDFILE* file = sf_open(path.c_str(), SFM_READ, &info);
    if (file == nullptr || info.channels != 1 || info.samplerate != kRate) {
        sf_close(file);
        return {};
    }
    Samples samples(static_cast<std::size_t>(info.frames));
    samples.resize(static_cast<std::size_t>(sf_read_double(file, samples.data(), info.frames)));
    sf_close(file);
    return samples;
}

/// The samples from one time to another, in seconds.
Samples part(const Samples& samples, double from, double to) {
    return Samples(samples.begin() + std::lround(from * kRate),
                   samples.begin() + std::lround(to * kRate));
}

double rms(const Samples& samples) {
    double sum = 0.0;
    for (const double sample : samples) sum += sample * sample;
    return std::sqrt(sum / static_cast<double>(samples.size()));
}

/// Power in bins of kBinHz, from Hann windows laid side by side.
constexpr std::size_t kWindow = 1024;
constexpr double kBinHz = static_cast<double>(kRate) / kWindow;

std::vector<double> spectrum(const Samples& samples) {
    std::vector<std::complex<double>> turns;
    for (std::size_t n = 0; n < kWindow; ++n)
        turns.push_back(std::polar(1.0, 2.0 * std::numbers::pi * static_cast<double>(n) / kWindow));
    std::vector<double> power(kWindow / 2, 0.0);
    for (std::size_t start = 0; start + kWindow <= samples.size(); start += kWindow)
        for (std::size_t bin = 0; bin < power.size(); ++bin) {
            std::complex<double> sum = 0.0;
            for (std::size_t n = 0; n < kWindow; ++n)
                sum +=
                    samples[start + n] * (0.5 - 0.5 * turns[n].real()) * turns[n * bin % kWindow];
            power[bin] += std::norm(sum);
        }
    return power;
}

/// Centre of gravity of the amplitudes over frequency, in Hz.
double centroid(const Samples& samples) {
    double moment = 0.0, total = 0.0, hz = 0.0;
    for (const double power : spectrum(samples)) {
        moment += std::sqrt(power) * hz;
        total += std::sqrt(power);
        hz += kBinHz;
    }
    return moment / total;
}

TEST(BuiltInSamples, areSmallMonoFilesOfTheirLengthThatNeitherClipNorWhisper) {
    const struct {
        const char* name;
        double seconds, lowestPeak;
    } cases[] = {{kTexture, 12.0, 0.7}, {kBirdsong, 13.0, 0.35}};
    for (const auto& [name, seconds, lowestPeak] : cases) {
        const Samples samples = decode(kFolder / name);
        ASSERT_EQ(samples.size(), std::lround(seconds * kRate)) << name;
        const auto [lowest, highest] = std::minmax_element(samples.begin(), samples.end());
        const double peak = std::max(-*lowest, *highest);
        EXPECT_TRUE(peak > lowestPeak && peak < 1.0) << name << ": " << peak;
        EXPECT_LT(std::filesystem::file_size(kFolder / name), 400'000u) << name;
    }
}

TEST(BuiltInSamples, theTextureStrikesThenNeverPausesAndItsColourTurnsBrightAndBack) {
    const Samples samples = decode(kFolder / kTexture);
    ASSERT_FALSE(samples.empty());
    const double stroke = rms(part(samples, 0.005, 0.05));
    EXPECT_LT(rms(part(samples, 0.0, 0.001)), 0.5 * stroke);
    for (int second = 2; second < 12; ++second)
        EXPECT_LT(rms(part(samples, second, second + 1)), 0.7 * stroke) << "second " << second;
    for (double at = 0.0; at < 11.0; at += 0.05)
        EXPECT_GT(rms(part(samples, at, at + 0.05)), 0.015) << at << " s";
    const double middle = centroid(part(samples, 7.5, 8.0));
    for (const double other : {2.0, 10.5})
        EXPECT_GT(middle, 1.4 * centroid(part(samples, other, other + 0.5))) << other << " s";
}

TEST(BuiltInSamples, theBlackbirdSingsFourCallsBetween1500And8000HzWithSilenceBetween) {
    const Samples samples = decode(kFolder / kBirdsong);
    ASSERT_FALSE(samples.empty());
    constexpr double kStep = 0.01;
    int calls = 0;
    double quiet = 1.0; // the time before the first call counts as a pause
    for (double at = 0.0; at + kStep < 13.0; at += kStep) {
        const bool sounds = rms(part(samples, at, at + kStep)) > 0.001;
        if (sounds && quiet > 0.2) ++calls;
        quiet = sounds ? 0.0 : quiet + kStep;
    }
    EXPECT_EQ(calls, 4);
    double inside = 0.0, all = 0.0, hz = 0.0;
    for (const double power : spectrum(part(samples, 0.0, 3.0))) {
        if (hz >= 1500.0 && hz <= 8000.0) inside += power;
        all += power;
        hz += kBinHz;
    }
    EXPECT_GT(inside, 0.97 * all);
}

// Encoders and math libraries differ a little between machines, so the sounds are compared.
TEST(BuiltInSamples, areWhatTheGeneratorMakes) {
    const std::filesystem::path made = std::filesystem::path(ZEPHYRA_BINARY_DIR) / "made_samples";
    std::filesystem::create_directories(made);
    const std::string command =
        std::string("\"") + ZEPHYRA_MAKE_SAMPLES + "\" \"" + made.string() + "\"";
    ASSERT_EQ(std::system(command.c_str()), 0);
    for (const char* name : {kTexture, kBirdsong}) {
        const Samples stored = decode(kFolder / name);
        Samples difference = decode(made / name);
        ASSERT_EQ(difference.size(), stored.size()) << name;
        for (std::size_t i = 0; i < stored.size(); ++i) difference[i] -= stored[i];
        EXPECT_LT(rms(difference), 0.01 * rms(stored)) << name << ": build the target samples";
    }
}

} // namespace
} // namespace zephyra

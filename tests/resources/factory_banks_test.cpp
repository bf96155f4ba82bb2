// The factory banks, heard: each preset at a fair level, without clipping, and unlike its
// neighbours.

#include "library/bank_edits.h"
#include "pictures/spectrum_columns.h"
#include "platform/files/content_hash.h"
#include "platform/files/file_name.h"
#include "tests/support/hosted_unit.h"

namespace zephyra {
namespace {

constexpr double kRate = 44100.0, kSeconds = 8.0;
const fs::path kFolder = ZEPHYRA_SOURCE_DIR "/resources";

/// The folder's files of that extension, sorted by bytes.
std::set<fs::path> filesWith(const std::string& extension, const char* below = "") {
    std::set<fs::path> files;
    for (const auto& entry : fs::directory_iterator(kFolder / below))
        if (entry.path().extension() == extension) files.insert(entry.path());
    return files;
}

/// Calls visit(name, record) for every preset of a bank, in order.
template <typename Visit>
void forEachPreset(const fs::path& file, const Visit& visit) {
    const auto read = must(readBank(file));
    for (const std::string& key : sortedKeys(read.bank))
        visit(snapshotTag(read.bank, key).value_or(kUnnamed), *recordOf(read.bank, key));
}

bool isOn(const PropertyDictionary& record, const char* key) {
    const auto found = record.find(key);
    return found != record.end() && found->second == PropertyValue(true);
}

/// Plucked chords at 120 beats a minute, one every half second, about -19 dB.
std::vector<float> playedChords() {
    constexpr double kRoots[] = {220.0, 174.6, 261.6, 196.0};
    std::vector<float> chords(static_cast<std::size_t>(kSeconds * kRate));
    for (std::size_t n = 0; n < chords.size(); ++n) {
        const double time = static_cast<double>(n) / kRate, since = std::fmod(time, 0.5);
        double sum = 0.0;
        for (const double interval : {1.0, 1.25, 1.5})
            for (int partial = 1; partial <= 6; ++partial)
                sum += std::exp(-since * 2.5 * partial) / partial *
                       std::sin(2 * std::numbers::pi * interval * partial * time *
                                kRoots[static_cast<std::size_t>(time / 2.0) % 4]);
        chords[n] = static_cast<float>(35 * std::min({since, 0.5 - since, 0.004}) * sum);
    }
    return chords;
}

/// What an ear would say of a stereo sound, in numbers; levels in dB of full scale.
struct SoundMeasure {
    static constexpr std::size_t kBands = 24, kStep = 2205; // frames, 50 ms

    double rms = 0.0, peak = 0.0;                      ///< peak: 1 is full scale
    double longestSilence = 0.0;                       ///< seconds below -60 dB
    std::array<std::array<double, 2>, kBands> bands{}; ///< level, and how much it moves

    SoundMeasure(const std::vector<float>& left, const std::vector<float>& right) {
        double sum = 0.0, silence = 0.0;
        for (std::size_t step = 0; step + kStep <= left.size(); step += kStep) {
            double power = 0.0;
            for (std::size_t n = step; n < step + kStep; ++n) {
                const double l = left[n], r = right[n];
                power += (l * l + r * r) / 2;
                peak = std::max({peak, std::fabs(l), std::fabs(r)});
            }
            sum += power;
            silence = power < 1e-6 * kStep ? silence + kStep / kRate : 0.0;
            longestSilence = std::max(longestSilence, silence);
        }
        rms = 10 * std::log10(sum / static_cast<double>(left.size()) + 1e-12);
        measureBands(left, right);
    }
    void measureBands(const std::vector<float>& left, const std::vector<float>& right) {
        constexpr float kInaudible = 50.0f; // dB below the loudest band's loudest moment
        const std::size_t columns = left.size() / kStep;
        SpectrumColumns spectra(left.size(), kRate, columns, kBands);
        spectra.add(left.data(), right.data(), left.size());
        spectra.finish();
        float loudest = SpectrumColumns::kSilenceDecibels;
        for (std::size_t at = 0; at < columns * kBands; ++at)
            loudest = std::max(loudest, spectra.decibels(at / kBands, at % kBands));
        for (std::size_t band = 0; band < kBands; ++band) {
            double sum = 0.0, squares = 0.0;
            for (std::size_t column = 0; column < columns; ++column) {
                const double above =
                    std::max(spectra.decibels(column, band) - loudest, -kInaudible);
                sum += above / static_cast<double>(columns);
                squares += above * above / static_cast<double>(columns);
            }
            bands[band] = {sum, std::sqrt(std::max(squares - sum * sum, 0.0))};
        }
    }
    /// How differently two sounds are coloured and move, whatever their loudness: the root mean
    /// square over bands of the differences in level and in how much that level moves, in dB.
    double distanceTo(const SoundMeasure& other) const {
        double sum = 0.0;
        for (std::size_t band = 0; band < kBands; ++band)
            for (const std::size_t i : {0u, 1u})
                sum += std::pow(bands[band][i] - other.bands[band][i], 2);
        return std::sqrt(sum / kBands);
    }
};

SoundMeasure heard(PropertyDictionary record, int seed) {
    static const std::vector<float> chords = playedChords();
    record["Seed_0"] = seed;
    const bool live = isOn(record, "LIVE_0"), follows = isOn(record, "ScanSync_0");
    HostedUnit hosted(live ? component_type::effect : component_type::instrument);
    hosted.instance.random.seed(1);
    hosted.view.restoreState(std::move(record)); // before the start, or a demonstration is loaded
    hosted.report(120);
    hosted.host.setBeatPosition(0);
    EXPECT_EQ(hosted.host.start({kRate, 512}), audio_unit_status::noError);
    hosted.host.setTransport(true);
    if (!follows) hosted.queue(ControlId::playStop, 1);
    std::vector<float> left(chords.size()), right(chords.size());
    EXPECT_EQ(hosted.host.render({static_cast<std::uint32_t>(chords.size()), chords.data(),
                                  chords.data(), left.data(), right.data()}),
              audio_unit_status::noError);
    EXPECT_EQ(hosted.instance.alerts.current(), nullptr);
    return {left, right};
}

TEST(FactoryBanks, EveryPresetIsHeardAtAFairLevelAndUnlikeItsNeighbours) {
    // Another seed moves most presets by 1 dB and those of few grains by up to 4: what differs by
    // 5, and by more than its own chance, is another sound.
    constexpr double kLeastDistance = 5.0;
    for (const auto& file : filesWith(".zephyra")) {
        std::optional<SoundMeasure> previous;
        forEachPreset(file, [&](const std::string& name, const PropertyDictionary& record) {
            const SoundMeasure sound = heard(record, 1);
            const double chance = sound.distanceTo(heard(record, 2));
            const double distance = previous ? sound.distanceTo(*previous) : HUGE_VAL;
            EXPECT_GE(sound.rms, -24.0) << name;
            EXPECT_LE(sound.rms, -6.0) << name;
            EXPECT_LT(sound.peak, 1.0) << name;
            EXPECT_LE(sound.longestSilence, 2.5) << name;
            EXPECT_GE(distance, std::max(kLeastDistance, 1.2 * chance)) << name;
            previous = sound;
        });
    }
}

TEST(FactoryBanks, NeedNothingButTheSoundsThatComeWithThemAndNameTheirPresetsAsTheRecipesDo) {
    std::map<std::string, std::string> hashes;
    for (const auto& file : filesWith(".mp3"))
        hashes[contentHash(openToHash(file).value()).value()] = file.filename().string();
    std::size_t presets = 0;
    for (const auto& file : filesWith(".zephyra")) {
        std::vector<std::string> names, ordered;
        forEachPreset(file, [&](const std::string& name, const PropertyDictionary& record) {
            names.push_back(name);
            EXPECT_TRUE(isFileName(name)) << name;
            EXPECT_EQ(writePropertyList(record).value().find("<string>/"), std::string::npos);
            EXPECT_FALSE(record.contains("Captured_0") || record.contains("Preset")) << name;
            if (const auto take = record.find("_0_SCRUB_REC_IS_PLAYING_"); take != record.end()) {
                EXPECT_EQ(take->second, PropertyValue(1)) << name << " keeps a take that stands";
            }
            const auto found = record.find("Sample_0");
            EXPECT_NE(found == record.end(), !isOn(record, "LIVE_0")) << name;
            if (found == record.end()) return;
            const auto& sample = *found->second.as<PropertyDictionary>();
            EXPECT_FALSE(sample.contains("Audio")) << name;
            const auto& hash = *sample.at("ContentHash").as<std::string>();
            EXPECT_EQ(*sample.at("RelativePath").as<std::string>(), hashes[hash]) << name;
        });
        std::ifstream recipe(kFolder / "banks" / (file.stem().string() + ".recipe"));
        for (std::string line; std::getline(recipe, line);)
            if (line.starts_with('[')) ordered.push_back(line.substr(1, line.size() - 2));
        EXPECT_EQ(names, ordered) << file << ": build the target banks";
        EXPECT_EQ(std::set(names.begin(), names.end()).size(), names.size()) << file;
        presets += names.size();
    }
    EXPECT_GE(filesWith(".zephyra").size(), 3u);
    EXPECT_EQ(filesWith(".zephyra").size(), filesWith(".recipe", "banks").size());
    EXPECT_GE(presets, 40u);
}

} // namespace
} // namespace zephyra

#include "screens/model/top/sample_line.h"

#include "platform/text/text_numbers.h"

#include <cmath>
#include <filesystem>

namespace zephyra {

namespace {

std::string two(long long number) {
    std::string digits(number < 10 ? 1 : 0, '0');
    digits += std::to_string(number);
    return digits;
}

std::string lengthText(double seconds) {
    if (seconds < 60.0) return formatFixed(seconds, 1) + " s";
    const auto whole = std::llround(seconds);
    const std::string minutes = std::to_string(whole / 60 % 60), rest = two(whole % 60);
    if (whole < 3600) return minutes + ":" + rest + " min";
    return std::to_string(whole / 3600) + ":" + two(whole / 60 % 60) + ":" + rest + " h";
}

std::string channelText(unsigned channels) {
    if (channels == 1) return "mono";
    return channels == 2 ? "stereo" : std::to_string(channels) + " channels";
}

std::string rateText(double rate) {
    const double kilo = rate / 1000.0;
    std::string digits = formatFixed(kilo, 3);
    while (digits.back() == '0') digits.pop_back();
    if (digits.back() == '.') digits.pop_back();
    return digits + " kHz";
}

} // namespace

std::string soundFacts(double seconds, double rate, unsigned channels) {
    std::string facts;
    const auto add = [&](const std::string& fact) {
        if (!facts.empty()) facts += "   ";
        facts += fact;
    };
    if (seconds > 0.0) add(lengthText(seconds));
    if (rate > 0.0) add(rateText(rate));
    if (channels > 0) add(channelText(channels));
    return facts;
}

SampleLine::SampleLine(ScreenContext& context) : context_(context) {
    context_.source.add(*this);
}

SampleLine::~SampleLine() {
    context_.source.remove(*this);
}

void SampleLine::read(AudioUnitViewController& view, const FrameTime&) {
    const MOK_SCRUB_GRANULATOR& stream = view._GRANULATOR_STREAM;
    const WaveForm& wave = stream.waveForm();
    const auto nameOf = [](const std::string& path) {
        return std::filesystem::path(path).filename().string();
    };
    SampleShown shown;
    if (stream.isLive() || wave.isLiveCurrent()) {
        shown.name = stream.isLive() ? "Live input" : "Captured sound";
        shown.facts = soundFacts(wave.getFileDuration(), 0.0, 1);
    } else if (const std::string missing = view.sampleLoader.missing(); !missing.empty()) {
        shown = {.name = nameOf(missing), .isMissing = true};
    } else {
        const SampleReference& file = stream.sampleReference();
        shown.name = !file.path.empty()
                         ? nameOf(file.path)
                         : (wave.hasFileSample() ? "Sound of the preset" : "No sound");
        if (wave.hasFileSample())
            shown.facts = soundFacts(wave.getFileDuration(), file.sampleRate, file.channels);
    }
    shown_ = std::move(shown);
}

} // namespace zephyra

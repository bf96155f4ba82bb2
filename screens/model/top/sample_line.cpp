#include "screens/model/top/sample_line.h"

#include "platform/text/text_numbers.h"

#include <cmath>
#include <filesystem>
#include <utility>

namespace zephyra {

namespace {

std::string two(long long number) {
    std::string digits(number < 10 ? 1 : 0, '0');
    digits += std::to_string(number);
    return digits;
}

std::string lengthText(double seconds) {
    if (seconds < 59.95) return formatFixed(seconds, 1) + " s";
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
    const SampleReference& file = stream.sampleReference();
    const std::string missing = view.sampleLoader.missing();
    file_ = {.name = nameOf(missing.empty() ? file.path : missing),
             .isMissing = !missing.empty(),
             .isLoaded = wave.hasFileSample()};
    SampleShown shown;
    if (stream.isLive() || wave.isLiveCurrent()) {
        shown = {.name = stream.isLive() ? "Live input" : "Captured sound",
                 .facts = soundFacts(wave.getFileDuration(), 0.0, 1),
                 .isLive = true};
    } else if (file_.isMissing) {
        shown = {.name = file_.name, .isMissing = true};
    } else {
        shown.name = !file_.name.empty() ? file_.name
                     : file_.isLoaded    ? "Sound of the preset"
                                         : "No sound";
        if (file_.isLoaded)
            shown.facts = soundFacts(wave.getFileDuration(), file.sampleRate, file.channels);
    }
    shown_ = std::move(shown);
}

void SampleLine::press(const Box& at) {
    auto rows = menu();
    if (rows.size() == 1 && rows.front().chosen) return rows.front().chosen();
    if (rows.size() > 1 && context_.openMenu) context_.openMenu(at, std::move(rows));
}

std::vector<MenuRow> SampleLine::menu() {
    std::vector<MenuRow> rows;
    if (file_.isMissing) rows.push_back({"Locate " + file_.name, context_.locateSample});
    if (shown_.isLive && file_.isLoaded) {
        const bool isNamed = !file_.isMissing && !file_.name.empty();
        rows.push_back(
            {"Back to " + (isNamed ? file_.name : "the sound that was loaded last"), [this] {
                 const ScreenEdit edit(context_, "Sound");
                 context_.source.asMain([](AudioUnitViewController& view) {
                     view._GRANULATOR_STREAM.restoreLastSample();
                 });
             }});
    }
    if (shown_.isLive || !file_.isMissing)
        rows.push_back({"Load a sound or a bank", context_.loadFile});
    return rows;
}

} // namespace zephyra

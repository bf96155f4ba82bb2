#include "cli/render/render_notices.h"

#include "platform/sound/channel_levels.h"
#include "platform/text/decibels.h"
#include "platform/text/message_text.h"
#include "platform/text/odd_bytes.h"
#include "platform/text/text_numbers.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <optional>
#include <span>

namespace zephyra {

namespace {

namespace fs = std::filesystem;

// An offset is heard as a thump of every grain, unless the sound itself, some 20 dB above, covers
// it.
constexpr double kLeastOffset = 0.01, kLeastOffsetOfRms = 0.1;
constexpr double kLeastCancelled = 10.0; // dB
constexpr double kLeastDropped = 0.05;   // of all grains
constexpr std::uint32_t kInputChannels = 2;

bool isNotable(double offset, double rms) {
    return std::abs(offset) >= std::max(kLeastOffset, kLeastOffsetOfRms * rms);
}

bool isSilent(std::span<const float> samples) {
    return std::ranges::none_of(samples, [](float sample) { return std::abs(sample) >= kSilence; });
}

class Notices {
public:
    Notices(const RenderOutcome& outcome, const ReadSource& read)
        : outcome_(outcome), read_(read) {}

    std::vector<std::string> collect() {
        lines_ = outcome_.plan.notices;
        if (!read_.keeping.empty()) lines_.push_back(read_.keeping);
        addTake();
        addSample();
        addInput();
        addRegion();
        addOutput();
        return std::move(lines_);
    }

private:
    const RenderRequest& request() const { return outcome_.request; }
    std::string output() const { return outputTitle(request().output); }
    void add(const std::string& name, const std::string& what) { lines_.push_back(name + what); }

    std::string sourceName() const;
    void addTake();
    void addSample();
    void addInput();
    void addSilence(const std::string& name, const ChannelLevels& levels);
    void addOffset(const std::string& name, const SignalLevel& level);
    void addRegion();
    void addGrains();
    void addLimiting();
    void addOutput();
    std::string whySilent() const;
    bool regionIsSilent() const;

    const RenderOutcome& outcome_;
    const ReadSource& read_;
    std::vector<std::string> lines_;
};

/// Of the sound that the grains are cut from.
std::string Notices::sourceName() const {
    if (request().host.sample) return shownFile(inputTitle(*request().host.sample));
    if (!request().input.empty() && (request().isInstrument() || !read_.sample))
        return shownFile(inputTitle(request().input));
    return shownFile(read_.sampleFile);
}

void Notices::addTake() {
    if (outcome_.takeIsCut)
        add(request().motion.recordScrub->string(),
            ": a take holds 1800 positions; what came after 120 s is left out");
}

bool hasSound(const ChannelLevels& levels) {
    return std::ranges::any_of(levels.channels(),
                               [](const SignalLevel& channel) { return channel.peak >= kSilence; });
}

void Notices::addSilence(const std::string& name, const ChannelLevels& levels) {
    if (!levels.channels().empty() && !hasSound(levels))
        add(name, " is silent: nothing in it is louder than -90 dB");
}

void Notices::addOffset(const std::string& name, const SignalLevel& level) {
    if (isNotable(level.mean(), level.rms()))
        add(name, " has a DC offset of " + offsetText(level.mean()) + " of full scale (" +
                      decibelText(std::abs(level.mean())) +
                      "), which grains turn into thumps; take it out with a high-pass filter");
}

void Notices::addSample() {
    const ChannelLevels& levels = read_.sampleLevels;
    const std::string name = sourceName();
    if (const std::size_t channels = levels.channels().size(); channels > 1) {
        const double cancelled = levels.cancelledDecibels();
        const bool isLost = cancelled >= kLeastCancelled;
        const std::string lost = std::isinf(cancelled) ? ", which is silent: they cancel each other"
                                                       : ", in which they cancel each other by " +
                                                             formatFixed(cancelled, 1) + " dB";
        add(name, " has " + std::to_string(channels) + " channels; grains are cut from their mean" +
                      (isLost ? lost + "; render one of them alone" : std::string()));
    }
    addSilence(name, levels);
    addOffset(name, levels.mean());
}

void Notices::addInput() {
    const std::vector<SignalLevel>& channels = read_.inputLevels.channels();
    if (channels.empty()) return;
    const std::string name = shownFile(inputTitle(request().input));
    if (channels.size() > kInputChannels)
        add(name, " has " + std::to_string(channels.size()) +
                      " channels; the first two are heard, the others are left out");
    if (!read_.sample) addSilence(name, read_.inputLevels);
    const auto heard = std::span(channels).first(std::min<std::size_t>(channels.size(), 2));
    addOffset(name, *std::ranges::max_element(heard, {}, [](const SignalLevel& channel) {
                  return std::abs(channel.mean());
              }));
}

bool Notices::regionIsSilent() const {
    const auto [low, high] = std::minmax(outcome_.plan.region.first, outcome_.plan.region.second);
    const std::span<const float> all = read_.shownSamples();
    const auto at = [&all](float share) {
        return static_cast<std::size_t>(double{share} * static_cast<double>(all.size()));
    };
    return isSilent(all.subspan(at(low), at(high) - at(low)));
}

/// What was typed, not what a preset means.
void Notices::addRegion() {
    const RenderPlan& plan = outcome_.plan;
    if ((!request().start && !request().end) || plan.use == SourceUse::live) return;
    const double seconds = std::abs(double{plan.region.second} - double{plan.region.first}) *
                           static_cast<double>(read_.shown.frames) / read_.shown.sampleRate;
    const double milliseconds = seconds * 1000.0;
    const double grain = plan.initial[static_cast<std::size_t>(ControlId::length)];
    if (seconds == 0)
        add("--start", " and --end are one place, from which every grain is cut; move them apart "
                       "to scan what lies between");
    else if (milliseconds < grain)
        add("--start", " and --end are " + formatShort(milliseconds) +
                           " ms apart, less than a grain of " + formatShort(grain) +
                           " ms, which reads on behind them; move them apart or lower Length");
    else if (regionIsSilent() && !isSilent(read_.shownSamples()))
        add(sourceName(), " is silent from --start to --end: nothing there is louder than -90 dB");
}

void Notices::addGrains() {
    const RenderStatistics& grains = outcome_.statistics;
    const auto all = static_cast<double>(grains.startedGrains + grains.droppedGrains);
    const auto dropped = static_cast<double>(grains.droppedGrains);
    if (dropped > kLeastDropped * all)
        add(output(), ": " + std::to_string(grains.droppedGrains) + " of " + formatFixed(all, 0) +
                          " grains (" + formatFixed(100 * dropped / all, 0) +
                          " %) were dropped, because too many would sound at once; lower Density "
                          "or Length");
}

std::string Notices::whySilent() const {
    const RenderPlan& plan = outcome_.plan;
    if (plan.initial[static_cast<std::size_t>(ControlId::amplitude)] == 0) return "raise Amplitude";
    if (plan.host.transport == HostTransport::stop) return "the host's transport stands still";
    if (outcome_.statistics.startedGrains == 0)
        return "no grain was started; raise Density or --seconds";
    return "check --start and --end, and what moves Amplitude";
}

/// How far to turn down, and how.
void Notices::addLimiting() {
    const OutputFile& file = outcome_.file;
    if (file.limitedSamples() == 0) return;
    // Rounded up: what it says is enough.
    const double excess = std::ceil(decibelsOf(file.peak()) * 10) / 10;
    const bool one = file.limitedSamples() == 1;
    add(outputTitle(request().output),
        ": " + counted(file.limitedSamples(), "sample") + " exceeded full scale by up to " +
            formatFixed(excess, 1) + " dB and " + (one ? "was" : "were") +
            " limited; turn down with --gain auto, lower Amplitude, or write --float");
}

void Notices::addOutput() {
    const OutputFile& file = outcome_.file;
    addGrains();
    if (file.peak() < kSilence && !isSilent(read_.shownSamples()))
        add(output(), " is silent though " + sourceName() + " is not: " + whySilent());
    if (isNotable(file.offset(), file.rms()))
        add(output(), " has a DC offset of " + offsetText(file.offset()) + " of full scale (" +
                          decibelText(std::abs(file.offset())) + ")");
    addLimiting();
}

} // namespace

std::vector<std::string> noticesOf(const RenderOutcome& outcome, const ReadSource& read) {
    return Notices(outcome, read).collect();
}

} // namespace zephyra

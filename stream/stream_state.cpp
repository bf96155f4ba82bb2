#include "stream/stream_state.h"

#include "controls/state_keys.h"
#include "stream/captured_state.h"
#include "stream/sample_state.h"

#include <algorithm>
#include <limits>
#include <optional>
#include <string>
#include <utility>

namespace zephyra {

namespace {

using enum ControlId;
using namespace state_key;

constexpr auto kMostQuality = static_cast<int>(GrainQuality::best);

float nearestFloat(double value) {
    constexpr double most = std::numeric_limits<float>::max();
    return static_cast<float>(std::clamp(value, -most, most));
}

bool isSwitch(const ControlRange& range) {
    return range.kind == ControlKind::switching;
}

/// Reads one stream's keys, one group of them after another.
class Restoring {
public:
    Restoring(MOK_SCRUB_GRANULATOR& stream, PropertyReader& state, StateScope scope)
        : stream_(stream), state_(state), scope_(scope), suffix_(stream.channel()) {}

    /// True when a live or captured sound is what is to be heard. Frozen first, or the input that
    /// LIVE lets in would be held with what the state brings.
    bool live() {
        if (const auto frozen = value(controlRange(ControlId::freeze)))
            stream_.setLinear(ControlId::freeze, *frozen);
        const std::optional<float> on = value(controlRange(ControlId::live));
        const std::string key = kCaptured + suffix_;
        const PropertyDictionary* const captured = state_.dictionary(key);
        if (on && *on == 0.0f) stream_.setLinear(ControlId::live, 0.0f);
        const bool taken = captured && restoreCaptured(stream_, *captured, state_, key);
        if (on) stream_.setLinear(ControlId::live, *on);
        return taken || stream_.isLive();
    }

    void controls() {
        for (const ControlRange& range : controlRanges()) {
            if (range.id == ControlId::live || range.id == freeze || range.id == normalize)
                continue;
            if (const auto linear = value(range)) stream_.setLinear(range.id, *linear);
        }
        Button& keyboard = stream_.controls._keyboardButton;
        const auto on = state_.boolean(keyboard.channel);
        // Not pressed: that would move the pitch to a whole note.
        if (on && !isSkipped(keyboard)) keyboard.tag = *on ? 1 : 0;
        keyboard.setNeedsDisplay();
    }

    /// A whole state that does not say is one of before it could be chosen.
    void echoRate() {
        const auto atOutputRate = state_.boolean(kEchoAtOutputRate + suffix_);
        if (isPart() && !atOutputRate) return;
        stream_.setEchoAtOutputRate(atOutputRate.value_or(false));
    }

    /// Without a touch, which would normalize files that were not.
    void normalizing() {
        MOK_KNOB& knob = stream_.controls._normalizeGain;
        const auto linear = value(controlRange(normalize));
        if (linear) knob.setValue(*linear);
        const auto touched = state_.boolean(kNormalizeTouched + suffix_);
        if (isPart() && !linear && !touched) return;
        stream_.setNormalizeTouched(touched.value_or(stream_.normalizeTouched()));
    }

    void scan() {
        const auto start = fraction(kRegionStart), end = fraction(kRegionEnd);
        if (start || end || !isPart())
            stream_.setRegion(start.value_or(stream_.regionStart()),
                              end.value_or(stream_.regionEnd()));
        const auto steady = state_.boolean(kSteadyLevel + suffix_);
        if (steady || !isPart()) stream_.setSteadyLevel(steady.value_or(false));
        const auto menu = state_.whole(controlRange(envelope).channel + suffix_);
        if (menu && *menu >= 0) stream_.pickEnvelope(static_cast<std::size_t>(*menu));
        if (const auto seed = state_.whole(kSeed + suffix_))
            stream_.setSeed(static_cast<std::uint32_t>(
                std::clamp<std::int64_t>(*seed, 0, std::numeric_limits<std::uint32_t>::max())));
        const auto quality = state_.whole(kQuality + suffix_);
        if (quality || !isPart()) // without the key as grains were before there was a choice
            stream_.setQuality(static_cast<GrainQuality>(
                std::clamp<std::int64_t>(quality.value_or(0), 0, std::int64_t{kMostQuality})));
        if (const auto position = fraction(kScanPosition)) {
            stream_.scrubArea.longPressFirstFingerGesture(); // the state says where it stands
            stream_.setScrubNormalizedValue(*position);
        }
        if (!isPart() || stream_.scrubRecorder.isIn(state_))
            stream_.scrubRecorder.loadStateForRecordScrub(state_);
    }

private:
    bool isPart() const { return scope_ == StateScope::part; }
    bool isSkipped(const Control& control) const { return control.skipFromPreset && !isPart(); }

    /// What presets move and the state holds; the keys of the others are read all the same, because
    /// they are known.
    std::optional<float> value(const ControlRange& range) {
        if (!range.kept) return std::nullopt;
        const std::string key = range.channel + suffix_;
        std::optional<float> linear;
        if (isSwitch(range)) {
            if (const auto on = state_.boolean(key)) linear = *on ? 1.0f : 0.0f;
        } else if (const auto real = state_.real(key)) {
            linear = nearestFloat(*real);
        }
        if (isSkipped(*stream_.controls.control(range.id))) return std::nullopt;
        return linear;
    }

    std::optional<float> fraction(const char* key) {
        const auto real = state_.real(key + suffix_);
        if (!real) return std::nullopt;
        return static_cast<float>(std::clamp(*real, 0.0, 1.0));
    }

    MOK_SCRUB_GRANULATOR& stream_;
    PropertyReader& state_;
    const StateScope scope_;
    const std::string& suffix_;
};

} // namespace

void saveStreamState(MOK_SCRUB_GRANULATOR& stream, PropertyDictionary& state, StateUse use) {
    const std::string& suffix = stream.channel();
    for (const ControlRange& range : controlRanges()) {
        if (!range.kept) continue;
        PropertyValue& value = state[range.channel + suffix];
        const float linear = stream.linear(range.id);
        if (isSwitch(range))
            value = linear != 0.0f;
        else
            value = linear;
    }
    const Button& keyboard = stream.controls._keyboardButton;
    state[keyboard.channel] = keyboard.tag == 1;
    state[kNormalizeTouched + suffix] = stream.normalizeTouched();
    if (stream.isLevelSteady()) state[kSteadyLevel + suffix] = true; // older versions know none
    if (stream.echoAtOutputRate()) state[kEchoAtOutputRate + suffix] = true;
    state[kRegionStart + suffix] = stream.regionStart();
    state[kRegionEnd + suffix] = stream.regionEnd();
    state[controlRange(envelope).channel + suffix] = static_cast<std::int64_t>(stream.envelope());
    state[kSeed + suffix] = std::int64_t{stream.seed()};
    if (stream.quality() != GrainQuality::classic)
        state[kQuality + suffix] = static_cast<std::int64_t>(stream.quality());
    // Where a scan stands is part of the sound; where a moving one happened to be is not.
    if (stream.scanStands())
        state[kScanPosition + suffix] = std::clamp(stream.engine().nextScanPosition(), 0.0f, 1.0f);
    if (use == StateUse::edit)
        stream.scrubRecorder.keepTake(state);
    else
        stream.scrubRecorder.saveDataForRecordScrub(state);
    if (auto sample = sampleState(stream, use); !sample.empty())
        state[kSample + suffix] = std::move(sample);
}

bool restoreStreamState(MOK_SCRUB_GRANULATOR& stream, SampleLoader& loader, PropertyReader& state,
                        SampleLoader::Ended ended, StateScope scope) {
    Restoring restoring(stream, state, scope);
    if (scope == StateScope::whole) stream.forgetScanHome();
    const bool live = restoring.live(); // before the controls: LIVE moves Normalize
    restoring.echoRate();
    restoring.controls();
    restoring.normalizing();
    restoring.scan();
    const auto reference = readSampleState(state, kSample + stream.channel());
    if (reference)
        loader.loadReference(*reference, live ? SoundUse::await : SoundUse::play, std::move(ended));
    else if (live && !stream.isLive())
        loader.cancel(); // or what was asked for before would take the captured sound's place
    return reference.has_value();
}

} // namespace zephyra

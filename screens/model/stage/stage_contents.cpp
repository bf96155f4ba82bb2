#include "screens/model/stage/stage_contents.h"

#include "engine/envelope_menu.h"
#include "platform/random_source.h"

#include <algorithm>
#include <cmath>
#include <filesystem>

namespace zephyra {

namespace {

std::string fileName(const std::string& path) {
    return std::filesystem::path(path).filename().string();
}

std::vector<float> pointsOf(std::size_t menuIndex) {
    RandomSource random;
    const auto window = makeEnvelope(menuIndex, random);
    if (!window) return {};
    return {window->getPtr(), window->getPtr() + window->size};
}

} // namespace

StageReader::StageReader(ScreenSource& source) : source_(source) {
    source_.asMain([this](AudioUnitViewController& view) {
        started_.emplace(view._GRANULATOR_STREAM.grainWatch());
    });
    source_.add(*this);
}

StageReader::~StageReader() {
    source_.remove(*this);
    source_.asMain([this](AudioUnitViewController&) { started_.reset(); });
}

void StageReader::read(AudioUnitViewController& view, const FrameTime& time) {
    MOK_SCRUB_GRANULATOR& stream = view._GRANULATOR_STREAM;
    const double rate = std::max(1.0, stream.instance().session.sampleRate);
    const std::uint64_t rendered = stream.engine().renderedFrames();
    const double frame = clock_.advance(rendered, time.elapsed, rate);
    readSound(stream, view);
    readLive(stream, time.now);
    readScan(stream, (frame - static_cast<double>(rendered)) / rate);
    readGrains(stream, time, rate);
}

void StageReader::readSound(MOK_SCRUB_GRANULATOR& stream, AudioUnitViewController& view) {
    StageContents& of = contents_;
    const WaveForm& wave = stream.waveForm();
    const auto sound = wave.fileSound();
    const bool isLive = wave.isLiveCurrent();
    if (sound != of.sound || isLive != of.isLive) grains_.clear();
    of.sound = sound;
    of.isLive = isLive;
    of.seconds = wave.getFileDuration();
    const std::optional<float> peak = stream.normalizePeak();
    of.isNormalized = peak && wave.fileSoundPeak() > 0.0f;
    of.gain = of.isNormalized ? *peak / wave.fileSoundPeak() : 1.0f;
    of.name = fileName(stream.sampleReference().path);
    of.missing = fileName(view.sampleLoader.missing());
    of.loading.reset();
    if (view.sampleLoader.isLoading()) of.loading = view.sampleLoader.progress();
}

void StageReader::readLive(MOK_SCRUB_GRANULATOR& stream, double now) {
    const WaveForm& wave = stream.waveForm();
    contents_.isWriting = contents_.isLive && wave.enableLIVE() && !wave.isHeld();
    contents_.liveFrames = wave.liveSample()->size;
    if (!contents_.isLive) return;
    if (live_.follow(wave, now - liveReadAt_)) liveNews_ = true;
    liveReadAt_ = now;
}

/// lag: seconds that the picture is behind the latest block, below 0.
void StageReader::readScan(MOK_SCRUB_GRANULATOR& stream, double lag) {
    StageContents& of = contents_;
    const mokGranulatorSF& engine = stream.engine();
    of.isPlaying = stream.isPlaying();
    of.isArmed = stream.isArmed();
    of.isHeld = stream.scrubArea.isHeld();
    of.staysHeld = stream.scrubArea.isPressAndHold();
    of.isFrozen = stream.displayed(ControlId::freeze) != 0.0f;
    of.scanSpeed = stream.scanningValue();
    of.regionStart = double{stream.regionStart()};
    of.regionEnd = double{stream.regionEnd()};
    double phase = engine.nextScanPhase();
    if (of.isPlaying && !stream.scanStands()) {
        phase += lag * double{engine.scanFrequency()};
        phase -= std::floor(phase);
    }
    of.scan = std::clamp(double{engine.scanRegionStart()} + phase * double{engine.scanRegionSpan()},
                         0.0, 1.0);
    of.jitter = of.seconds > 0.0
                    ? double{stream.displayed(ControlId::jittering)} / 1000.0 / of.seconds
                    : 0.0;
    of.isSynced = stream.displayed(ControlId::scanSync) != 0.0f;
    of.measures = std::max(1, static_cast<int>(stream.displayed(ControlId::measures)));
    of.quarters = std::max(0, static_cast<int>(stream.displayed(ControlId::quarters)));
    of.pitch = double{stream.displayed(ControlId::pitch)};
    of.rndPitch = double{stream.displayed(ControlId::rndPitch)};
    of.envelope = stream.envelope();
}

void StageReader::readGrains(MOK_SCRUB_GRANULATOR& stream, const FrameTime& time, double rate) {
    if (shownEnvelope_ != contents_.envelope) {
        shownEnvelope_ = contents_.envelope;
        envelope_ = pointsOf(contents_.envelope);
    }
    const bool drifts = contents_.isWriting && contents_.liveFrames > 0;
    const GrainSource source{.seconds = contents_.seconds,
                             .driftPerFrame =
                                 drifts ? 1.0 / static_cast<double>(contents_.liveFrames) : 0.0};
    for (GrainRecord record; started_->take(record);) grains_.add(record, source, bar_);
    if (!stream.isPlaying()) grains_.endAll();
    grains_.advance(clock_.frame(), time.elapsed, rate, source, envelope_, fades_);
}

} // namespace zephyra

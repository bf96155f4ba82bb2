#include "stream/scrub_recorder.h"

#include "stream/stream_controller.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace zephyra {

namespace {

constexpr double kRecordedTempo = 120.0; // beats per minute at which a synced take plays as it was
constexpr float kLastPoint = static_cast<float>(ScrubRecorder::kPoints - 1);

void showMessage(Control& label, const char* text) {
    label.title = text;
    label.hidden = false;
    label.setNeedsDisplay();
}

} // namespace

ScrubRecorder::ScrubRecorder(MOK_SCRUB_GRANULATOR& stream, RunLoop& runLoop)
    : stream_(stream), runLoop_(runLoop) {}

ScrubRecorder::~ScrubRecorder() {
    endLink();
}

void ScrubRecorder::addTargets() {
    constexpr ControlEvents pressed = control_event::touchUpInside;
    StreamControls& c = controls();
    c.scrubRec.addTarget(this, "ui_scrubRec:", pressed, [this](Control& b) { ui_scrubRec(&b); });
    c.scrubPlay.addTarget(this, "ui_scrubPlay:", pressed, [this](Control& b) { ui_scrubPlay(&b); });
    c.scrubRewind.addTarget(this, "ui_resetScrubRecPhase:", pressed, [this](Control& b) {
        if (controls().syncSampler.isOn())
            resetScrubRecPhase();
        else
            ui_resetScrubRecPhase(&b);
    });
}

StreamControls& ScrubRecorder::controls() const {
    return stream_.controls;
}

void ScrubRecorder::beginLink(void (ScrubRecorder::*tick)()) {
    endLink();
    scrubRecordPlayTimer =
        runLoop_.addDisplayLink(kPointsPerSecond, [this, tick] { (this->*tick)(); });
}

void ScrubRecorder::endLink() {
    runLoop_.cancel(std::exchange(scrubRecordPlayTimer, 0));
}

void ScrubRecorder::ui_scrubRec(Control*) {
    Button& button = controls().scrubRec;
    shouldStartRecordScrub = false;
    if (button.tag == 1) {
        endLink();
        button.selected = false;
        showActive(button, false);
        controls().scrubMessage.hidden = true;
        controls().scrubMessage.setNeedsDisplay();
        return;
    }
    endPlaying();
    scrubRecIsStarted = false;
    beginLink(&ScrubRecorder::recordScrub);
    button.selected = true;
    showActive(button, true);
    showMessage(controls().scrubMessage, "Scrub to start recording");
}

void ScrubRecorder::handScrubs() {
    if (controls().scrubRec.tag == 1) shouldStartRecordScrub = true;
}

void ScrubRecorder::handEnds() {
    shouldStartRecordScrub = false;
}

void ScrubRecorder::recordScrub() {
    if (!shouldStartRecordScrub) return;
    if (std::exchange(one, false)) enableButtons();
    if (!std::exchange(scrubRecIsStarted, true)) {
        ndx = 0.0f;
        controls().scrubRec.selected = false;
        controls().scrubRec.setNeedsDisplay();
        showMessage(controls().scrubMessage, "Scrub recording...");
    }
    recLength = static_cast<std::int32_t>(std::min(ndx, kLastPoint));
    scrubBuffer[static_cast<std::size_t>(recLength)] =
        std::clamp(stream_.getTimePhasor(), 0.0f, 1.0f);
    showProgress(double{ndx}, double{kLastPoint});
    ndx += 1.0f;
    if (ndx <= kLastPoint) return;
    if (controls().scrubRec.tag == 1)
        ui_scrubRec(&controls().scrubRec);
    else
        ndx = 0.0f;
}

void ScrubRecorder::ui_scrubPlay(Control*) {
    Button& button = controls().scrubPlay;
    if (button.tag == 1 || startQueued_) return stopPlaying();
    if (!controls().syncSampler.isOn()) return ____playScrubRec();
    // Its ticks end here; a button that went on glowing would lie.
    if (controls().scrubRec.tag == 1) ui_scrubRec(&controls().scrubRec);
    shouldPlayOnTimeScrubRec = !shouldPlayOnTimeScrubRec;
    showArmed(button, shouldPlayOnTimeScrubRec);
}

void ScrubRecorder::endPlaying() {
    if (controls().scrubPlay.tag == 1 || startQueued_) stopPlaying();
}

bool ScrubRecorder::movesScan() const {
    return controls().scrubPlay.tag == 1 && recLength > 0;
}

void ScrubRecorder::stopPlaying() {
    endLink();
    startQueued_ = false;
    disarm();
    showActive(controls().scrubPlay, false);
}

void ScrubRecorder::disarm() {
    shouldPlayOnTimeScrubRec = false;
    showArmed(controls().scrubPlay, false);
}

void ScrubRecorder::syncStateTempoForte() {
    if (shouldPlayOnTimeScrubRec) ____playScrubRec();
}

void ScrubRecorder::____playScrubRec() {
    startQueued_ = true;
    stream_.onMain([this] {
        if (std::exchange(startQueued_, false)) startPlaying(); // nobody took it back
    });
}

void ScrubRecorder::startPlaying() {
    disarm();
    showActive(controls().scrubPlay, true);
    if (controls().scrubRec.tag == 1) ui_scrubRec(&controls().scrubRec);
    // A recording leaves it behind the take, where nothing, or an older take, would be heard.
    if (!(ndx <= static_cast<float>(recLength - 1))) ndx = 0.0f;
    if (std::exchange(recalled_, false)) placeScan();
    beginLink(&ScrubRecorder::playScrub);
}

void ScrubRecorder::startAnew(HostBars bars) {
    if (controls().scrubRec.tag == 1) return; // what it records goes on
    ui_resetScrubRecPhase();
    if (controls().scrubPlay.tag != 1) return;
    if (controls().syncSampler.isOn() && bars == HostBars::come) {
        stopPlaying();
        return ui_scrubPlay();
    }
    placeScan();
    beginLink(&ScrubRecorder::playScrub);
}

void ScrubRecorder::placeScan() {
    stream_.setScrubNormalizedValue(readInterp(ndx));
}

void ScrubRecorder::playScrub() {
    if (stream_.isScrubbing() || recLength < 1) return;
    placeScan();
    const bool synced = controls().syncSampler.isOn();
    const double tempo = std::max(stream_.currentClockBPM(), 0.0);
    const double step = synced ? tempo / kRecordedTempo : 1.0;
    ndx = static_cast<float>(double{ndx} + std::min(step, double{kPoints}));
    const auto last = static_cast<float>(recLength - 1);
    if (ndx > last) ndx = synced ? wrapped(ndx) : 0.0f;
    showProgress(double{ndx}, double{last});
}

/// So many points make a round, or a take would leave the beat. Between the last point and the
/// first one it waits at the first, below 0.
float ScrubRecorder::wrapped(float x) const {
    const auto length = static_cast<float>(recLength);
    const float rest = std::fmod(x, length);
    return rest > length - 1.0f ? rest - length : rest;
}

float ScrubRecorder::readInterp(float x) const {
    const float held = std::min(std::max(x, 0.0f), kLastPoint);
    const auto i = static_cast<std::size_t>(held);
    const float next = scrubBuffer[std::min(i + 1, kPoints - 1)];
    return scrubBuffer[i] + (held - static_cast<float>(i)) * (next - scrubBuffer[i]);
}

void ScrubRecorder::ui_resetScrubRecPhase(Control*) {
    ndx = 0.0f;
    showProgress(0.0, 1.0);
}

void ScrubRecorder::resetScrubRecPhase() {
    if (!controls().syncSampler.isOn()) return;
    if (controls().scrubPlay.tag == 1)
        ui_resetScrubRecPhase();
    else
        stream_.ui_rewind(&controls()._rewind);
}

void ScrubRecorder::resetScrubRecordedData() {
    stream_.onMain([this] {
        enableButtons();
        showProgress(0.0, 1.0);
    });
    if (willPlay()) stopPlaying();
    scrubBuffer.fill(0.0f);
    ndx = 0.0f;
    recalled_ = false;
    recLength = 0;
}

bool ScrubRecorder::setTake(std::span<const float> points) {
    const auto isPoint = [](float point) { return point >= 0.0f && point <= 1.0f; };
    if (points.empty() || points.size() > kPoints ||
        !std::all_of(points.begin(), points.end(), isPoint))
        return false;
    scrubBuffer.fill(0.0f);
    std::copy(points.begin(), points.end(), scrubBuffer.begin());
    tookPlace(points.size());
    return true;
}

/// A recording that went on would write over the new take.
void ScrubRecorder::tookPlace(std::size_t points) {
    if (controls().scrubRec.tag == 1) ui_scrubRec(&controls().scrubRec);
    one = false;
    recalled_ = false;
    recLength = static_cast<std::int32_t>(points);
    enableButtons();
    ui_resetScrubRecPhase();
}

bool ScrubRecorder::willPlay() const {
    return controls().scrubPlay.tag == 1 || startQueued_ || shouldPlayOnTimeScrubRec;
}

void ScrubRecorder::enableButtons() {
    for (Button* const button : {&controls().scrubPlay, &controls().scrubRewind}) {
        button->userInteractionEnabled = true;
        button->alpha = 1.0f;
        button->setNeedsDisplay();
    }
}

void ScrubRecorder::showProgress(double points, double of) {
    controls().scrubRecIndicator.setProgress(points / of);
}

} // namespace zephyra

#include "screens/model/top/music_line.h"

#include "platform/text/text_numbers.h"
#include "screens/model/help_texts.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace zephyra {

namespace {

constexpr double kLitShare = 0.25; // of a beat

void showBar(const MusicPosition& music, MusicShown& shown) {
    const double bar = music.quartersOfBar, beat = music.quartersOfBeat;
    if (!(bar > 0.0) || !(beat > 0.0) || !std::isfinite(music.beats)) return;
    const double number = std::floor(music.beats / bar);
    const double inBar = (music.beats - number * bar) / beat;
    const double count = std::max(1.0, std::round(bar / beat));
    shown.beat = static_cast<int>(std::min(inBar, count - 1.0));
    shown.beatCount = static_cast<int>(std::min(count, double{MusicShown::kMostDots}));
    shown.bar = formatFixed(number + 1.0, 0) + "." + std::to_string(shown.beat + 1);
    shown.hasBars = true;
}

} // namespace

bool isBeatLit(const MusicPosition& music, double ownTempo, double now) {
    const double beats = music.isTold ? music.beats : now * ownTempo / 60.0;
    return std::isfinite(beats) && beats - std::floor(beats) < kLitShare;
}

std::string MusicShown::help() const {
    return helpText(isHosts ? HelpId::hostTempo : HelpId::tempo, tempo);
}

MusicLine::MusicLine(ScreenContext& context) : context_(context) {
    context_.source.add(*this);
}

MusicLine::~MusicLine() {
    context_.source.remove(*this);
}

void MusicLine::tap() {
    if (shown_.isHosts) return;
    const ScreenEdit edit(context_, "Tempo");
    context_.source.asMain(
        [](AudioUnitViewController& view) { view.assignments.tempo.TapTimeSync(); });
}

void MusicLine::step(int quarters) {
    if (shown_.isHosts) return;
    const ScreenEdit edit(context_, "Tempo");
    context_.source.asMain([quarters](AudioUnitViewController& view) {
        MOK_TAP& tempo = view.assignments.tempo;
        for (int i = std::abs(quarters); i > 0; --i)
            quarters > 0 ? tempo.incrBPMFrac() : tempo.decrBPMFrac();
    });
}

void MusicLine::beginDrag() {
    if (shown_.isHosts) return;
    context_.source.asMain(
        [](AudioUnitViewController& view) { view.assignments.tempo.beginTempoDrag(); });
}

void MusicLine::drag(double unitsUp) {
    if (shown_.isHosts) return;
    const ScreenEdit edit(context_, "Tempo");
    context_.source.asMain(
        [unitsUp](AudioUnitViewController& view) { view.assignments.tempo.tempoDrag(unitsUp); });
}

void MusicLine::read(AudioUnitViewController& view, const FrameTime&) {
    const MusicPosition music = context_.source.plugin().music();
    MusicShown shown{
        .tempo = formatFixed(music.isTold ? music.tempo : view.assignments.currentTempo(), 2),
        .isHosts = music.isTold,
        .isMoving = music.isMoving};
    if (music.isTold) showBar(music, shown);
    shown_ = std::move(shown);
}

} // namespace zephyra

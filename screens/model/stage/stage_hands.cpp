#include "screens/model/stage/stage_hands.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace zephyra {

namespace {

constexpr const char* kScanName = "Scan position"; // of one that stands: it is an edit then

const char* nameOf(RegionEdge edge) {
    return edge == RegionEdge::start ? "Region start" : "Region end";
}

} // namespace

StageHands::~StageHands() {
    if (scrubs_) cancelled(scrubs_->id, 0.0);
    handleReleased(RegionEdge::start);
    handleReleased(RegionEdge::end);
}

void StageHands::pressed(TouchId id, double x, double y, double time, bool pans) {
    if (pans && !view_.isWhole()) {
        pans_ = {id, x, view_.first()};
        return;
    }
    if (!scrubs_) scrubs_ = {id, x, y};
    context_.source.asMain([&](AudioUnitViewController& view) {
        view._GRANULATOR_STREAM.scrubArea.touchesBegan(id, {view_.at(x), y}, time);
    });
}

void StageHands::dragged(TouchId id, double x, double y, double time) {
    if (pans_ && pans_->id == id) {
        view_.moveTo(pans_->first - (x - pans_->x) * view_.span());
        return;
    }
    if (scrubs_ && scrubs_->id == id) scrubs_ = {id, x, y};
    context_.source.asMain([&](AudioUnitViewController& view) {
        view._GRANULATOR_STREAM.scrubArea.touchesMoved(id, {view_.at(x), y}, time);
    });
}

void StageHands::released(TouchId id, double time) {
    if (pans_ && pans_->id == id) return pans_.reset();
    if (scrubs_ && scrubs_->id == id) scrubs_.reset();
    context_.source.asMain([&](AudioUnitViewController& view) {
        view._GRANULATOR_STREAM.scrubArea.touchesEnded(id, time);
    });
}

void StageHands::cancelled(TouchId id, double time) {
    if (pans_ && pans_->id == id) return pans_.reset();
    if (scrubs_ && scrubs_->id == id) scrubs_.reset();
    context_.source.asMain([&](AudioUnitViewController& view) {
        view._GRANULATOR_STREAM.scrubArea.touchesCancelled(id, time);
    });
}

void StageHands::wheel(double x, double notches, double soundSeconds) {
    if (std::isfinite(notches)) view_.zoom(x, std::pow(kWheelZoom, -notches), soundSeconds);
}

void StageHands::pinched(double x, double times, double soundSeconds) {
    if (std::isfinite(times)) view_.zoom(x, times, soundSeconds);
}

void StageHands::putScan(double position) {
    const ScreenEdit edit(context_, kScanName);
    returnScan(position);
}

void StageHands::returnScan(double position) {
    context_.source.asMain([position](AudioUnitViewController& view) {
        view._GRANULATOR_STREAM.setScrubNormalizedValue(static_cast<float>(position));
    });
}

void StageHands::moveScan(double steps) {
    const ScreenEdit edit(context_, kScanName);
    const double step = steps * kArrowStep * view_.span();
    context_.source.asMain([step](AudioUnitViewController& view) {
        MOK_SCRUB_GRANULATOR& stream = view._GRANULATOR_STREAM;
        stream.setScrubNormalizedValue(stream.getTimePhasor() + static_cast<float>(step));
    });
}

double StageHands::scan() {
    return context_.source.asMain([](AudioUnitViewController& view) {
        return double{view._GRANULATOR_STREAM.getTimePhasor()};
    });
}

double StageHands::edge(RegionEdge which) {
    return context_.source.asMain([which](AudioUnitViewController& view) {
        const MOK_SCRUB_GRANULATOR& stream = view._GRANULATOR_STREAM;
        return double{which == RegionEdge::start ? stream.regionStart() : stream.regionEnd()};
    });
}

void StageHands::moveEdge(RegionEdge which, double position) {
    if (!std::isfinite(position)) return;
    const auto at = static_cast<float>(std::clamp(position, 0.0, 1.0));
    context_.source.asMain([&](AudioUnitViewController& view) {
        MOK_SCRUB_GRANULATOR& stream = view._GRANULATOR_STREAM;
        const bool isStart = which == RegionEdge::start;
        stream.setRegion(isStart ? at : stream.regionStart(), isStart ? stream.regionEnd() : at);
    });
}

void StageHands::handlePressed(RegionEdge which, double x) {
    handleReleased(which);
    if (context_.beginEdit) context_.beginEdit(nameOf(which));
    grip(which) = view_.at(x) - edge(which);
}

void StageHands::handleDragged(RegionEdge which, double x) {
    if (const Grip& held = grip(which)) moveEdge(which, view_.at(x) - *held);
}

void StageHands::handleReleased(RegionEdge which) {
    if (!std::exchange(grip(which), std::nullopt)) return;
    if (context_.endEdit) context_.endEdit();
}

void StageHands::nudge(RegionEdge which, double steps) {
    setEdge(which, edge(which) + steps * kArrowStep * view_.span());
}

void StageHands::setEdge(RegionEdge which, double position) {
    const ScreenEdit edit(context_, nameOf(which));
    moveEdge(which, position);
}

} // namespace zephyra

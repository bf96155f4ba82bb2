#include "stream/stream_fade.h"

#include <utility>

namespace zephyra {

namespace {

constexpr double kFull = 0.999;   // from here on the fade in is over
constexpr double kSilent = 0.001; // below it the fade out is

/// The share of a fade of so many seconds that one tick covers.
double stepFor(double seconds) {
    return seconds > 0.0 ? StreamFade::kTick / seconds : 1.0;
}

} // namespace

StreamFade::~StreamFade() {
    loop_.cancel(pending_);
}

void StreamFade::beginIn(double seconds) {
    loop_.cancel(std::exchange(pending_, 0));
    _abortFadeOut = true;
    _abortFadeIn = false;
    _incrIn = stepFor(seconds);
}

void StreamFade::beginOut(double seconds) {
    loop_.cancel(std::exchange(pending_, 0));
    _abortFadeIn = true;
    _abortFadeOut = false;
    _incrOut = stepFor(seconds);
}

void StreamFade::startAnew() {
    loop_.cancel(std::exchange(pending_, 0));
    _fade = 0.0;
}

StreamFade::Outcome StreamFade::tickIn(const std::function<void()>& next) {
    if (_abortFadeIn) return Outcome::aborted;
    _fade += _incrIn;
    if (_fade > kFull) {
        _fade = 1.0;
        return Outcome::ended;
    }
    schedule(next);
    return Outcome::running;
}

StreamFade::Outcome StreamFade::tickOut(const std::function<void()>& next) {
    if (_abortFadeOut) return Outcome::aborted;
    _fade -= _incrOut;
    if (_fade < kSilent) {
        _fade = 0.0;
        return Outcome::ended;
    }
    schedule(next);
    return Outcome::running;
}

void StreamFade::schedule(const std::function<void()>& next) {
    pending_ = loop_.performAfter(kTick, next);
}

} // namespace zephyra

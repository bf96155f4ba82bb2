#include "screens/model/strip/scope_zoom.h"

namespace zephyra {

namespace {

constexpr float kFull = 0.95f, kSilence = 1e-4f;

} // namespace

bool ScopeZoom::advance(float peak, double seconds) {
    if (peak < kSilence) return false;
    const int before = factor_;
    while (factor_ > 1 && peak * static_cast<float>(factor_) > kFull) factor_ /= 2;
    const bool fits = factor_ < kMost && peak * 2.0f * static_cast<float>(factor_) < kFull;
    room_ = fits && factor_ == before ? room_ + seconds : 0.0;
    if (room_ >= kWait) {
        factor_ *= 2;
        room_ = 0.0;
    }
    return factor_ != before;
}

} // namespace zephyra

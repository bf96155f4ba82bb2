// ScopeZoom: how much a scope enlarges what is quiet.
#pragma once

namespace zephyra {

/// A power of 2 to kMost, so that a trace has a form at every level. It falls at once where the
/// trace would leave the scope, and rises once there was room for kWait. Message thread.
class ScopeZoom {
public:
    static constexpr int kMost = 16;
    static constexpr double kWait = 1.0; ///< seconds

    int factor() const noexcept { return factor_; }
    /// peak: the largest magnitude that is shown. Whether the factor changed. Silence keeps it.
    bool advance(float peak, double seconds);

private:
    int factor_ = 1;
    double room_ = 0.0; // seconds in which twice the factor would have fitted
};

} // namespace zephyra

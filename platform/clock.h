// Clock: the time of day as one instance sees it.
#pragma once

#include <cstdint>
#include <optional>

namespace zephyra {

/// Goes by the system's clock, unless it stands still so that a test or a render repeats. Seeds the
/// grain generator and dates presets. Plain data.
class Clock {
public:
    /// Whole seconds since 1970, modulo 2^32. Any thread but RENDER.
    std::uint32_t seconds() const noexcept;

    /// Stands still there from now on. OFF.
    void fix(std::uint32_t seconds) noexcept { fixed_ = seconds; }

private:
    std::optional<std::uint32_t> fixed_;
};

} // namespace zephyra

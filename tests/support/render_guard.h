// RenderGuard: counts what a thread may not do while it renders, in builds without a sanitizer.
#pragma once

#include <array>
#include <cstdint>
#include <string>

namespace zephyra {

/// What RENDER must not do.
enum class RenderOffence { Allocation, Free, Lock, Wait, SystemCall };
inline constexpr std::size_t kRenderOffences = 5;

/// While one stands, every offence of its own thread is counted; nothing is prevented. The C
/// library's functions are wrapped, so that third-party code counts too. Scopes may nest: the inner
/// one counts alone. Link the object library render_guard to use it.
class RenderGuard {
public:
    RenderGuard() noexcept;
    ~RenderGuard();
    RenderGuard(const RenderGuard&) = delete;
    RenderGuard& operator=(const RenderGuard&) = delete;

    /// Whether this build counts. Sanitizers wrap the same functions, so it does not with one.
    static bool isActive() noexcept;

    /// Offences of one kind so far.
    std::uint32_t count(RenderOffence offence) const noexcept;
    /// All offences so far.
    std::uint32_t total() const noexcept;
    /// "malloc", the function that offended first; empty when none did. Not itself counted.
    std::string firstOffender() const;

    /// What the wrappers call; does nothing outside a guard.
    static void note(RenderOffence offence, const char* function) noexcept;

private:
    std::array<std::uint32_t, kRenderOffences> counts_{};
    const char* first_ = nullptr;
    RenderGuard* outer_;
};

} // namespace zephyra

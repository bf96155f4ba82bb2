// StageHands: what mouse and fingers do on the stage and its ruler.
#pragma once

#include "controls/touch_listener.h"
#include "screens/model/screen_context.h"
#include "screens/model/stage/stage_view.h"

#include <array>
#include <cstddef>
#include <optional>

namespace zephyra {

enum class RegionEdge { start, end };

/// Fractions of the stage: x from its left, y from its top; a pointer that was pressed may leave
/// it. times are seconds on the window's clock. Message thread.
class StageHands {
public:
    static constexpr double kWheelZoom = 1.25;  ///< a notch
    static constexpr double kArrowStep = 0.005; ///< of what is shown, for a key
    static constexpr double kFineShare = 0.1;   ///< of a step, with Shift

    StageHands(ScreenContext& context, StageView& view) : context_(context), view_(view) {}
    /// Lets go of what is held.
    ~StageHands();
    StageHands(const StageHands&) = delete;
    StageHands& operator=(const StageHands&) = delete;

    /// Scrubs; with pans, and zoomed in, the view moves instead.
    void pressed(TouchId id, double x, double y, double time, bool pans);
    void dragged(TouchId id, double x, double y, double time);
    void released(TouchId id, double time);
    /// The system took the pointer away.
    void cancelled(TouchId id, double time);

    /// notches: above 0 shows less. soundSeconds: of the sound that is shown.
    void wheel(double x, double notches, double soundSeconds);
    /// times: of what is shown, below 1 shows less.
    void pinched(double x, double times, double soundSeconds);
    /// So many shares of what is shown to the right.
    void pan(double share) { view_.moveTo(view_.first() + share * view_.span()); }
    void resetZoom() { view_.reset(); }

    /// The scan to a fraction of the sound, held inside the region; or by a key's steps. Nothing
    /// happens while a finger holds it.
    void putScan(double position);
    void moveScan(double steps);
    /// To where it was before a scrub that turned out to be none; no edit.
    void returnScan(double position);
    /// Where it is.
    double scan();

    /// A handle of the region follows x until it is let go: one edit. Both may be held.
    void handlePressed(RegionEdge edge, double x);
    void handleDragged(RegionEdge edge, double x);
    void handleReleased(RegionEdge edge);
    /// By a key, so many steps; an edit of its own.
    void nudge(RegionEdge edge, double steps);
    /// To a fraction of the sound, held to 0..1; an edit of its own.
    void setEdge(RegionEdge edge, double position);

    bool isHeld(RegionEdge edge) const { return grip(edge).has_value(); }
    /// A pointer scrubs: its place on the stage.
    struct Finger {
        TouchId id;
        double x, y;
    };
    const std::optional<Finger>& scrubbing() const noexcept { return scrubs_; }

private:
    struct Pan {
        TouchId id;
        double x, first;
    };
    /// Of the pointer from the handle, fraction of the sound.
    using Grip = std::optional<double>;
    Grip& grip(RegionEdge edge) { return grips_[static_cast<std::size_t>(edge)]; }
    const Grip& grip(RegionEdge edge) const { return grips_[static_cast<std::size_t>(edge)]; }
    double edge(RegionEdge which);
    void moveEdge(RegionEdge which, double position);

    ScreenContext& context_;
    StageView& view_;
    std::optional<Finger> scrubs_;
    std::optional<Pan> pans_;
    std::array<Grip, 2> grips_;
};

} // namespace zephyra

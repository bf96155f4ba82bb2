// RenderMotion: puts LFOs, learned controllers and takes into a render's system, and watches them.
#pragma once

#include "main_view/audio_unit_view_controller.h"
#include "platform/instance.h"
#include "platform/text/result.h"
#include "rendering/render_plan.h"
#include "rendering/take_recorder.h"

#include <optional>
#include <span>
#include <string>
#include <vector>

namespace zephyra {

/// Order of calls: apply once all controls are set, start, then values and the rest as often as
/// wished. MAIN.
class RenderMotion {
public:
    /// Both must outlive this.
    RenderMotion(Instance& instance, AudioUnitViewController& controller);

    /// Assigns, binds and loads what the plan asks for, on top of what its state brought.
    Result<void> apply(const RenderPlan& plan);

    /// Every control that an LFO, a learned controller, a bend or the plan's automation moves, with
    /// its mover; what values() then tells of.
    std::vector<MovedControl> watch(const RenderPlan& plan);
    /// What LFOs move, three quarters up each one's way: an echo whose gain comes and goes fades
    /// about as one that stands there.
    std::vector<ControlSetting> sweptControls() const;
    MotionCounts counts(const RenderPlan& plan) const;
    /// The linear values of the watched controls, valid until the next call.
    std::span<const float> values();

    /// Plays the take, and records one where the plan says so.
    void start(const RenderPlan& plan);
    void stopRecording();
    /// Null where nothing is recorded.
    const TakeRecorder* recorded() const { return recorder_ ? &*recorder_ : nullptr; }

private:
    Control* controlOf(ControlId id) const;
    std::optional<ControlId> idOf(const Control* control) const;
    void clearScan(const RenderPlan& plan);
    Result<void> applyLfos(const RenderPlan& plan);
    bool bendsPitch(const RenderPlan& plan) const;
    void addMoved(const Control* control, const std::string& mover);

    Instance& instance_;
    AudioUnitViewController& controller_;
    std::vector<MovedControl> moved_;
    std::vector<float> values_;
    std::optional<TakeRecorder> recorder_;
};

} // namespace zephyra

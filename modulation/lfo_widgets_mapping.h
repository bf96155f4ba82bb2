// LFO_WIDGETS_MAPPING: the modulation matrix of the LFOs, which routes each to the control it
// moves.
#pragma once

#include "modulation/lfo_widget_wrapper.h"
#include "modulation/wrapper_list.h"
#include "platform/instance.h"
#include "platform/threads/realtime.h"
#include "platform/threads/run_loop.h"

#include <cstddef>

namespace zephyra {

/// Modulation runs on MAIN alone; RENDER only passes the table to the empty hook. Controls must
/// outlive it or be removed. MAIN.
class LFO_WIDGETS_MAPPING {
public:
    static constexpr double kTickRate = 32.0; ///< ticks per second

    /// Ticks from now on; instance must outlive this.
    explicit LFO_WIDGETS_MAPPING(Instance& instance);
    ~LFO_WIDGETS_MAPPING();
    LFO_WIDGETS_MAPPING(const LFO_WIDGETS_MAPPING&) = delete;
    LFO_WIDGETS_MAPPING& operator=(const LFO_WIDGETS_MAPPING&) = delete;

    /// A wrapper of the control that was there goes first. Knobs and scan targets get one, others
    /// nothing; null is logged.
    void addWidget(Control* control);
    void removeWidget(const Control* control);
    void removeAllWidgets();

    /// Null when the control has none.
    LfoWidgetWrapper* getWrapperID(const Control* control) const;
    /// Empty when the control has none.
    PropertyDictionary getWrapperInfo(const Control* control) const;
    /// Adds the control first when it has none; a control that cannot be moved is left alone.
    /// Answers with what could not be taken.
    StateFindings setWrapperInfo_fromDictionary(Control* control, const PropertyDictionary& state);

    /// One tick of every LFO, in the order of assignment, while enabled.
    void notifyClients();
    /// Every LFO begins again, and so does the wait for the next tick.
    void startAnew();
    /// While off no LFO advances.
    void setIsEnabled(bool on) noexcept { enabled_ = on; }
    bool getIsEnabled() const noexcept { return enabled_; }
    /// What linked LFOs follow from now on, and new ones begin with.
    void setTempo(double bpm);

    /// How many controls are modulated, and which, in the order of assignment.
    std::size_t count() const noexcept { return wrappers_.size(); }
    LfoWidgetWrapper& at(std::size_t index) const { return wrappers_.at(index); }

private:
    void beginTicks();

    Instance& instance_;
    RunLoop::Token timer_ = 0;
    bool enabled_ = true;
    double bpm_ = 120.0;
    WrapperList<LfoWidgetWrapper> wrappers_;
};

/// Called once per render cycle with the table (null is fine) and the cycle's frames; returns at
/// once and changes nothing. RENDER.
void lfotTickProcessing(LFO_WIDGETS_MAPPING* mapping, int frames) ZEPHYRA_NONBLOCKING;

} // namespace zephyra

// ScrubWidgets: the controls that fingers on one surface move besides what the surface itself does.
#pragma once

#include "controls/scrub_reference.h"
#include "controls/touch_listener.h"
#include "modulation/wrapper_list.h"
#include "platform/threads/run_loop.h"

#include <array>
#include <cstddef>
#include <optional>

namespace zephyra {

class ScrubWidgetWrapper;

/// A finger that begins moves nothing; from there on a movement over the surface's whole height
/// sweeps the range once, times the velocity. With gravity controls go on following until they are
/// where the finger points. Knobs, sliders, pads and keyboards can be moved; they must outlive it
/// or be removed. MAIN.
class ScrubWidgets final : public ScrubReference, public TouchListener {
public:
    /// runLoop must outlive this.
    explicit ScrubWidgets(RunLoop& runLoop);
    ~ScrubWidgets() override;

    void addWidget_forSecondFinger(Control* control, bool secondFinger) override;
    void removeWidget(const Control* control) override;
    void removeAllWidgets() override;
    WidgetWrapper* getWrapperID(const Control* control) override;
    PropertyDictionary getWrapperInfo(const Control* control) const override;
    StateFindings setWrapperInfo_fromDictionary(Control* control,
                                                const PropertyDictionary& state) override;
    bool followsSecondFinger(const Control* control) const override;

    /// Whether that finger is down, and what follows it is moved.
    bool isDown(Finger finger) const {
        return heights_[static_cast<std::size_t>(finger)].has_value();
    }

    void touchBegan(Finger finger, Point at, double time) override;
    void touchMoved(Finger finger, Point at, double time) override;
    void touchEnded(Finger finger, double time) override;

private:
    std::optional<double>& height(Finger finger) {
        return heights_[static_cast<std::size_t>(finger)];
    }
    template <typename Visit>
    void forEachOf(Finger finger, const Visit& visit);
    void tick();

    RunLoop& runLoop_;
    RunLoop::Token timer_ = 0;                     // runs while something still follows
    std::array<std::optional<double>, 2> heights_; // where each finger that touches was last
    WrapperList<ScrubWidgetWrapper> wrappers_;
};

} // namespace zephyra

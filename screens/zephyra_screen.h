// ZephyraScreen: the window's content, the same in every plug-in format and in the program.
#pragma once

#include "screens/desktop/window_blitter.h"
#include "screens/draw/help_tip.h"
#include "screens/foot/foot_area.h"
#include "screens/meter/meter_area.h"
#include "screens/model/path/cloud_voices.h"
#include "screens/path/path_area.h"
#include "screens/stage/stage_area.h"
#include "screens/strip/strip_area.h"
#include "screens/top/top_area.h"
#include "screens/window_services.h"
#include "screens/window_touches.h"

#include <array>
#include <cstdint>
#include <memory>
#include <optional>

namespace zephyra {

/// Fills what it is put into; areas tile it. Message thread; the instance outlives it.
class ZephyraScreen final : public juce::Component, public juce::FileDragAndDropTarget {
public:
    explicit ZephyraScreen(PluginInstance& plugin, const ScreenSettings& settings = {});
    ~ZephyraScreen() override;

    /// A frame of the display: reads the instance and repaints what changed. now: seconds on any
    /// clock that goes forwards. On a display, it is called by itself.
    void frame(double now);

    const ScreenSettings& settings() const noexcept { return context_.settings; }
    ScreenContext& context() noexcept { return context_; }

    /// For sources of touches.
    WindowTouches& touches() noexcept { return touches_; }

    void resized() override;
    void parentHierarchyChanged() override;
    void paint(juce::Graphics& graphics) override;
    void paintOverChildren(juce::Graphics& graphics) override;
    bool keyPressed(const juce::KeyPress& key) override;
    void mouseDown(const juce::MouseEvent& event) override;
    void focusGained(FocusChangeType) override { services_.takeKeyboard(); }
    bool isInterestedInFileDrag(const juce::StringArray&) override { return true; }
    void filesDropped(const juce::StringArray& files, int, int) override { services_.load(files); }

    /// How often anything of it was painted.
    std::uint64_t paints() const noexcept { return paints_; }

private:
    /// Once what came in is to be read.
    struct Flush final : juce::AsyncUpdater {
        ~Flush() override { cancelPendingUpdate(); }
        void handleAsyncUpdate() override;
    };
    void layOutAnew();
    void paintNow();

    ScreenSource source_;
    ScreenContext context_;
    WindowServices services_{*this, context_};
    ScreenLayout layout_;
    TopArea top_{context_};
    StageArea stage_{context_};
    MeterArea meter_{context_};
    CloudVoices voices_{stage_.grains()};
    PathArea path_{context_};
    StripArea strip_{context_};
    FootArea foot_{context_};
    std::array<ScreenArea*, 6> areas_{&top_, &stage_, &meter_, &path_, &strip_, &foot_};
    HelpTip tip_{*this};
    FrameTime time_;
    std::optional<double> shownAt_; // once there was a frame
    WindowTouches touches_{*this};
    WindowBlitter blitter_;
    std::uint64_t paints_ = 0;
    void* window_ = nullptr; // that it was seen in last
    double found_ = 0.0;     // when it was looked for under the pointer
    Flush flush_;
    std::unique_ptr<juce::VBlankAttachment> display_;
};

} // namespace zephyra

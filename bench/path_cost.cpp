// What a picture of the path costs, at rest and while an LFO moves every knob: each frame's
// reading, and the painting of what changed.
#include "bench/thread_time.h"
#include "screens/path/path_area.h"

#include <cstdio>
#include <tuple>

namespace zephyra {
namespace {

constexpr double kFrame = 1.0 / 60.0;
constexpr int kFrames = 600;

/// Gathers what an area wants to have painted, as a window would.
class Wanted final : public juce::CachedComponentImage {
public:
    explicit Wanted(juce::RectangleList<int>& list) : list_(list) {}
    void paint(juce::Graphics&) override {}
    bool invalidateAll() override { return true; }
    bool invalidate(const juce::Rectangle<int>& area) override { return list_.add(area), true; }
    void releaseResources() override {}

private:
    juce::RectangleList<int>& list_;
};

void assignAll(AudioUnitViewController& view) {
    for (const PathCell& cell : pathCells())
        if (Control* const control = view.control(cell.id))
            view.assignments.assign(*control, AssignmentType::lfo);
}

void measure(int width, int height, bool moving) {
    PluginInstance plugin(PluginKind::instrument);
    ScreenSource source(plugin);
    ScreenContext context{.source = source};
    PathArea area(context);
    area.layOut(layOut(width, height, 1.0));
    juce::RectangleList<int> wanted;
    area.setCachedComponentImage(new Wanted(wanted));
    area.setVisible(true);
    juce::Image target(juce::Image::RGB, area.getWidth(), area.getHeight(), true,
                       juce::SoftwareImageType());
    if (moving) source.asMain(assignAll);
    double spent = 0.0;
    int paints = 0;
    for (int i = 0; i < kFrames; ++i) {
        const FrameTime time{.now = i * kFrame, .elapsed = kFrame};
        source.asMain([&](AudioUnitViewController& view) {
            if (moving && i % 2 == 0) view.assignments.getLfoWidgetsMapping()->notifyClients();
        });
        wanted.clear();
        const double begin = threadNanoseconds();
        source.readFrame(time);
        area.frame(time);
        if (!wanted.isEmpty()) {
            juce::Graphics graphics(target);
            graphics.reduceClipRegion(wanted);
            area.paintEntireComponent(graphics, true);
            ++paints;
        }
        spent += threadNanoseconds() - begin;
    }
    area.setCachedComponentImage(nullptr);
    const double share = spent * 1e-9 / (kFrames * kFrame);
    std::printf("%4d x %4d, %s: %6.1f us a frame, %.2f %% of a core, %d of %d frames painted\n",
                width, height, moving ? "every knob moved" : "at rest", spent / kFrames / 1000.0,
                100.0 * share, paints, kFrames);
}

} // namespace
} // namespace zephyra

int main() {
    const juce::ScopedJuceInitialiser_GUI gui;
    for (const auto& [width, height] :
         {std::pair{800, 520}, {1100, 700}, {1800, 1100}, {3840, 2160}})
        for (const bool moving : {false, true}) zephyra::measure(width, height, moving);
}

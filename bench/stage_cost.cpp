// What a picture of the stage costs: each frame's work and what it paints of itself, against one
// plain fill of the same size.
#include "bench/median.h"
#include "bench/thread_time.h"
#include "screens/stage/stage_area.h"

#include <cstdio>
#include <cstdlib>
#include <vector>

namespace zephyra {
namespace {

constexpr double kRate = 48000.0, kFrame = 1.0 / 60.0;
constexpr std::uint32_t kBlock = 480;

/// Gathers what an area wants to have painted, as a window would.
class Wanted final : public juce::CachedComponentImage {
public:
    explicit Wanted(juce::RectangleList<int>& list) : list_(list) {}
    void paint(juce::Graphics&) override {}
    bool invalidateAll() override { return true; }
    bool invalidate(const juce::Rectangle<int>& area) override {
        list_.add(area);
        return true;
    }
    void releaseResources() override {}

private:
    juce::RectangleList<int>& list_;
};

struct Size {
    const char* name;
    int width, height;
};

class Stage {
public:
    Stage(const Size& size, PluginKind kind)
        : layout_(layOut(size.width, size.height, 1.0)), plugin_(kind) {
        plugin_.prepare({.sampleRate = kRate, .mostFrames = kBlock});
        plugin_.setParameter(static_cast<AUParameterAddress>(ControlId::playStop), 1.0f);
        area_.layOut(layout_);
        area_.setVisible(true);
        area_.setCachedComponentImage(new Wanted(wanted_));
        target_ = juce::Image(juce::Image::ARGB, area_.getWidth(), area_.getHeight(), true,
                              juce::SoftwareImageType());
        source_.asMain([](AudioUnitViewController& view) {
            MOK_SCRUB_GRANULATOR& stream = view._GRANULATOR_STREAM;
            stream.setDisplayed(ControlId::density, 40.0f);
            stream.setDisplayed(ControlId::length, 620.0f);
            stream.setDisplayed(ControlId::rndPitch, 22.0f);
            stream.setDisplayed(ControlId::jittering, 1000.0f);
            stream.setDisplayed(ControlId::width, 0.9f);
        });
    }
    ~Stage() { area_.setCachedComponentImage(nullptr); }

    void render() {
        PluginBlock block;
        block.input[0] = block.input[1] = input_.data();
        block.output[0] = left_.data();
        block.output[1] = right_.data();
        for (block.frames = 400; rendered_ < (now_ + kFrame) * kRate; rendered_ += block.frames)
            plugin_.renderOffline(block);
        now_ += kFrame;
    }

    /// Nanoseconds of one frame, and how many pixels it painted.
    double frame(long& pixels) {
        wanted_.clear();
        const double begin = threadNanoseconds();
        const FrameTime time{.now = now_, .elapsed = kFrame};
        source_.readFrame(time);
        area_.frame(time);
        if (!wanted_.isEmpty()) {
            juce::Graphics graphics(target_);
            graphics.reduceClipRegion(wanted_);
            area_.paintEntireComponent(graphics, true);
        }
        const double spent = threadNanoseconds() - begin;
        for (const auto& box : wanted_)
            pixels += static_cast<long>(box.getWidth()) * box.getHeight();
        rectangles_ += wanted_.getNumRectangles();
        return spent;
    }
    double fill() {
        const double begin = threadNanoseconds();
        juce::Graphics(target_).fillAll(juce::Colours::black);
        return threadNanoseconds() - begin;
    }
    std::size_t grains() {
        return source_.asMain([](AudioUnitViewController& view) {
            return static_cast<std::size_t>(view._GRANULATOR_STREAM.engine().soundingGrains());
        });
    }
    long area() const { return static_cast<long>(area_.getWidth()) * area_.getHeight(); }
    int rectangles() const { return rectangles_; }
    ScreenSource& source() { return source_; }

private:
    ScreenLayout layout_;
    PluginInstance plugin_;
    ScreenSource source_{plugin_};
    ScreenContext context_{.source = source_};
    juce::RectangleList<int> wanted_;
    StageArea area_{context_};
    juce::Image target_;
    std::vector<float> left_ = std::vector<float>(kBlock), right_ = left_;
    std::vector<float> input_ = std::vector<float>(kBlock, 0.25f);
    double now_ = 0.0;
    double rendered_ = 0.0;
    int rectangles_ = 0;
};

void measure(const Size& size, PluginKind kind) {
    Stage stage(size, kind);
    for (int i = 0; i < 240; ++i) {
        long ignored = 0;
        stage.render();
        stage.frame(ignored);
    }
    constexpr int frames = 300;
    std::vector<double> spent, filled;
    long pixels = 0, grains = 0;
    const int before = stage.rectangles();
    for (int i = 0; i < frames; ++i) {
        stage.render();
        spent.push_back(stage.frame(pixels));
        filled.push_back(stage.fill());
        grains += static_cast<long>(stage.grains());
    }
    std::printf(
        "%-10s %s: %4.1f grains, %4.0f us a frame (%4.1f %% of a core at 60 Hz), %4.2f fills, "
        "%4.1f rectangles of %4.1f %% of the stage\n",
        size.name, kind == PluginKind::effect ? "live" : "file",
        static_cast<double>(grains) / frames, median(spent) * 1e-3, median(spent) * 6e-6,
        medianRatio(spent, filled), static_cast<double>(stage.rectangles() - before) / frames,
        100.0 * static_cast<double>(pixels) / frames / static_cast<double>(stage.area()));
}

} // namespace
} // namespace zephyra

int main() {
    const juce::ScopedJuceInitialiser_GUI gui;
    for (const zephyra::Size& size :
         {zephyra::Size{"1100x700", 1100, 700}, zephyra::Size{"1800x1100", 1800, 1100},
          zephyra::Size{"3840x2160", 3840, 2160}})
        for (const auto kind : {zephyra::PluginKind::instrument, zephyra::PluginKind::effect})
            zephyra::measure(size, kind);
}

// The stage as it is painted: what moves, what stands still, and what stands over it.
#include "screens/desktop/window_blitter.h"
#include "screens/draw/screen_button.h"
#include "screens/stage/stage_area.h"
#include "tests/screens/no_display.h"
#include "tests/screens/read_frame.h"
#include "tests/support/hosted_plugin.h"

#include <gtest/gtest.h>

namespace juce {
bool dispatchNextMessageOnSystemQueue(bool returnIfNoPendingMessages);
}

namespace zephyra {
namespace {

/// What a component wants to have painted, as its window hears it.
struct Wanted {
    juce::RectangleList<int> boxes; ///< since they were taken last
    int count = 0;
};

class Listening final : public juce::CachedComponentImage {
public:
    explicit Listening(Wanted& wanted) : wanted_(wanted) {}
    void paint(juce::Graphics&) override {}
    bool invalidateAll() override { return invalidate({0, 0, 10000, 10000}); }
    bool invalidate(const juce::Rectangle<int>& box) override {
        wanted_.boxes.add(box);
        ++wanted_.count;
        return true;
    }
    void releaseResources() override {}

private:
    Wanted& wanted_;
};

/// Letters that are cut by a clip may differ in a colour's last bit.
bool isOther(const juce::Colour& a, const juce::Colour& b) {
    return std::abs(a.getRed() - b.getRed()) > 2 || std::abs(a.getGreen() - b.getGreen()) > 2 ||
           std::abs(a.getBlue() - b.getBlue()) > 2;
}

struct PaintedStage : testing::Test {
    explicit PaintedStage(PluginKind kind = PluginKind::instrument) : plugin(kind) {
        area.setVisible(true);
        area.layOut(layout);
        frames(3);
        area.setCachedComponentImage(new Listening(wanted)); // owned by the area
    }

    /// So many frames, and what they wanted to be painted.
    int frames(int count, bool renders = true) {
        const int before = wanted.count;
        for (int i = 0; i < count; ++i) {
            if (renders) plugin.render(i % 3 == 0 ? 1 : 2);
            time.elapsed = 1.0 / 60.0;
            time.now += time.elapsed;
            readFrameOf(source, time);
            area.frame(time);
            area.blit(none);
        }
        return wanted.count - before;
    }
    void play() {
        plugin.set(ControlId::playStop, 1.0f);
        frames(30);
    }
    juce::Image picture() {
        juce::Image image(juce::Image::ARGB, area.getWidth(), area.getHeight(), true,
                          juce::SoftwareImageType());
        juce::Graphics graphics(image);
        area.paintEntireComponent(graphics, true);
        return image;
    }
    /// Paints over image what was wanted since, as a window does.
    void paintWanted(juce::Image& image) {
        juce::Graphics graphics(image);
        if (graphics.reduceClipRegion(std::exchange(wanted.boxes, {})))
            area.paintEntireComponent(graphics, true);
    }
    /// Pixels of a column that are nearly of this colour.
    int count(int x, Color colour) {
        const juce::Image image = picture();
        const juce::Colour wantedColour = brush::colour(colour);
        int found = 0;
        for (int y = 0; y < layout.stage.height; ++y) {
            const juce::Colour at = image.getPixelAt(x, y);
            found += std::abs(at.getRed() - wantedColour.getRed()) < 12 &&
                     std::abs(at.getGreen() - wantedColour.getGreen()) < 12 &&
                     std::abs(at.getBlue() - wantedColour.getBlue()) < 12;
        }
        return found;
    }
    int scanColumn() { return static_cast<int>(area.scene().x(area.scene().contents.scan)); }

    juce::ScopedJuceInitialiser_GUI gui;
    HostedPlugin plugin;
    ScreenSource source{plugin};
    ScreenContext context{.source = source};
    ScreenLayout layout = layOut(1100, 700, 1.0);
    Wanted wanted;
    StageArea area{context};
    WindowBlitter none; // JUCE is to paint all of it
    FrameTime time;
};

struct LiveStage : PaintedStage {
    LiveStage() : PaintedStage(PluginKind::effect) {}
};

TEST_F(PaintedStage, PaintsNothingWhereNothingMoves) {
    EXPECT_EQ(frames(60), 0);
    play();
    EXPECT_GE(frames(30), 30);
    EXPECT_GT(count(scanColumn(), palette::kAccent), layout.stage.height / 2);
    plugin.set(ControlId::playStop, 0.0f);
    frames(240); // the fade, and what ended
    EXPECT_EQ(frames(60), 0);
    EXPECT_EQ(frames(60, false), 0);
}

TEST_F(PaintedStage, AScanIsRedWhileItMovesOrIsAboutTo) {
    const auto expectRed = [this](bool isRed) {
        frames(10);
        const int red = count(scanColumn(), palette::kAccent);
        const int white = count(scanColumn(), palette::kBright);
        EXPECT_EQ(std::min(red, white), 0);
        EXPECT_GT(isRed ? red : white, 20); // at the start, most of it is behind the rail
    };
    play();
    expectRed(true);
    plugin.set(ControlId::freeze, 1.0f);
    expectRed(false);
    plugin.set(ControlId::freeze, 0.0f);
    plugin.set(ControlId::playStop, 0.0f);
    frames(240); // the fade
    expectRed(false);
    plugin.sync(true);
    plugin.transport = {.tempo = 120.0, .numerator = 4.0, .beats = 1.0, .moving = true};
    plugin.set(ControlId::playStop, 1.0f);
    expectRed(true);
    EXPECT_FALSE(area.scene().contents.isPlaying); // it waits for the bar
}

TEST_F(PaintedStage, ReducedMotionStopsWhatMovesForDecoration) {
    play();
    const StageScene& scene = area.scene();
    EXPECT_GT(scene.trail.size(), 0u);
    plugin.set(ControlId::freeze, 1.0f);
    frames(160);
    EXPECT_EQ(scene.trail.size(), 0u);
    area.keyPressed(juce::KeyPress(juce::KeyPress::rightKey)); // a hand leaves no trail
    frames(2);
    EXPECT_EQ(scene.trail.size(), 0u);
    plugin.set(ControlId::freeze, 0.0f);
    frames(30);
    context.settings.reducedMotion = true;
    source.asMain([this](AudioUnitViewController&) {
        plugin.system().stream().setDisplayed(ControlId::pitch, 23.0f);
        plugin.system().stream().setDisplayed(ControlId::rndPitch, 0.0f);
    });
    area.hands().pressed(1, 0.5, 0.5, 1.0, false);
    frames(12);
    EXPECT_EQ(scene.trail.size(), 0u);
    EXPECT_TRUE(area.grains().ended().empty());
    EXPECT_EQ(scene.axis.range(), 24.0); // with no glide
    ASSERT_TRUE(scene.hold.shown());
    EXPECT_EQ(scene.hold.shown()->growth, 1.0);
}

TEST_F(LiveStage, ShowsAllOfANewSoundAndOfANewSource) {
    for (const char* const file : {"Blackbird.mp3", "Zephyra_Sample08.mp3", ""}) {
        const bool live = !*file;
        area.keyPressed(juce::KeyPress(juce::KeyPress::upKey));
        frames(1);
        EXPECT_FALSE(area.scene().view.isWhole());
        plugin.set(ControlId::live, live ? 1.0f : 0.0f);
        if (!live) plugin.loadSample(fs::path(ZEPHYRA_SOURCE_DIR) / "resources" / file);
        plugin.system().instance.runLoop.finishWork();
        frames(5);
        EXPECT_EQ(area.scene().contents.isLive, live);
        EXPECT_TRUE(area.scene().view.isWhole()) << file;
    }
}

TEST_F(PaintedStage, PaintsWhatMovedAsItPaintsAll) {
    source.asMain([this](AudioUnitViewController&) { // the flag meets every label of the ruler
        plugin.system().stream().setDisplayed(ControlId::scanning, 4.0f);
    });
    play();
    juce::Image screen = picture();
    for (int i = 0; i < 25; ++i) {
        for (int k = 0; k < 7; ++k) {
            frames(1);
            paintWanted(screen);
        }
        area.layOut(layout); // all is drawn anew
        time.elapsed = 0.0;
        area.frame(time);
        wanted.boxes.clear();
        const juce::Image all = picture();
        int differ = 0;
        for (int y = 0; y < all.getHeight(); ++y)
            for (int x = 0; x < all.getWidth(); ++x)
                differ += isOther(screen.getPixelAt(x, y), all.getPixelAt(x, y));
        EXPECT_EQ(differ, 0) << i;
        screen = all;
    }
}

TEST_F(PaintedStage, SaysWhatIsMissingAndOffersToLocateIt) {
    int located = 0;
    context.locateSample = [&] { ++located; };
    source.asMain([](AudioUnitViewController& view) {
        SampleReference lost;
        lost.path = "/nowhere/Lost Bells.wav";
        view.sampleLoader.loadReference(lost, SoundUse::play);
    });
    frames(5);
    juce::Component* notice = nullptr;
    for (juce::Component* const child : area.getChildren())
        if (child->getTitle() == "Missing sound" && child->isVisible()) notice = child;
    ASSERT_NE(notice, nullptr);
    EXPECT_EQ(notice->getHelpText(), "Lost Bells.wav is missing");
    EXPECT_TRUE(area.getLocalBounds().contains(notice->getBounds()));
    auto* const button = dynamic_cast<ScreenButton*>(notice->getChildComponent(0));
    ASSERT_NE(button, nullptr);
    EXPECT_TRUE(notice->getLocalBounds().contains(button->getBounds()));
    button->press();
    while (juce::dispatchNextMessageOnSystemQueue(true)) {
    }
    EXPECT_EQ(located, 1);
}

TEST_F(LiveStage, ShowsTheEdgeThatIsWritten) {
    play();
    ASSERT_TRUE(area.scene().contents.isWriting);
    EXPECT_GT(count(layout.stage.width - 2, palette::kBright), layout.stage.height / 2);
    EXPECT_GE(frames(20), 20); // it scrolls
    const juce::Image image = picture();
    const int middle = layout.stage.height / 2 - 20;
    EXPECT_NE(image.getPixelAt(layout.stage.width - 12, middle), image.getPixelAt(20, middle));
}

} // namespace
} // namespace zephyra

// Boxes that go to the display past JUCE: what then stands in the window, and when they may not.
#include "tests/screens/desktop/on_a_display.h" // before X's macros

#include "screens/desktop/window_blitter.h"
#include "screens/desktop/x11_display.h"
#include "screens/draw/brush.h"
#include "screens/zephyra_screen.h"
#include "tests/support/hosted_plugin.h"

#include <optional>

namespace juce {
bool dispatchNextMessageOnSystemQueue(bool returnIfNoPendingMessages);
}

namespace zephyra {
namespace {

struct ShownWindow : OnADisplay {
    static void handleMessages(int milliseconds) {
        for (int i = 0; i < milliseconds; i += 2, juce::Thread::sleep(2)) {
            if (x11::hasUnread()) x11::readEvents();
            while (juce::dispatchNextMessageOnSystemQueue(true)) {
            }
        }
    }
    /// What the display shows of it.
    juce::Image shown(const juce::Component& window) const {
        ::XSync(juceDisplay(), False);
        const int width = window.getWidth(), height = window.getHeight();
        juce::Image image(juce::Image::RGB, width, height, true, juce::SoftwareImageType());
        ::XImage* const of = ::XGetImage(host, reinterpret_cast<::Window>(window.getWindowHandle()),
                                         0, 0, static_cast<unsigned>(width),
                                         static_cast<unsigned>(height), AllPlanes, ZPixmap);
        for (int y = 0; of && y < height; ++y)
            for (int x = 0; x < width; ++x)
                image.setPixelAt(
                    x, y,
                    juce::Colour(static_cast<juce::uint32>(XGetPixel(of, x, y)) | 0xff000000));
        if (of) XDestroyImage(of);
        return image;
    }
};

struct Plain : juce::Component {
    explicit Plain(juce::Colour colour) : is(colour) { setOpaque(true); }
    void paint(juce::Graphics& graphics) override { graphics.fillAll(is); }
    juce::Colour is;
};

struct BlittedWindow : ShownWindow {
    void SetUp() override {
        ShownWindow::SetUp();
        if (IsSkipped()) return;
        window.emplace(juce::Colours::black);
        window->setBounds(0, 0, 200, 150);
        for (Plain* const one : {&area, &inside, &above}) {
            one->setVisible(true);
            (one == &inside ? static_cast<juce::Component&>(area) : *window).addChildComponent(one);
        }
        area.setBounds(20, 10, 150, 120);
        inside.setBounds(10, 10, 30, 30);
        above.setBounds(120, 80, 60, 60);
        window->addToDesktop(0);
        window->setVisible(true);
        ASSERT_TRUE(comesTrue([this] {
            handleMessages(2);
            return shown(*window).getPixelAt(21, 11) == area.is;
        }));
        handleMessages(50);
    }
    void TearDown() override {
        window.reset();
        ShownWindow::TearDown();
    }
    bool begins() {
        blitter.begin(*window);
        return blitter.enter(area);
    }
    void fill(const Box& box, juce::Colour colour) {
        const auto rows = blitter.room(box);
        ASSERT_TRUE(rows);
        for (int y = box.y; y < box.bottom(); ++y)
            for (int x = box.x; x < box.right(); ++x) rows->at(x, y) = colour.getPixelARGB();
    }

    std::optional<Plain> window;
    Plain area{juce::Colours::darkgreen}, inside{juce::Colours::blue}, above{juce::Colours::red};
    WindowBlitter blitter;
};

TEST_F(BlittedWindow, ShowsEachBoxWhereItsComponentStands) {
    ASSERT_TRUE(begins());
    fill({100, 0, 7, 5}, juce::Colours::white);
    fill({60, 40, 33, 60}, juce::Colours::yellow);
    ASSERT_TRUE(blitter.send());
    EXPECT_FALSE(blitter.send());
    handleMessages(50);
    const juce::Image image = shown(*window);
    const struct {
        int x, y;
        juce::Colour is;
    } rows[] = {{120, 10, juce::Colours::white},      {126, 14, juce::Colours::white},
                {127, 14, juce::Colours::darkgreen},  {126, 15, juce::Colours::darkgreen},
                {80, 50, juce::Colours::yellow},      {112, 109, juce::Colours::yellow},
                {113, 109, juce::Colours::darkgreen}, {35, 25, juce::Colours::blue}};
    for (const auto& [x, y, is] : rows) EXPECT_EQ(image.getPixelAt(x, y), is) << x << ' ' << y;
}

TEST_F(BlittedWindow, LeavesToJuceWhatItMustNotDraw) {
    const struct {
        Box box;
        bool isFree;
    } rows[] = {{{40, 10, 20, 20}, true},  {{39, 10, 20, 20}, false}, // a child
                {{60, 60, 40, 40}, true},  {{60, 60, 41, 11}, false}, // what stands before it
                {{0, 100, 10, 10}, false}, {{50, 50, 0, 10}, false}};
    for (const auto& [box, isFree] : rows) {
        ASSERT_TRUE(begins());
        blitter.keepOff({0, 100, 5, 5});
        EXPECT_EQ(blitter.room(box).has_value(), isFree) << box.x << ' ' << box.y;
    }
    above.setVisible(false);
    ASSERT_TRUE(begins());
    EXPECT_TRUE(blitter.room({60, 60, 60, 60}));
    area.setTransform(juce::AffineTransform::scale(1.5f));
    EXPECT_FALSE(begins());
    area.setTransform({});
    area.setVisible(false);
    EXPECT_FALSE(begins());
    area.setVisible(true);
    ASSERT_TRUE(begins());
    fill({60, 60, 10, 10}, juce::Colours::white);
    ::XGrabServer(host);
    ::XSync(host, False); // from now on it hears nobody else
    EXPECT_TRUE(blitter.send());
    EXPECT_FALSE(blitter.enter(area)); // X may read it still
    EXPECT_FALSE(begins());
    ::XUngrabServer(host);
    ::XSync(host, False);
    handleMessages(50);
    EXPECT_TRUE(begins());
    area.setSize(1200, 1100);
    window->setSize(1400, 1200);
    ASSERT_TRUE(begins());
    EXPECT_TRUE(blitter.room({50, 50, 1150, 1050}));
    window->setSize(200, 150);
    window->removeFromDesktop();
    EXPECT_FALSE(begins());
    window->addToDesktop(0);
    handleMessages(100);
    ASSERT_TRUE(begins());
    fill({60, 60, 10, 10}, juce::Colours::white);
    EXPECT_TRUE(blitter.send());
    EXPECT_EQ(shown(*window).getPixelAt(85, 75), juce::Colours::white);
    juce::Component alone;
    alone.setVisible(true);
    EXPECT_FALSE(blitter.enter(alone));
}

struct ShownScreen : ShownWindow {
    static StageArea& stageOf(ZephyraScreen& screen) {
        for (juce::Component* const child : screen.getChildren())
            if (auto* const stage = dynamic_cast<StageArea*>(child)) return *stage;
        std::abort();
    }
    static bool isSame(const juce::Image& a, const juce::Image& b) {
        for (int i = 0; i < a.getWidth() * a.getHeight(); ++i)
            if (a.getPixelAt(i % a.getWidth(), i / a.getWidth()) !=
                b.getPixelAt(i % a.getWidth(), i / a.getWidth()))
                return false;
        return true;
    }
    /// Where the display shows other than JUCE would have painted; letters that are cut by a clip
    /// may differ in a colour's last bits.
    juce::Rectangle<int> others(ZephyraScreen& screen) const {
        const juce::Image is = shown(screen);
        const juce::Image wanted = screen.createComponentSnapshot(screen.getLocalBounds());
        juce::Rectangle<int> where;
        const ScreenLayout layout = layOut(screen.getWidth(), screen.getHeight(), 1.0);
        for (const Box& box : {layout.stage, layout.spectrum, layout.scope})
            for (int i = 0; i < box.width * box.height; ++i) {
                const int x = box.x + i % box.width, y = box.y + i / box.width;
                const juce::Colour a = is.getPixelAt(x, y), b = wanted.getPixelAt(x, y);
                if (std::abs(a.getRed() - b.getRed()) <= 3 &&
                    std::abs(a.getGreen() - b.getGreen()) <= 3 &&
                    std::abs(a.getBlue() - b.getBlue()) <= 3)
                    continue;
                where = where.getUnion({x, y, 1, 1});
            }
        return where;
    }
};

TEST_F(ShownScreen, ShowsWhatJuceWouldHavePainted) {
    for (const PluginKind kind : {PluginKind::instrument, PluginKind::effect}) {
        HostedPlugin plugin(kind);
        ZephyraScreen screen(plugin);
        screen.addToDesktop(0);
        screen.setVisible(true);
        const auto render = [&](int blocks) {
            for (int i = 0; i < blocks; ++i) {
                plugin.render(1);
                handleMessages(10);
            }
        };
        const auto play = [&](const char* of) {
            render(60);
            // The last box may be on its way; one that was forgotten stays.
            EXPECT_TRUE(comesTrue([&] { return handleMessages(50), others(screen).isEmpty(); }, 5))
                << of << ": " << others(screen).toString();
        };
        plugin.set(ControlId::length, 0.6f);
        plugin.set(ControlId::density, 0.7f);
        plugin.set(ControlId::playStop, 1.0f);
        const auto level = brush::rectangle(layOut(1100, 700, 1.0).meter);
        const juce::Image silent = shown(screen).getClippedImage(level);
        render(60);
        EXPECT_FALSE(isSame(silent, shown(screen).getClippedImage(level))); // JUCE has its turn too
        play("grains");
        plugin.set(ControlId::rndPitch, 0.5f);
        plugin.set(ControlId::jittering, 0.5f);
        play("scattered grains");
        StageArea& stage = stageOf(screen);
        stage.showFocus(true);
        play("a frame round it");
        stage.showFocus(false);
        stage.touchBegan({.id = 1, .at = {300, 200}});
        play("a finger on it");
        stage.touchCancelled({.id = 1, .at = {}});
        screen.setSize(900, 560);
        play("another size");
        screen.context().openSettings();
        play("the settings over it");
    }
}

} // namespace
} // namespace zephyra

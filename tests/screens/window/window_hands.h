// Hands: the whole window in a test, with pointers, keys and files as a display would bring them.
#pragma once

#include "controls/knob.h"
#include "hosting/gesture_listener.h"
#include "tests/screens/window/window_scene.h"
#include "tests/support/stream_probe.h"

#include <gtest/gtest.h>

#include <optional>
#include <thread>

namespace zephyra {

/// Gestures that hosts heard must have ended when a test does.
struct Hands : testing::Test {
    using Key = juce::KeyPress;
    using Point = juce::Point<float>;
    using Values = std::array<float, kControlCount>;
    static constexpr double kFewBlocks = 0.05; // seconds

    Hands() {
        scene.asMain([](AudioUnitViewController& view) {
            view.instance().notifications.post(MOK_KNOB::kInteractionStyleNotice,
                                               static_cast<int>(kVertical));
        });
        auto& help = scene.screen().context().help;
        help = [this, foot = help](const std::string& sentence) {
            told = sentence;
            foot(sentence);
        };
        scene.play(kFewBlocks);
    }
    ~Hands() override {
        gestures.reset(); // waits for what is being told
        for (const auto& [address, count] : open) EXPECT_EQ(count, 0) << address;
    }

    /// As the unit has them; what hosts do not see, as the stream has it.
    Values all() {
        Values found{};
        for (std::size_t i = 0; i < found.size(); ++i)
            found[i] = i < kParameterCount
                           ? plugin.parameter(i)
                           : plugin.system().stream().linear(static_cast<ControlId>(i));
        return found;
    }
    /// What differs from before.
    std::vector<ControlId> moved(const Values& before) {
        scene.play(kFewBlocks);
        const Values now = all();
        std::vector<ControlId> found;
        for (std::size_t i = 0; i < now.size(); ++i)
            if (now[i] != before[i]) found.push_back(static_cast<ControlId>(i));
        return found;
    }
    MOK_KNOB& knob(ControlId id) {
        return dynamic_cast<MOK_KNOB&>(*plugin.system().view.control(id));
    }
    AUValue value(ControlId id) { return plugin.parameter(static_cast<AUParameterAddress>(id)); }
    StreamProbe::Fields engine() { return StreamProbe::fields(plugin.system().stream().engine()); }
    Point at(ControlId id) { return scene.middleOf(scene.knob(id)); }
    Point stageAt(double x, double y) {
        const StageArea& stage = *scene.find<StageArea>();
        return {static_cast<float>(stage.getX() + x * stage.scene().width()),
                static_cast<float>(stage.getY() + y * stage.scene().height())};
    }
    double shownSpan() { return scene.find<StageArea>()->scene().view.span(); }
    double scan() { return plugin.system().stream().getTimePhasor(); }
    Point middle(std::string_view title) {
        const juce::Component* const part = scene.findTitled(title);
        EXPECT_NE(part, nullptr) << title;
        return part ? scene.middleOf(*part) : Point();
    }
    /// A wheel's gesture ends some time behind its last notch.
    void endWheel() {
        std::this_thread::sleep_for(std::chrono::milliseconds(450));
        scene.frames(1);
    }
    ValueField* field() { return scene.find<ValueField>(); }
    void type(const std::string& text) {
        for (const char one : text) window.key(Key(one, {}, static_cast<juce::juce_wchar>(one)));
    }
    void press(const Key& key) {
        window.key(key);
        PictureWindow::settle();
    }
    void press(int key, juce::ModifierKeys keys = {}) { press(Key(key, keys, 0)); }
    /// Presses the right button, moves there and lets it go.
    void rightClick(Point at, Point to) {
        window.moveTo(at);
        window.hold(juce::ModifierKeys::rightButtonModifier);
        for (const Point& place : {at, to}) window.moveTo(place);
        window.hold({});
        window.moveTo(to);
    }
    void rightClick(Point at) { rightClick(at, at); }
    juce::StringArray file(const fs::path& path) { return {juce::String(path.string())}; }
    fs::path sound() { return plugin.system().stream().sampleReference().path; }
    const Alert* alert() { return plugin.system().instance.alerts.current(); }

    std::string told; // in the foot
    WindowScene held{PluginKind::standalone};
    PluginInstance& plugin = held.plugin;
    PictureScene& scene = held.scene;
    PictureWindow& window = held.scene.window();
    std::map<AUParameterAddress, int> open; // gestures that have not ended
    int values = 0;
    std::optional<GestureListener> gestures{
        std::in_place, plugin.system(), [this](const AUParameterAutomationEvent& event) {
            const auto type = event.eventType;
            open[event.address] += type == AUParameterAutomationEventType::touch     ? 1
                                   : type == AUParameterAutomationEventType::release ? -1
                                                                                     : 0;
            values += type == AUParameterAutomationEventType::value;
        }};
};

} // namespace zephyra

#include "screens/zephyra_screen.h"

#include "screens/desktop/x11_display.h"
#include "screens/draw/brush.h"
#include "screens/model/screen_settings_store.h"

namespace zephyra {

ZephyraScreen::ZephyraScreen(PluginInstance& plugin, const ScreenSettings& settings)
    : source_(plugin), context_{.source = source_, .settings = settings} {
    context_.settingsChanged = [this] {
        source_.asMain([this](AudioUnitViewController& view) {
            ScreenSettingsStore(view.instance().defaults).write(context_.settings);
        });
        layOutAnew();
    };
    context_.beginEdit = [this](const std::string& name) {
        ++openEdits_;
        source_.asMain([&name](AudioUnitViewController& view) { view.edits.beginEdit(name); });
    };
    context_.endEdit = [this] {
        if (openEdits_ == 0) return;
        --openEdits_;
        source_.asMain([](AudioUnitViewController& view) { view.edits.endEdit(); });
    };
    path_.setVoices(&voices_);
    for (ScreenArea* const area : areas_) addAndMakeVisible(area);
    setSize(ScreenLayout::kStartWidth, ScreenLayout::kStartHeight);
    display_ = std::make_unique<juce::VBlankAttachment>(
        this, [this] { frame(juce::Time::getMillisecondCounterHiRes() / 1000.0); });
}

ZephyraScreen::~ZephyraScreen() {
    while (openEdits_ > 0) context_.endEdit(); // a hand was still at something
}

void ZephyraScreen::frame(double now) {
    time_.elapsed = now - time_.now;
    time_.now = now;
    source_.readFrame(time_);
    for (ScreenArea* const area : areas_) area->frame(time_);
}

void ZephyraScreen::resized() {
    layOutAnew();
}

void ZephyraScreen::layOutAnew() {
    layout_ = zephyra::layOut(getWidth(), getHeight(), context_.settings.zoom);
    for (ScreenArea* const area : areas_) area->layOut(layout_);
    repaint();
}

void ZephyraScreen::paint(juce::Graphics& graphics) {
    graphics.fillAll(brush::colour(palette::kGround));
}

void ZephyraScreen::paintOverChildren(juce::Graphics&) {
    ++paints_;
    flush_.triggerAsyncUpdate();
}

void ZephyraScreen::Flush::handleAsyncUpdate() {
    x11::flush();
}

} // namespace zephyra

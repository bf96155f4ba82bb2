#include "screens/picture/picture_scene.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace zephyra {

namespace {

constexpr double kTempo = 96.0; // beats per minute

ScreenSettings zoomed(double zoom) {
    ScreenSettings settings;
    settings.zoom = zoom;
    return settings;
}

/// A plucked note each half second.
float pluck(double time) {
    constexpr double kNotes[] = {220.0, 330.0, 277.2, 440.0, 165.0};
    const double since = std::fmod(time, 0.5);
    const double note = kNotes[static_cast<std::size_t>(time / 0.5) % std::size(kNotes)];
    const double turn = 2.0 * std::numbers::pi * note * since;
    return static_cast<float>(0.7 * std::exp(-6.0 * since) *
                              (std::sin(turn) + 0.3 * std::sin(3.0 * turn)));
}

} // namespace

PictureScene::PictureScene(PluginInstance& plugin, const Size& size)
    : plugin_(plugin), screen_(plugin, zoomed(size.zoom)), window_(screen_), input_(kBlock),
      left_(kBlock), right_(kBlock) {
    window_.setSize(size.width, size.height);
    screen_.frame(0.0);
}

float PictureScene::play(double seconds) {
    float loudest = 0.0f;
    for (const double end = now_ + seconds; now_ < end; now_ += kBlock / kRate) {
        for (std::uint32_t i = 0; i < kBlock; ++i) input_[i] = pluck(now_ + i / kRate);
        PluginBlock block;
        block.frames = kBlock;
        block.input[0] = block.input[1] = input_.data();
        block.output[0] = left_.data();
        block.output[1] = right_.data();
        block.transport = {
            .tempo = kTempo, .numerator = 4.0, .denominator = 4.0, .beats = beats_, .moving = true};
        plugin_.renderOffline(block);
        beats_ += kBlock / kRate * kTempo / 60.0;
        for (const float sample : left_) loudest = std::max(loudest, std::abs(sample));
        while (nextFrame_ < now_) frame();
    }
    return loudest;
}

void PictureScene::frames(int count) {
    for (; count > 0; --count) frame();
    now_ = std::max(now_, nextFrame_); // what plays next is shown
}

void PictureScene::frame() {
    lastFrame_ = nextFrame_;
    nextFrame_ += kFrame;
    screen_.frame(lastFrame_);
}

juce::Component* PictureScene::findIn(juce::Component& all,
                                      const std::function<bool(juce::Component&)>& isIt) {
    for (juce::Component* const child : all.getChildren()) {
        if (isIt(*child)) return child;
        if (juce::Component* const found = findIn(*child, isIt)) return found;
    }
    return nullptr;
}

juce::Component* PictureScene::findTitled(std::string_view title) {
    const juce::String wanted(title.data(), title.size());
    return findIn(
        screen_, [&](juce::Component& one) { return one.isShowing() && one.getTitle() == wanted; });
}

juce::Point<float> PictureScene::middleOf(const juce::Component& part) const {
    return window_.getLocalArea(&part, part.getLocalBounds()).getCentre().toFloat();
}

juce::Point<float> PictureScene::numberOf(ControlId id) {
    KnobCell& cell = knob(id);
    const Box number = placeOf(cell.cell(), layOut(screen_.getWidth(), screen_.getHeight(),
                                                   screen_.settings().zoom))
                           .number;
    return window_.getLocalPoint(&cell, juce::Point(number.centreX(), number.centreY())).toFloat();
}

} // namespace zephyra

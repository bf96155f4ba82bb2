#include "screens/stage/sound_name.h"

#include "screens/draw/brush.h"
#include "screens/model/help_texts.h"
#include "screens/stage/stage_marks.h"

#include <algorithm>
#include <utility>

namespace zephyra {

namespace {

constexpr double kAround = 5.0; // units

} // namespace

SoundName::SoundName(ScreenContext& context)
    : ScreenButton(context, "Sound", helpText(HelpId::soundOnStage)), line_(context) {
    setOpaque(false);
    pressed = [this] {
        const auto at = getBounds() + getParentComponent()->getPosition();
        line_.press({at.getX(), at.getY(), at.getWidth(), at.getHeight()});
    };
}

void SoundName::follow(const StageScene& scene) {
    const StageContents& of = scene.contents;
    const int start = static_cast<int>(scene.x(std::min(of.regionStart, of.regionEnd)));
    Followed now{nameOnStage(scene), scene.layout, start};
    if (now == followed_) return;
    followed_ = std::move(now);
    const Box name = nameBox(scene);
    setVisible(name.width > 0); // else the keyboard would find it
    if (name.width == 0) return;
    place({name.x - scene.px(kAround), name.y - scene.px(kAround),
           name.width + 2 * scene.px(kAround), name.height + 2 * scene.px(kAround)},
          scene.layout.scale);
    setValue(followed_.name);
}

void SoundName::paint(juce::Graphics& graphics) {
    graphics.setColour(brush::colour(palette::kBright));
    const auto inside = getLocalBounds().reduced(juce::roundToInt(px(kAround)));
    const int line = juce::jmax(1, juce::roundToInt(px(1.0)));
    if (isHovered()) graphics.fillRect(inside.withTop(inside.getBottom()).withHeight(line));
    paintFocus(graphics, 2 * line);
}

} // namespace zephyra

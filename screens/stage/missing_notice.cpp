#include "screens/stage/missing_notice.h"

#include "screens/draw/brush.h"
#include "screens/draw/screen_button.h"
#include "screens/model/help_texts.h"

#include <cmath>
#include <utility>

namespace zephyra {

namespace {

constexpr double kLeft = 56, kTop = 12, kPadding = 12, kGap = 8; // units
constexpr double kMostName = 280;

} // namespace

/// Stands on a panel of its own, which it is told from.
class MissingNotice::LocateButton final : public ScreenButton {
public:
    LocateButton(ScreenContext& context, const ScreenLayout& layout)
        : ScreenButton(context, "Locate", helpText(HelpId::locateOnStage)), layout_(layout) {
        setOpaque(false);
        pressed = [&context] {
            if (context.locateSample) context.locateSample();
        };
    }

    void paint(juce::Graphics& graphics) override {
        const auto corner = static_cast<float>(6.0 * layout_.scale);
        const auto cell = getLocalBounds().toFloat();
        const bool isNear = reached().isHovered || reached().isPressed;
        graphics.setColour(brush::colour(isNear ? palette::kTrack : palette::kPressed));
        graphics.fillRoundedRectangle(cell, corner);
        graphics.setColour(brush::colour(palette::kBright));
        if (showsFocus())
            graphics.drawRoundedRectangle(cell.reduced(1.0f), corner,
                                          static_cast<float>(2.0 * layout_.scale));
        graphics.setFont(brush::medium(layout_.measures.nameText * layout_.scale));
        graphics.drawText(getTitle(), cell, juce::Justification::centred, false);
    }

private:
    const ScreenLayout& layout_;
};

MissingNotice::MissingNotice(ScreenContext& context)
    : locate_(std::make_unique<LocateButton>(context, layout_)) {
    addAndMakeVisible(*locate_);
    setTitle("Missing sound");
}

MissingNotice::~MissingNotice() = default;

void MissingNotice::show(const std::string& name, const ScreenLayout& layout) {
    if (name == name_ && layout == layout_) return;
    name_ = name;
    layout_ = layout;
    setVisible(!name.empty());
    if (name.empty()) return;
    const juce::Font letters = brush::medium(layout.measures.nameText * layout.scale);
    const int text = static_cast<int>(std::min<double>(
        letters.getStringWidthFloat(brush::drawn(name)), kMostName * layout.scale));
    const int missing = static_cast<int>(std::ceil(letters.getStringWidthFloat("missing")));
    const int button = static_cast<int>(std::ceil(letters.getStringWidthFloat("Locate")));
    setBounds(layout.px(kLeft), layout.px(kTop),
              text + missing + button + layout.px(5 * kPadding + 2 * kGap),
              layout.px(layout.measures.nameText + 24));
    setHelpText(brush::text(helpText(HelpId::missing, name_)));
    resized();
    repaint();
}

void MissingNotice::resized() {
    const juce::Font letters = brush::medium(layout_.measures.nameText * layout_.scale);
    const int wide = static_cast<int>(std::ceil(letters.getStringWidthFloat("Locate"))) +
                     layout_.px(2 * kPadding);
    const int around = layout_.px(4);
    locate_->setBounds(getWidth() - wide - around, around, wide, getHeight() - 2 * around);
}

void MissingNotice::paint(juce::Graphics& graphics) {
    graphics.setColour(brush::colour(palette::kRaised));
    graphics.fillRoundedRectangle(getLocalBounds().toFloat(),
                                  static_cast<float>(8.0 * layout_.scale));
    const juce::Font letters = brush::medium(layout_.measures.nameText * layout_.scale);
    const juce::String missing("missing");
    const int word = static_cast<int>(std::ceil(letters.getStringWidthFloat(missing)));
    auto row = getLocalBounds();
    row.removeFromLeft(layout_.px(kPadding));
    row.setRight(locate_->getX() - layout_.px(kPadding));
    const auto end = row.removeFromRight(word + 2);
    row.removeFromRight(layout_.px(kGap));
    graphics.setFont(letters);
    graphics.setColour(brush::colour(palette::kBright));
    brush::drawLine(graphics, name_, row.toFloat(), juce::Justification::centredLeft);
    graphics.setColour(brush::colour(palette::kAccent));
    graphics.drawText(missing, end, juce::Justification::centredRight, false);
}

} // namespace zephyra

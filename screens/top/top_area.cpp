#include "screens/top/top_area.h"

#include "screens/draw/brush.h"
#include "screens/model/help_texts.h"

namespace zephyra {

namespace {

constexpr double kPlayIcon = 20, kIcon = 20, kArrowIcon = 18, kWord = 12; // units at regular

} // namespace

TopArea::TopArea(ScreenContext& context)
    : context_(context), transport_(context), preset_(context), sample_(context), music_(context),
      edits_(context), buttons_{ScreenButton(context, "Play", ""),
                                ScreenButton(context, "Rewind", ""),
                                ScreenButton(context, "Freeze", ""),
                                ScreenButton(context, "LIVE", ""),
                                ScreenButton(context, "Clear", "")},
      previous_(context, "Previous preset", helpText(HelpId::previousPreset)),
      next_(context, "Next preset", helpText(HelpId::nextPreset)), presetName_(context),
      sampleName_(context), locate_(context, "Locate", helpText(HelpId::locate)),
      editButtons_{ScreenButton(context, "Randomise", ""), ScreenButton(context, "Undo", ""),
                   ScreenButton(context, "Redo", ""), ScreenButton(context, "Compare A", ""),
                   ScreenButton(context, "Compare B", "")},
      tempo_(context, music_), bar_(context),
      settings_(context, "Settings", helpText(HelpId::settings)) {
    setOpaque(true);
    setFocusContainerType(FocusContainerType::focusContainer);
    wireTransport();
    wirePreset();
    addAndMakeVisible(sampleName_);
    sampleName_.pressed = [this] { sample_.press(boxOf(sampleName_)); };
    addAndMakeVisible(locate_);
    wireEdits();
    addAndMakeVisible(tempo_);
    addAndMakeVisible(bar_);
    addAndMakeVisible(settings_);
    locate_.pressed = [this] {
        if (context_.locateSample) context_.locateSample();
    };
    // By the eye's order; else what is higher by a pixel would come first.
    for (int i = 0; i < getNumChildComponents(); ++i)
        getChildComponent(i)->setExplicitFocusOrder(i + 1);
    settings_.setFace({.isBare = true});
    settings_.pressed = [this] {
        if (context_.openSettings) context_.openSettings();
    };
}

void TopArea::wireTransport() {
    for (std::size_t i = 0; i < kTransportButtons; ++i) {
        const auto which = static_cast<TransportButton>(i);
        addAndMakeVisible(buttons_[i]);
        buttons_[i].touched = [this, which](ButtonTouch touch) { transport_.touch(which, touch); };
        buttons_[i].setSwitch(which != TransportButton::rewind && which != TransportButton::clear);
    }
    button(TransportButton::play).setCorner(8.0);
}

void TopArea::wirePreset() {
    for (ScreenButton* const button :
         {&previous_, &next_, static_cast<ScreenButton*>(&presetName_)}) {
        addAndMakeVisible(button);
        button->setFace({.isBare = true});
    }
    previous_.pressed = [this] { preset_.previous(); };
    next_.pressed = [this] { preset_.next(); };
    presetName_.stepped = [this](int by) { by < 0 ? preset_.previous() : preset_.next(); };
    presetName_.pressed = [this] { openMenu(presetName_, preset_.menu()); };
}

void TopArea::wireEdits() {
    for (std::size_t i = 0; i < kEditButtons; ++i) {
        const auto which = static_cast<EditButton>(i);
        addAndMakeVisible(editButtons_[i]);
        editButtons_[i].pressed = [this, which] { edits_.press(which); };
        editButtons_[i].setSwitch(which == EditButton::compareA || which == EditButton::compareB);
    }
    for (const EditButton side : {EditButton::compareA, EditButton::compareB}) {
        button(side).setSurface(palette::kRaised);
        button(side).setCorner(4.0);
    }
    button(EditButton::randomize).menuAsked = [this] {
        openMenu(button(EditButton::randomize), edits_.randomizeMenu());
    };
}

Box TopArea::boxOf(const juce::Component& part) const {
    const auto at = part.getBounds() + getPosition();
    return {at.getX(), at.getY(), at.getWidth(), at.getHeight()};
}

void TopArea::openMenu(const juce::Component& below, std::vector<MenuRow> rows) {
    if (context_.openMenu) context_.openMenu(boxOf(below), std::move(rows));
}

void TopArea::layOut(const ScreenLayout& layout) {
    layout_ = layout;
    setBounds(brush::rectangle(layout.top));
    show();
    place();
    repaint();
}

void TopArea::frame(const FrameTime&) {
    show();
    if (preset_.takesMenu()) openMenu(presetName_, preset_.menu());
}

/// What is there now; lays out anew where a text has another width.
void TopArea::show() {
    showButtons();
    presetName_.show(preset_.shown(), layout_.measures, layout_.scale);
    sampleName_.show(sample_.shown(), layout_.measures, layout_.scale);
    tempo_.show(layout_.measures);
    bar_.show(music_.shown(), layout_.measures, layout_.scale);
    const TopWishes wishes{.presetWidth = presetName_.textWidth(),
                           .sampleWidth = sampleName_.textWidth(),
                           .showsClear = transport_.shown().isLive,
                           .showsLocate = sample_.shown().isMissing};
    if (wishes == wishes_) return;
    wishes_ = wishes;
    place();
}

void TopArea::showButtons() {
    const TransportShown& transport = transport_.shown();
    for (std::size_t i = 0; i < kTransportButtons; ++i) {
        const auto which = static_cast<TransportButton>(i);
        buttons_[i].setFace(transport.face(which));
        buttons_[i].setHelp(transport.help(which));
        buttons_[i].setValue(transport.value(which));
    }
    const bool plays =
        transport.play == PlayState::playing || transport.play == PlayState::fadingOut;
    button(TransportButton::play).setIcon(plays ? Icon::stop : Icon::play, kPlayIcon * large());
    for (std::size_t i = 0; i < kEditButtons; ++i) {
        const auto which = static_cast<EditButton>(i);
        editButtons_[i].setFace(edits_.face(which));
        editButtons_[i].setHelp(edits_.help(which));
    }
}

void TopArea::place() {
    boxes_ = topBoxes(layout_, wishes_);
    const double scale = layout_.scale;
    placeButtons();
    previous_.place(boxes_.previous, scale);
    next_.place(boxes_.next, scale);
    previous_.setIcon(Icon::left, kArrowIcon * large());
    next_.setIcon(Icon::right, kArrowIcon * large());
    presetName_.place(boxes_.preset, scale);
    sampleName_.place(boxes_.sample, scale);
    locate_.place(boxes_.locate, scale);
    locate_.setLabel("Locate", kWord * scale * large());
    tempo_.place(boxes_.tempo, scale);
    bar_.setBounds(brush::rectangle(boxes_.bar));
    settings_.place(boxes_.settings, scale);
    settings_.setIcon(Icon::sliders, kIcon * large());
    repaint();
}

void TopArea::placeButtons() {
    const double scale = layout_.scale, word = kWord * scale * large();
    button(TransportButton::play).place(boxes_.play, scale);
    button(TransportButton::rewind).place(boxes_.rewind, scale);
    button(TransportButton::freeze).place(boxes_.freeze, scale);
    button(TransportButton::live).place(boxes_.live, scale);
    button(TransportButton::clear).place(boxes_.clear, scale);
    button(TransportButton::rewind).setIcon(Icon::rewind, kIcon * large());
    button(TransportButton::freeze).setIcon(Icon::freeze, kIcon * large());
    button(TransportButton::live).setLabel("LIVE", word);
    button(TransportButton::clear).setLabel("Clear", word);
    button(EditButton::randomize).place(boxes_.random, scale);
    button(EditButton::undo).place(boxes_.undo, scale);
    button(EditButton::redo).place(boxes_.redo, scale);
    button(EditButton::compareA).place(boxes_.compareA, scale);
    button(EditButton::compareB).place(boxes_.compareB, scale);
    button(EditButton::randomize).setIcon(Icon::dice, kIcon * large());
    button(EditButton::undo).setIcon(Icon::undo, kIcon * large());
    button(EditButton::redo).setIcon(Icon::redo, kIcon * large());
    button(EditButton::compareA).setLabel("A", word);
    button(EditButton::compareB).setLabel("B", word);
}

void TopArea::paint(juce::Graphics& graphics) {
    graphics.fillAll(brush::colour(palette::kGround));
    graphics.setColour(brush::colour(palette::kRaised));
    graphics.fillRoundedRectangle(brush::floats(boxes_.compare), static_cast<float>(layout_.px(6)));
    graphics.setColour(brush::colour(palette::kLine));
    const int line = juce::jmax(1, layout_.px(1)), inset = layout_.px(layout_.measures.top * 0.23);
    for (const int x : boxes_.lines)
        if (x > 0) graphics.fillRect(x, inset, line, getHeight() - 2 * inset);
    graphics.fillRect(0, getHeight() - line, getWidth(), line);
}

} // namespace zephyra

#include "screens/top/top_area.h"

#include "screens/draw/brush.h"
#include "screens/model/help_texts.h"

namespace zephyra {

namespace {

constexpr const char* kTitles[kTransportButtons] = {"Play", "Rewind", "Freeze", "LIVE", "Clear"};
constexpr const char* kEditTitles[kEditButtons] = {"Randomise", "Undo", "Redo", "Compare A",
                                                   "Compare B"};

constexpr double kPlayIcon = 20, kIcon = 20, kArrowIcon = 18, kWord = 12; // units at regular

} // namespace

TopArea::TopArea(ScreenContext& context)
    : ScreenArea(context), transport_(context), preset_(context), sample_(context), music_(context),
      edits_(context), buttons_{ScreenButton(context, kTitles[0], ""),
                                ScreenButton(context, kTitles[1], ""),
                                ScreenButton(context, kTitles[2], ""),
                                ScreenButton(context, kTitles[3], ""),
                                ScreenButton(context, kTitles[4], "")},
      previous_(context, "Previous preset", helpText(HelpId::previousPreset)),
      next_(context, "Next preset", helpText(HelpId::nextPreset)), presetName_(context),
      sampleName_(context), locate_(context, "Locate", helpText(HelpId::locate)),
      editButtons_{
          ScreenButton(context, kEditTitles[0], ""), ScreenButton(context, kEditTitles[1], ""),
          ScreenButton(context, kEditTitles[2], ""), ScreenButton(context, kEditTitles[3], ""),
          ScreenButton(context, kEditTitles[4], "")},
      tempo_(context, music_), bar_(context),
      settings_(context, "Settings", helpText(HelpId::settings)) {
    setOpaque(true);
    setFocusContainerType(FocusContainerType::focusContainer);
    wireTransport();
    wirePreset();
    addAndMakeVisible(sampleName_);
    sampleName_.pressed = [this] { openSampleMenu(); };
    addAndMakeVisible(locate_);
    wireEdits();
    addAndMakeVisible(tempo_);
    addAndMakeVisible(bar_);
    addAndMakeVisible(settings_);
    locate_.pressed = [this] {
        if (this->context().locateSample) this->context().locateSample();
    };
    // By the eye's order; else what is higher by a pixel would come first.
    for (int i = 0; i < getNumChildComponents(); ++i)
        getChildComponent(i)->setExplicitFocusOrder(i + 1);
    settings_.setFace({.isBare = true});
    settings_.pressed = [this] {
        if (this->context().openSettings) this->context().openSettings();
    };
}

void TopArea::wireTransport() {
    for (std::size_t i = 0; i < kTransportButtons; ++i) {
        const auto which = static_cast<TransportButton>(i);
        addAndMakeVisible(buttons_[i]);
        buttons_[i].touched = [this, which](ButtonTouch touch) { transport_.touch(which, touch); };
        buttons_[i].setSwitch(which != TransportButton::rewind && which != TransportButton::clear);
    }
    buttons_[0].setCorner(8.0);
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
    for (const std::size_t i : {3u, 4u}) {
        editButtons_[i].setSurface(palette::kRaised);
        editButtons_[i].setCorner(4.0);
    }
    editButtons_[0].menuAsked = [this] { openMenu(editButtons_[0], edits_.randomizeMenu()); };
}

void TopArea::openSampleMenu() {
    auto rows = sample_.menu();
    if (rows.size() > 1) return openMenu(sampleName_, std::move(rows));
    if (rows.front().chosen) rows.front().chosen();
}

void TopArea::openMenu(const juce::Component& below, std::vector<MenuRow> rows) {
    if (!context().openMenu) return;
    const auto at = below.getBounds() + getPosition();
    context().openMenu({at.getX(), at.getY(), at.getWidth(), at.getHeight()}, std::move(rows));
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
    buttons_[0].setIcon(plays ? Icon::stop : Icon::play, kPlayIcon * large());
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
    const Box* const boxes[] = {&boxes_.play, &boxes_.rewind, &boxes_.freeze, &boxes_.live,
                                &boxes_.clear};
    for (std::size_t i = 0; i < kTransportButtons; ++i) buttons_[i].place(*boxes[i], scale);
    buttons_[1].setIcon(Icon::rewind, kIcon * large());
    buttons_[2].setIcon(Icon::freeze, kIcon * large());
    buttons_[3].setLabel("LIVE", word);
    buttons_[4].setLabel("Clear", word);
    const Box* const edits[] = {&boxes_.random, &boxes_.undo, &boxes_.redo, &boxes_.compareA,
                                &boxes_.compareB};
    for (std::size_t i = 0; i < kEditButtons; ++i) editButtons_[i].place(*edits[i], scale);
    editButtons_[0].setIcon(Icon::dice, kIcon * large());
    editButtons_[1].setIcon(Icon::undo, kIcon * large());
    editButtons_[2].setIcon(Icon::redo, kIcon * large());
    editButtons_[3].setLabel("A", word);
    editButtons_[4].setLabel("B", word);
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

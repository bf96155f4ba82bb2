#include "screens/path/knob_cell.h"

#include "screens/draw/brush.h"
#include "screens/model/help_texts.h"
#include "screens/model/path/knob_menu.h"
#include "screens/path/knob_access.h"

#include <algorithm>

namespace zephyra {

namespace {

constexpr double kPageNotches = 10.0;
constexpr float kWheelNotch = 50.0f / 256.0f; // of a wheel with notches, as JUCE tells it
constexpr float kGripReach = 9.0f;            // units

TouchId pointerOf(const juce::MouseEvent& event) {
    return static_cast<TouchId>(event.source.getIndex()) + 1;
}

Fineness finenessOf(const juce::ModifierKeys& keys) {
    return keys.isShiftDown() ? Fineness::fine : Fineness::coarse;
}

double nowSeconds() {
    return juce::Time::getMillisecondCounterHiRes() / 1000.0;
}

} // namespace

KnobCell::KnobCell(ScreenContext& context, KnobHand& hand, KnobLook& look, const PathCell& cell)
    : PathCellView(context, cell), hand_(hand), look_(look) {
    const ControlRange& range = controlRange(cell.id);
    setTitle(range.name);
    setHelp(helpText(cell.id));
}

KnobCell::~KnobCell() = default;

void KnobCell::show(const PathModel& model) {
    const KnobFace& now = model.face(cell().id);
    if (wasShown_ && now == face_) return;
    const bool isOther = now.text != face_.text;
    face_ = now;
    wasShown_ = true;
    CellReach reach = this->reach();
    reach.isPressed = now.isHeld;
    setReach(reach);
    repaint();
    if (isOther && hasKeyboardFocus(false))
        if (auto* const handler = getAccessibilityHandler())
            handler->notifyAccessibilityEvent(juce::AccessibilityEvent::valueChanged);
}

/// While something moves the knob, all but its arc and number is drawn once.
const juce::Image& KnobCell::stillPicture() {
    KnobFace still = face_;
    still.arc = 0.0f;
    still.text.number.clear();
    if (still_.isValid() && still == stillFace_ && reach() == stillReach_) return still_;
    stillFace_ = still;
    stillReach_ = reach();
    still_ =
        juce::Image(juce::Image::RGB, getWidth(), getHeight(), false, juce::SoftwareImageType());
    juce::Graphics graphics(still_);
    look_.drawStill(graphics, face_, place(), reach(), name());
    return still_;
}

void KnobCell::setPlace(const CellPlace& place) {
    still_ = {};
    PathCellView::setPlace(place);
    closeField();
}

std::string KnobCell::sentence() const {
    if (face_.by == KnobMover::none) return PathCellView::sentence();
    const ControlId id = cell().id;
    return std::string(controlRange(id).name) + " " +
           context().source.asMain(
               [&](AudioUnitViewController& view) { return knobMoverText(view, id, face_); });
}

/// The pointer that opened the field is over it, and no more over the knob.
void KnobCell::tell(const std::string& sentence) {
    PathCellView::tell(field_ && sentence.empty() ? helpText(HelpId::value) : sentence);
}

void KnobCell::paint(juce::Graphics& graphics) {
    if (face_.drives) {
        graphics.setOpacity(1.0f);
        graphics.drawImageAt(stillPicture(), 0, 0);
    } else {
        still_ = {};
        look_.drawStill(graphics, face_, place(), reach(), name());
    }
    KnobLook::drawMoving(graphics, face_, place(), reach());
}

Point KnobCell::units(juce::Point<float> at) const {
    return {at.x / place().scale, at.y / place().scale};
}

/// The nearer grip under the pointer.
std::optional<BondEnd> KnobCell::gripAt(juce::Point<float> at) const {
    if (!face_.from || !face_.to) return std::nullopt;
    const float radius = sweepRadius(place());
    const float from = at.getDistanceFrom(pointOnTurn(place(), *face_.from, radius));
    const float to = at.getDistanceFrom(pointOnTurn(place(), *face_.to, radius));
    if (std::min(from, to) > kGripReach * static_cast<float>(place().scale)) return std::nullopt;
    return from < to ? BondEnd::from : BondEnd::to;
}

float KnobCell::fractionAt(juce::Point<float> at) const {
    const juce::Point centre(static_cast<float>(place().centreX),
                             static_cast<float>(place().centreY));
    constexpr float kHalf = juce::MathConstants<float>::pi * 0.75f;
    return std::clamp((centre.getAngleToPoint(at) / kHalf + 1.0f) / 2.0f, 0.0f, 1.0f);
}

bool KnobCell::press(TouchId pointer, juce::Point<float> at) {
    closeField();
    const auto grip = grip_ ? std::nullopt : gripAt(at);
    if (grip) {
        grip_ = HeldGrip{pointer, *grip};
        hand_.beginRange(cell().id);
        return true;
    }
    const juce::Point centre(static_cast<float>(place().centreX),
                             static_cast<float>(place().centreY));
    return hand_.begin(pointer, cell().id, units(at), units(centre));
}

void KnobCell::drag(TouchId pointer, juce::Point<float> to, Fineness fineness) {
    if (holdsGrip(pointer)) return hand_.moveRange(cell().id, grip_->end, fractionAt(to));
    hand_.move(pointer, units(to), fineness);
}

bool KnobCell::endGrip(TouchId pointer) {
    if (!holdsGrip(pointer)) return false;
    grip_.reset();
    hand_.endRange();
    return true;
}

bool KnobCell::release(TouchId pointer, juce::Point<float> at) {
    if (endGrip(pointer)) return false;
    const bool wasTap = hand_.isTapping(pointer);
    hand_.end(pointer);
    return wasTap && place().number.contains(at.x, at.y);
}

void KnobCell::cancel(TouchId pointer) {
    if (!endGrip(pointer)) hand_.cancel(pointer);
}

void KnobCell::mouseDown(const juce::MouseEvent& event) {
    if (event.mods.isPopupMenu())
        openMenu();
    else
        press(pointerOf(event), event.position);
}

void KnobCell::mouseDrag(const juce::MouseEvent& event) {
    if (event.mouseWasDraggedSinceMouseDown())
        drag(pointerOf(event), event.position, finenessOf(event.mods));
}

void KnobCell::mouseUp(const juce::MouseEvent& event) {
    const bool types = release(pointerOf(event), event.position);
    if (types && event.getNumberOfClicks() == 1) openField();
}

void KnobCell::mouseDoubleClick(const juce::MouseEvent&) {
    hand_.reset(cell().id);
}

void KnobCell::mouseWheelMove(const juce::MouseEvent& event, const juce::MouseWheelDetails& wheel) {
    const double notches = double{wheel.deltaY} / double{kWheelNotch};
    hand_.turn(cell().id, notches, finenessOf(event.mods), nowSeconds());
}

bool KnobCell::takeKey(const juce::KeyPress& key) {
    const Fineness fineness = finenessOf(key.getModifiers());
    const auto turn = [&](double notches) {
        hand_.turn(cell().id, notches, fineness, nowSeconds());
        return true;
    };
    const int code = key.getKeyCode();
    if (code == juce::KeyPress::upKey || code == juce::KeyPress::rightKey) return turn(1);
    if (code == juce::KeyPress::downKey || code == juce::KeyPress::leftKey) return turn(-1);
    if (code == juce::KeyPress::pageUpKey) return turn(kPageNotches);
    if (code == juce::KeyPress::pageDownKey) return turn(-kPageNotches);
    if (code == juce::KeyPress::homeKey || code == juce::KeyPress::endKey) {
        hand_.turnToEnd(cell().id, code == juce::KeyPress::endKey, nowSeconds());
        return true;
    }
    if (code == juce::KeyPress::returnKey) return openField(), true;
    if (code == juce::KeyPress::backspaceKey || code == juce::KeyPress::deleteKey)
        return hand_.reset(cell().id), true;
    if (code == juce::KeyPress::F10Key && key.getModifiers().isShiftDown()) return openMenu(), true;
    const juce::juce_wchar typed = key.getTextCharacter();
    if (juce::String("0123456789.-+").containsChar(typed) && typed != 0)
        return openField(juce::String::charToString(typed)), true;
    return false;
}

void KnobCell::openMenu() {
    if (!context().openMenu) return;
    const juce::Component::SafePointer<KnobCell> safe(this);
    KnobMenuCalls calls;
    calls.copy = [](const std::string& text) {
        juce::SystemClipboard::copyTextToClipboard(brush::text(text));
    };
    calls.paste = [] { return juce::SystemClipboard::getTextFromClipboard().toStdString(); };
    calls.typeValue = [safe] {
        if (safe) safe->openField();
    };
    calls.tell = [safe](const std::string& sentence) {
        if (safe) safe->tell(sentence);
    };
    context().openMenu(boxInWindow(), knobMenu(context(), hand_, cell().id, std::move(calls)));
}

void KnobCell::typeValue(const std::string& text) {
    static_cast<void>(hand_.type(cell().id, text));
}

void KnobCell::openField(std::optional<juce::String> text) {
    ValueFieldCalls calls;
    calls.enter = [this](const std::string& typed) {
        const Result<void> done = hand_.type(cell().id, typed);
        if (!done) tell(done.message());
        return done.ok();
    };
    calls.reset = [this] { hand_.reset(cell().id); };
    calls.closed = [this] { closeField(); };
    field_ = std::make_unique<ValueField>(std::move(calls), place());
    addAndMakeVisible(*field_);
    field_->begin(text, brush::text(face_.text.whole()));
    tell({});
    CellReach reach = this->reach();
    reach.showsNumber = false;
    setReach(reach);
}

void KnobCell::closeField() {
    if (!field_) return;
    const auto gone = std::move(field_);
    removeChildComponent(gone.get()); // the keyboard comes back here
    CellReach reach = this->reach();
    reach.showsNumber = true;
    setReach(reach);
    tell(isHovered() || showsFocus() ? sentence() : std::string());
}

std::unique_ptr<juce::AccessibilityHandler> KnobCell::createAccessibilityHandler() {
    return makeKnobAccess(*this);
}

} // namespace zephyra

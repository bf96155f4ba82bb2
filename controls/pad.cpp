#include "controls/pad.h"

#include "controls/fraction.h"
#include "platform/lists/property_reader.h"
#include "platform/text/log.h"
#include "platform/user_defaults.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace zephyra {

namespace {

constexpr float kHighestNote = 127.0f;
constexpr float kFewestOctaves = 1.0f, kMostOctaves = 10.0f;
constexpr int kSemitones = 12; // an octave
constexpr std::array<double, 8> kMajorScale = {0.0, 2.0, 4.0, 5.0, 7.0, 9.0, 11.0, 12.0};

std::string baseNoteKey(const std::string& channel) {
    return "_BASE_NOTE_" + channel;
}

std::string octNumKey(const std::string& channel) {
    return "_OCT_NUM_" + channel;
}

float bent(double fraction, float exponent) {
    const bool usable = std::isfinite(exponent) && exponent > 0.0f;
    return static_cast<float>(
        std::pow(std::clamp(fraction, 0.0, 1.0), usable ? double{exponent} : 1.0));
}

/// The nearest degree of the major scale, of two the lower one. semitones: 0 or above.
double onMajorScale(double semitones) {
    const double octave = std::floor(semitones / kSemitones) * kSemitones;
    double nearest = kMajorScale.front();
    for (const double degree : kMajorScale)
        if (std::abs(semitones - octave - degree) < std::abs(semitones - octave - nearest))
            nearest = degree;
    return octave + nearest;
}

/// What a file says; too large for a float, it stays as far beyond every range.
float narrow(double value) {
    return static_cast<float>(std::clamp(value, -1e9, 1e9));
}

} // namespace

void MOK_PAD::setXValue(float x) {
    setFraction(xValue_, x);
    setNeedsDisplay();
}

void MOK_PAD::setYValue(float y) {
    setFraction(yValue_, y);
    setNeedsDisplay();
}

// --- Notes ---

bool MOK_PAD::fits(float octaves) const {
    return _baseNote + float{kSemitones} * octaves <= kHighestNote;
}

void MOK_PAD::setBaseNote(float note) {
    if (!std::isfinite(note)) return;
    _baseNote = std::clamp(std::trunc(note), 0.0f, kHighestNote);
    if (!fits(_octNum)) decrOctNum();
    setNeedsDisplay();
}

void MOK_PAD::setOctNum(float octaves) {
    if (!std::isfinite(octaves)) return;
    const float held = std::clamp(std::trunc(octaves), kFewestOctaves, kMostOctaves);
    if (fits(held)) _octNum = held;
    setNeedsDisplay();
}

double MOK_PAD::note() const {
    const double semitones = double{xValue_} * double{_octNum} * kSemitones;
    const double above = _diatonics ? onMajorScale(semitones) : semitones;
    return std::min(double{_baseNote} + above, double{kHighestNote});
}

// --- States ---

PropertyArray MOK_PAD::getState() const {
    PropertyArray state{_octNum, _baseNote};
    if (saveLoad_XY) state.insert(state.end(), {xValue_, yValue_});
    return state;
}

void MOK_PAD::restoreXY(const std::optional<double>& x, const std::optional<double>& y) {
    if (x) setXValue(narrow(*x));
    if (y) setYValue(narrow(*y));
}

StateFindings MOK_PAD::restoreState(const PropertyArray& state) {
    const std::string where = "pad " + channel;
    if (state.size() < 2)
        return {{where, "a state of " + std::to_string(state.size()) +
                            " values is ignored; octaves and base note are needed, then perhaps "
                            "x and y"}};
    StateFindings findings;
    constexpr std::array names = {"octaves", "base note", "x", "y"};
    PropertyDictionary named;
    for (std::size_t n = 0; n < std::min(state.size(), names.size()); ++n)
        named[names[n]] = state[n];
    PropertyReader reader(named, findings, where);
    const auto octaves = reader.real("octaves"), base = reader.real("base note");
    // From the lowest note on every count of octaves fits, whatever the base note was before.
    if (octaves && base) _baseNote = 0.0f;
    if (octaves) setOctNum(narrow(*octaves));
    if (base) setBaseNote(narrow(*base));
    if (!saveLoad_XY) return findings;
    const auto x = reader.real("x"), y = reader.real("y");
    restoreXY(x, y);
    return findings;
}

void MOK_PAD::saveAsDefault(Control*) {
    if (channel.empty() || !userDefaults) return;
    userDefaults->setValue(baseNoteKey(channel), _baseNote);
    userDefaults->setValue(octNumKey(channel), _octNum);
    if (!saveLoad_XY) return;
    userDefaults->setValue(channel + "_X", xValue_);
    userDefaults->setValue(channel + "_Y", yValue_);
}

void MOK_PAD::loadAsDefault(Control*) {
    if (channel.empty() || !userDefaults) return;
    PropertyDictionary stored;
    for (const std::string& key :
         {baseNoteKey(channel), octNumKey(channel), channel + "_X", channel + "_Y"})
        if (const PropertyValue* const value = userDefaults->value(key)) stored[key] = *value;
    StateFindings findings;
    PropertyReader reader(stored, findings, "user defaults");
    if (const auto base = reader.real(baseNoteKey(channel))) setBaseNote(narrow(*base));
    if (const auto octaves = reader.real(octNumKey(channel))) setOctNum(narrow(*octaves));
    const auto x = reader.real(channel + "_X"), y = reader.real(channel + "_Y");
    restoreXY(x, y);
    if (log)
        for (const StateFinding& finding : findings) log->write(lineOf(finding));
}

// --- Fingers ---

void MOK_PAD::follow(Point at) {
    const float formerX = xValue_, formerY = yValue_;
    const Point where = fraction(at);
    setXValue(bent(where.x, xValueExp));
    setYValue(bent(1.0 - where.y, yValueExp));
    if (xValue_ != formerX || yValue_ != formerY) sendEventValueChanged();
}

void MOK_PAD::fingerBegan(TouchId touch, Point at, double) {
    if (finger_) return;
    finger_ = touch;
    touchState = 1;
    sendActionsForControlEvents(control_event::touchDown);
    follow(at);
}

void MOK_PAD::fingerMoved(TouchId touch, Point at) {
    if (finger_ == touch) follow(at);
}

void MOK_PAD::fingerEnded(TouchId touch, bool cancelled) {
    if (finger_ != touch) return;
    finger_.reset();
    touchState = 0;
    setNeedsDisplay();
    sendActionsForControlEvents(cancelled ? control_event::touchCancel
                                          : control_event::touchUpInside);
}

} // namespace zephyra

#include "controls/named_knobs.h"

#include "platform/text/text_numbers.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace zephyra {

MokKnobEnum::MokKnobEnum(std::string key, std::vector<std::string> names)
    : MOK_KNOB(std::move(key)) {
    setDefaultValue(0.0f);
    setValue(0.0f);
    setNames(std::move(names));
}

void MokKnobEnum::setNames(std::vector<std::string> names) {
    names_ = std::move(names);
    // A range needs two ends; quantized() keeps a single name at 0.
    setRange(0.0f, static_cast<float>(std::max<std::size_t>(names_.size(), 2) - 1));
}

int MokKnobEnum::index() const {
    return static_cast<int>(value());
}

void MokKnobEnum::step(int by) {
    setValue(value() + static_cast<float>(by));
}

std::string MokKnobEnum::updateLabel() const {
    return names_.empty() ? std::string() : names_[static_cast<std::size_t>(index())];
}

float MokKnobEnum::quantized(float v) const {
    return names_.size() < 2 ? 0.0f : std::round(v);
}

namespace {

/// A number of small units is at home below this; from here on it would round to "1000.0".
constexpr double kThousand = 999.95;
/// From here on two decimals would round to "10.00".
constexpr double kTen = 9.995;

} // namespace

std::string MokKnobTime::updateLabel() const {
    const double ms = double{value()} * 1000.0;
    if (std::abs(ms) >= kThousand) return formatFixed(ms / 1000.0, 2) + " s";
    return formatFixed(ms, 1) + " ms";
}

std::string MokKnobHZ::updateLabel() const {
    const double hertz = double{valueExp()};
    if (std::abs(hertz) >= kThousand) return formatFixed(hertz / 1000.0, 2) + " kHz";
    return formatFixed(hertz, std::abs(hertz) < kTen ? 2 : 1) + " Hz";
}

MokKnobMidiNote::MokKnobMidiNote(std::string key) : MOK_KNOB(std::move(key)) {
    setRange(0.0f, 127.0f);
    setDefaultValue(60.0f);
    setValue(60.0f);
}

int MokKnobMidiNote::note() const {
    return static_cast<int>(std::lround(value()));
}

std::string MokKnobMidiNote::updateLabel() const {
    return midiNoteName(note());
}

std::string midiNoteName(int note) {
    static constexpr const char* kNames[] = {"C",  "C#", "D",  "D#", "E",  "F",
                                             "F#", "G",  "G#", "A",  "A#", "B"};
    const int held = std::clamp(note, 0, 127);
    return kNames[held % 12] + std::to_string(held / 12 - 1);
}

} // namespace zephyra

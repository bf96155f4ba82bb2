#include "stream/control_ranges.h"

#include "controls/curved_knobs.h"
#include "controls/note_values.h"
#include "engine/envelope_menu.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string_view>

namespace zephyra {

namespace {

using enum ControlId;
using enum ControlCurve;
using enum ControlKind;

constexpr float kLastEnvelope = static_cast<float>(kEnvelopeMenu.size() - 1);
constexpr float kStartEnvelope = static_cast<float>(kDefaultEnvelope);
constexpr float kLastSubdivision = static_cast<float>(kNoteValues.size() - 1);

// clang-format off
constexpr std::array<ControlRange, kControlCount> kRanges = {{
#define CONTROL(id, name, values, saved, moved, held, handler, parameter) \
    {ControlId::id, name, values, saved, moved},
#define RANGE(minimum, maximum, value, unit) minimum, maximum, value, linear, 1.0f, unit, continuous
#define CURVE(minimum, maximum, value, unit, stepness) minimum, maximum, value, exponential, stepness, unit, continuous
#define COUNT(minimum, maximum, value) minimum, maximum, value, linear, 1.0f, "", whole
#define SWITCH(value) 0.0f, 1.0f, value, linear, 1.0f, "", switching
#define CHOICE(last, value) 0.0f, last, value, linear, 1.0f, "", choice
#define KEPT(channel) channel, true
#define ELSEWHERE(channel) channel, false
#define NOT_KEPT "", false
#define MOVED(group, place) ControlGroup::group, place
#define NOT_MOVED ControlGroup::transport, kNotMoved
#include "stream/control_table.inl"
}};

constexpr std::array<bool, kControlCount> kIsParameter = {
#define CONTROL(id, name, values, saved, moved, held, handler, parameter) parameter,
#define PARAMETER(unit, field, property, action) true
#define NO_PARAMETER false
#include "stream/control_table.inl"
};
// clang-format on

static_assert(std::is_partitioned(kIsParameter.begin(), kIsParameter.end(),
                                  [](bool is) { return is; }),
              "the rows with a parameter come first: their places are addresses");

static_assert(std::all_of(kRanges.begin(), kRanges.end(),
                          [](const ControlRange& one) {
                              return one.minimum < one.maximum && one.minimum <= one.defaultValue &&
                                     one.defaultValue <= one.maximum;
                          }),
              "a default lies inside its range");

constexpr bool channelsDiffer() {
    for (const ControlRange& one : kRanges)
        for (const ControlRange& other : kRanges)
            if (one.id < other.id && *one.channel && std::string_view(one.channel) == other.channel)
                return false;
    return true;
}
static_assert(channelsDiffer(), "two controls would share a key of the state");

} // namespace

std::span<const ControlRange, kControlCount> controlRanges() noexcept {
    return kRanges;
}

const ControlRange& controlRange(ControlId id) noexcept {
    return kRanges[static_cast<std::size_t>(id)];
}

std::string controlChannel(const ControlRange& range, const std::string& suffix) {
    return range.id == dryWet ? range.channel : range.channel + suffix;
}

bool acceptsValue(const ControlRange& range, float displayed) noexcept {
    if (!(displayed >= range.minimum && displayed <= range.maximum)) return false;
    const bool counts = range.kind == whole || range.kind == choice;
    return !counts || displayed == std::trunc(displayed);
}

float displayedFromLinear(const ControlRange& range, float linearValue) noexcept {
    if (range.curve == linear) return std::clamp(linearValue, range.minimum, range.maximum);
    return bendInRange(linearValue, range.minimum, range.maximum, double{range.stepness});
}

float linearFromDisplayed(const ControlRange& range, float displayed) noexcept {
    if (range.curve == linear) return std::clamp(displayed, range.minimum, range.maximum);
    return bendInRange(displayed, range.minimum, range.maximum, 1.0 / double{range.stepness});
}

} // namespace zephyra

#include "plugin/lv2/atom_events.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>

namespace zephyra {

namespace {

/// A piece of a host's memory, which need not be aligned.
struct Bytes {
    const std::uint8_t* data;
    std::size_t size;

    template <typename Value>
    std::optional<Value> read(std::size_t at = 0) const ZEPHYRA_NONBLOCKING {
        Value value;
        if (size < sizeof value || at > size - sizeof value) return std::nullopt;
        std::memcpy(&value, data + at, sizeof value);
        return value;
    }
    /// What follows its first bytes, at most as long as length.
    Bytes after(std::size_t skipped, std::size_t length) const ZEPHYRA_NONBLOCKING {
        const std::size_t gone = std::min(skipped, size);
        return {data + gone, std::min(length, size - gone)};
    }
};

/// Atoms begin at multiples of eight bytes.
std::size_t padded(std::size_t size) ZEPHYRA_NONBLOCKING {
    return (size + 7) & ~std::size_t{7};
}

template <typename Value>
std::optional<double> asDouble(const Bytes& body) ZEPHYRA_NONBLOCKING {
    const std::optional<Value> value = body.read<Value>();
    if (!value) return std::nullopt;
    const auto number = static_cast<double>(*value);
    return std::isfinite(number) ? std::optional(number) : std::nullopt;
}

std::optional<double> number(LV2_URID type, const Bytes& body,
                             const Lv2Uris& uris) ZEPHYRA_NONBLOCKING {
    if (type == 0) return std::nullopt;
    if (type == uris.atomFloat) return asDouble<float>(body);
    if (type == uris.atomDouble) return asDouble<double>(body);
    if (type == uris.atomLong) return asDouble<std::int64_t>(body);
    if (type == uris.atomInt || type == uris.atomBool) return asDouble<std::int32_t>(body);
    return std::nullopt;
}

std::optional<double>* fieldOf(Lv2Position& position, LV2_URID key,
                               const Lv2Uris& uris) ZEPHYRA_NONBLOCKING {
    if (key == 0) return nullptr;
    if (key == uris.bar) return &position.bar;
    if (key == uris.barBeat) return &position.barBeat;
    if (key == uris.beat) return &position.beat;
    if (key == uris.beatUnit) return &position.beatUnit;
    if (key == uris.beatsPerBar) return &position.beatsPerBar;
    if (key == uris.beatsPerMinute) return &position.beatsPerMinute;
    if (key == uris.frame) return &position.frame;
    if (key == uris.speed) return &position.speed;
    return nullptr;
}

/// properties: an object's, one behind the other.
Lv2Position readPosition(Bytes properties, const Lv2Uris& uris) ZEPHYRA_NONBLOCKING {
    constexpr std::size_t kHead = sizeof(LV2_Atom_Property_Body);
    Lv2Position position;
    while (const auto property = properties.read<LV2_Atom_Property_Body>()) {
        const std::size_t length = property->value.size;
        if (length > properties.size - kHead) break;
        if (auto* const field = fieldOf(position, property->key, uris))
            *field = number(property->value.type, properties.after(kHead, length), uris);
        properties = properties.after(kHead + padded(length), properties.size);
    }
    return position;
}

bool isObject(LV2_URID type, const Lv2Uris& uris) ZEPHYRA_NONBLOCKING {
    return type != 0 &&
           (type == uris.atomObject || type == uris.atomBlank || type == uris.atomResource);
}

std::uint32_t frameOf(std::int64_t time) ZEPHYRA_NONBLOCKING {
    return static_cast<std::uint32_t>(
        std::clamp<std::int64_t>(time, 0, std::numeric_limits<std::uint32_t>::max()));
}

} // namespace

AtomEvents::AtomEvents(const LV2_Atom_Sequence* sequence, const Lv2Uris& uris) ZEPHYRA_NONBLOCKING
    : uris_(uris) {
    if (!sequence || sequence->atom.type != uris.atomSequence ||
        sequence->atom.size < sizeof sequence->body)
        return;
    at_ = reinterpret_cast<const std::uint8_t*>(sequence) + sizeof *sequence;
    left_ = sequence->atom.size - sizeof sequence->body;
}

std::optional<AtomEvent> AtomEvents::next() ZEPHYRA_NONBLOCKING {
    constexpr std::size_t kHead = sizeof(LV2_Atom_Event);
    const Bytes all{at_, left_};
    for (Bytes rest = all; const auto event = rest.read<LV2_Atom_Event>();) {
        const std::size_t length = event->body.size;
        if (length > rest.size - kHead) break;
        const Bytes body = rest.after(kHead, length);
        rest = rest.after(kHead + padded(length), rest.size);
        at_ = rest.data;
        left_ = rest.size;
        frame_ = std::max(frame_, frameOf(event->time.frames));

        if (event->body.type == uris_.midiEvent && length > 0)
            return AtomEvent{.frame = frame_, .midi = body.data, .midiLength = length};
        const auto object = body.read<LV2_Atom_Object_Body>();
        if (object && isObject(event->body.type, uris_) && object->otype == uris_.timePosition)
            return AtomEvent{.frame = frame_,
                             .position = readPosition(
                                 body.after(sizeof(LV2_Atom_Object_Body), body.size), uris_)};
    }
    left_ = 0;
    return std::nullopt;
}

} // namespace zephyra

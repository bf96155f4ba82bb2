#include "hosting/midi_inlet.h"

#include <utility>

namespace zephyra {

MidiInlet::MidiInlet(Instance& instance, Handler handler)
    : instance_(instance), handler_(std::move(handler)),
      source_(instance.runLoop.addSource([this] { take(); })) {}

MidiInlet::~MidiInlet() {
    instance_.runLoop.cancel(source_);
}

void MidiInlet::push(const std::uint8_t* bytes, std::size_t length) ZEPHYRA_NONBLOCKING {
    parser_.reset(); // an event carries its status itself
    MidiMessage message;
    for (std::size_t i = 0; i < length; ++i)
        if (parser_.next(bytes[i], message)) offer(message);
}

void MidiInlet::mark() ZEPHYRA_NONBLOCKING {
    if (!latest_.any()) ring_.push({});
}

// Once a burst has outrun the ring, the ring rests until all that was stored beside it has been
// taken: else it would bring a newer message before an older one.
void MidiInlet::offer(const MidiMessage& message) ZEPHYRA_NONBLOCKING {
    if (!latest_.any() && ring_.push(numbered(message))) return;
    if (!latest_.store(message)) replaced_ = replaced_ + 1;
}

// Asked first: what is stored while the ring is emptied is newer than something that may still go
// into the ring.
void MidiInlet::take() {
    const bool burst = latest_.any();
    // Without a clock to keep up with, all of it belongs before the next block.
    const bool inSteps = instance_.runLoop.clock() == RunLoop::Clock::wall;
    Sent sent;
    for (int taken = 0; ring_.take(sent); ++taken) {
        deliver(sent);
        if (inSteps && taken + 1 == kMostAtOnce) return; // the rest in the next turn
    }
    if (burst) latest_.take([this](const MidiMessage& message) { deliver(numbered(message)); });
}

MidiInlet::Sent MidiInlet::numbered(const MidiMessage& message) ZEPHYRA_NONBLOCKING {
    StateOrder& states = instance_.states;
    return {message, message.kind() == MidiKind::program ? states.ask() : states.now()};
}

void MidiInlet::deliver(const Sent& sent) {
    if (sent.message.bytes[0] == 0) {
        if (marked) marked();
        return;
    }
    const StateOrder::Delivery delivery(instance_.states, sent.number,
                                        sent.message.kind() == MidiKind::program);
    handler_(sent.message);
}

} // namespace zephyra

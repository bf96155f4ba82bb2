#include "plugin/standalone/jack_client.h"

#include <filesystem>

namespace zephyra {

namespace {

constexpr unsigned long kOfType = 0; // ports of built-in types have no size of their own

} // namespace

bool hasSystemMidi() {
    std::error_code unreadable;
    return std::filesystem::exists("/dev/snd/seq", unreadable);
}

Result<std::unique_ptr<JackClient>> JackClient::open(const std::string& name, Player& player) {
    const JackLibrary* const jack = JackLibrary::find();
    if (!jack) return Failure{"JACK is not installed"};
    jack_status_t status{};
    jack_client_t* const client = jack->client_open(name.c_str(), JackNoStartServer, &status);
    if (!client) return Failure{"no JACK server runs"};
    std::unique_ptr<JackClient> joined(new JackClient(*jack, client, player));
    if (!joined->addPorts()) return Failure{"the JACK server gives no more ports"};
    joined->listen();
    return joined;
}

JackClient::~JackClient() {
    jack_.client_close(client_);
}

bool JackClient::addPorts() {
    const auto add = [this](const char* name, const char* type, unsigned long flags) {
        return jack_.port_register(client_, name, type, flags, kOfType);
    };
    inputs_ = {add("in_left", JACK_DEFAULT_AUDIO_TYPE, JackPortIsInput),
               add("in_right", JACK_DEFAULT_AUDIO_TYPE, JackPortIsInput)};
    outputs_ = {add("out_left", JACK_DEFAULT_AUDIO_TYPE, JackPortIsOutput),
                add("out_right", JACK_DEFAULT_AUDIO_TYPE, JackPortIsOutput)};
    midi_ = add("midi_in", JACK_DEFAULT_MIDI_TYPE, JackPortIsInput);
    return inputs_[0] && inputs_[1] && outputs_[0] && outputs_[1] && midi_;
}

void JackClient::listen() {
    rate_ = jack_.get_sample_rate(client_);
    const auto lose = [](jack_status_t, const char*, void* self) {
        static_cast<JackClient*>(self)->isLost_ = true;
    };
    jack_.on_info_shutdown(client_, lose, this);
    const auto newRate = [](jack_nframes_t rate, void* self) {
        auto& client = *static_cast<JackClient*>(self);
        if (rate != client.rate_) client.isLost_ = true;
        return 0;
    };
    jack_.set_sample_rate_callback(client_, newRate, this);
    const auto late = [](void* self) {
        auto& count = static_cast<JackClient*>(self)->underruns_;
        count = count + 1;
        return 0;
    };
    jack_.set_xrun_callback(client_, late, this);
    const auto play = [](jack_nframes_t frames, void* self) {
        static_cast<JackClient*>(self)->process(frames);
        return 0;
    };
    jack_.set_process_callback(client_, play, this);
}

Result<void> JackClient::start() {
    if (isLost_ || jack_.activate(client_) != 0) return Failure{"the JACK server takes no player"};
    connectPhysical(JACK_DEFAULT_AUDIO_TYPE, JackPortIsOutput, inputs_.data(), inputs_.size());
    connectPhysical(JACK_DEFAULT_AUDIO_TYPE, JackPortIsInput, outputs_.data(), outputs_.size());
    if (!hasSystemMidi()) connectPhysical(JACK_DEFAULT_MIDI_TYPE, JackPortIsOutput, &midi_, 1);
    return {};
}

/// flags: the direction of the other end. One audio port is connected to each of ours, all MIDI
/// ports to the one that we have.
void JackClient::connectPhysical(const char* type, unsigned long flags, jack_port_t* const* ports,
                                 std::size_t count) {
    const char** const names = jack_.get_ports(client_, nullptr, type, JackPortIsPhysical | flags);
    const bool receives = (flags & JackPortIsInput) != 0;
    for (std::size_t i = 0; names && names[i]; ++i) {
        if (i >= count && count > 1) break;
        const char* const own = jack_.port_name(ports[i % count]);
        jack_.connect(client_, receives ? own : names[i], receives ? names[i] : own);
    }
    if (names) jack_.free(names);
}

void JackClient::stop() {
    jack_.deactivate(client_);
}

bool JackClient::hasInput() const {
    return !isLost_ && (jack_.port_connected(inputs_[0]) || jack_.port_connected(inputs_[1]));
}

/// A server without a master of time tells no tempo; its transport, which stands at first, is no
/// reason for ours to stand then.
PluginTransport JackClient::transport() const ZEPHYRA_NONBLOCKING {
    ZEPHYRA_TRUST_NONBLOCKING_BEGIN // reads what the server shares, made for this thread
        jack_position_t at{};
    const jack_transport_state_t state = jack_.transport_query(client_, &at);
    ZEPHYRA_TRUST_NONBLOCKING_END
    const bool isWhole = (at.valid & JackPositionBBT) && at.ticks_per_beat > 0.0 &&
                         at.beat_type > 0.0f && at.beats_per_bar > 0.0f;
    if (!isWhole) return {};
    const double beats =
        (at.bar - 1) * double{at.beats_per_bar} + (at.beat - 1) + at.tick / at.ticks_per_beat;
    return {.tempo = double{at.beats_per_minute},
            .numerator = double{at.beats_per_bar},
            .denominator = double{at.beat_type},
            .beats = beats * 4.0 / double{at.beat_type},
            .moving = state == JackTransportRolling};
}

void JackClient::process(std::uint32_t frames) ZEPHYRA_NONBLOCKING {
    ZEPHYRA_TRUST_NONBLOCKING_BEGIN // libjack's functions for this thread
        const float* inputs[2];
    float* outputs[2];
    for (std::size_t i = 0; i < 2; ++i) {
        inputs[i] = static_cast<const float*>(jack_.port_get_buffer(inputs_[i], frames));
        outputs[i] = static_cast<float*>(jack_.port_get_buffer(outputs_[i], frames));
    }
    void* const midi = jack_.port_get_buffer(midi_, frames);
    const std::uint32_t events = jack_.midi_get_event_count(midi);
    for (std::uint32_t i = 0; i < events; ++i)
        if (jack_midi_event_t event; jack_.midi_event_get(&event, midi, i) == 0)
            player_.jackMidi(event.buffer, event.size, event.time);
    ZEPHYRA_TRUST_NONBLOCKING_END
    player_.jackBlock(inputs, outputs, frames, transport());
}

} // namespace zephyra

// JackEar: a JACK client that hears the standalone program and plays it notes.
#pragma once

#include <atomic>
#include <cmath>
#include <cstring>
#include <jack/jack.h>
#include <jack/midiport.h>
#include <string>

namespace zephyra {

class JackEar {
public:
    JackEar() {
        jack_set_error_function([](const char*) {});
        client_ = jack_client_open("ear", JackNoStartServer, nullptr);
        if (!client_) return;
        in_ = jack_port_register(client_, "in", JACK_DEFAULT_AUDIO_TYPE, JackPortIsInput, 0);
        out_ = jack_port_register(client_, "out", JACK_DEFAULT_AUDIO_TYPE, JackPortIsOutput, 0);
        notes_ = jack_port_register(client_, "notes", JACK_DEFAULT_MIDI_TYPE, JackPortIsOutput, 0);
        jack_set_process_callback(client_, &JackEar::process, this);
        jack_activate(client_);
    }
    ~JackEar() {
        if (client_) jack_client_close(client_);
    }
    JackEar(const JackEar&) = delete;
    JackEar& operator=(const JackEar&) = delete;

    bool isThere() const { return client_ != nullptr; }
    /// Whether Zephyra's ports are there and connected to this.
    bool listensTo(const std::string& program) {
        const auto isDone = [](int code) { return code == 0 || code == EEXIST; };
        return isDone(jack_connect(client_, (program + ":out_left").c_str(), "ear:in")) &&
               isDone(jack_connect(client_, "ear:out", (program + ":in_left").c_str())) &&
               isDone(jack_connect(client_, "ear:notes", (program + ":midi_in").c_str()));
    }
    bool isConnected(const std::string& port) const {
        jack_port_t* const found = jack_port_by_name(client_, port.c_str());
        const char** const others = found ? jack_port_get_all_connections(client_, found) : nullptr;
        if (others) jack_free(others);
        return others != nullptr;
    }
    void play(int note) { next_ = note; }
    /// Into the program's input, from now on.
    void whistle() { whistles_ = true; }
    /// The loudest since the last call.
    float peak() { return peak_.exchange(0.0f); }

private:
    static int process(jack_nframes_t frames, void* self) {
        auto& ear = *static_cast<JackEar*>(self);
        const auto* const in = static_cast<float*>(jack_port_get_buffer(ear.in_, frames));
        float peak = ear.peak_;
        for (jack_nframes_t i = 0; i < frames; ++i) peak = std::fmax(peak, std::fabs(in[i]));
        ear.peak_ = peak;
        auto* const tone = static_cast<float*>(jack_port_get_buffer(ear.out_, frames));
        for (jack_nframes_t i = 0; i < frames; ++i, ++ear.frame_)
            tone[i] = ear.whistles_ ? 0.5f * std::sin(0.1f * static_cast<float>(ear.frame_)) : 0.0f;
        void* const out = jack_port_get_buffer(ear.notes_, frames);
        jack_midi_clear_buffer(out);
        if (const int note = ear.next_.exchange(-1); note >= 0) {
            const jack_midi_data_t bytes[] = {0x90, static_cast<jack_midi_data_t>(note), 100};
            jack_midi_event_write(out, 0, bytes, sizeof bytes);
        }
        return 0;
    }

    jack_client_t* client_ = nullptr;
    jack_port_t *in_ = nullptr, *out_ = nullptr, *notes_ = nullptr;
    std::atomic<bool> whistles_ = false;
    unsigned frame_ = 0; // the process callback's
    std::atomic<float> peak_ = 0.0f;
    std::atomic<int> next_ = -1;
};

} // namespace zephyra

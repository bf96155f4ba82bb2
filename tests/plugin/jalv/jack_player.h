// JackPlayer: a JACK client that plays a MIDI file into another one, and records what it answers.
#pragma once

#include "rendering/events/midi_file.h"
#include "tests/support/testing.h"

#include <jack/jack.h>
#include <jack/midiport.h>

namespace zephyra {

class JackPlayer {
public:
    explicit JackPlayer(std::vector<TimedMidi> messages) : messages_(std::move(messages)) {
        jack_set_error_function([](const char*) {});
        client_ = jack_client_open("player", JackNoStartServer, nullptr);
        if (!client_) return;
        midi_ = jack_port_register(client_, "midi", JACK_DEFAULT_MIDI_TYPE, JackPortIsOutput, 0);
        in_ = jack_port_register(client_, "in", JACK_DEFAULT_AUDIO_TYPE, JackPortIsInput, 0);
        noise_ = jack_port_register(client_, "noise", JACK_DEFAULT_AUDIO_TYPE, JackPortIsOutput, 0);
        jack_set_process_callback(client_, &JackPlayer::process, this);
        jack_activate(client_);
    }
    ~JackPlayer() {
        if (client_) jack_client_close(client_);
    }
    JackPlayer(const JackPlayer&) = delete;
    JackPlayer& operator=(const JackPlayer&) = delete;

    bool isThere() const { return client_ != nullptr; }
    bool connect(const std::string& from, const std::string& to) {
        const int code = jack_connect(client_, from.c_str(), to.c_str());
        return code == 0 || code == EEXIST;
    }
    /// Begins the file.
    void play() { plays_ = true; }
    bool hasPlayed() const { return next_ == messages_.size(); }
    /// The loudest of the next so many seconds.
    float peakOf(double seconds) {
        peak_ = 0.0f;
        const jack_nframes_t until = frames_ + static_cast<jack_nframes_t>(seconds * 48000);
        while (frames_ < until) std::this_thread::sleep_for(std::chrono::milliseconds(5));
        return peak_;
    }

private:
    static int process(jack_nframes_t frames, void* self) {
        static_cast<JackPlayer*>(self)->cycle(frames);
        return 0;
    }
    void cycle(jack_nframes_t frames) {
        const auto* const in = static_cast<float*>(jack_port_get_buffer(in_, frames));
        auto* const noise = static_cast<float*>(jack_port_get_buffer(noise_, frames));
        float peak = peak_;
        for (jack_nframes_t i = 0; i < frames; ++i) {
            peak = std::max(peak, std::abs(in[i]));
            noise[i] =
                static_cast<float>((random_ = random_ * 1664525u + 1013904223u) >> 8) * 0x1p-25f -
                0.25f;
        }
        peak_ = peak;
        frames_ = frames_ + frames;
        void* const out = jack_port_get_buffer(midi_, frames);
        jack_midi_clear_buffer(out);
        if (!plays_) return;
        for (std::size_t at = next_; at < messages_.size(); next_ = ++at) {
            const auto frame = static_cast<jack_nframes_t>(messages_[at].seconds * 48000);
            if (frame >= played_ + frames) break;
            jack_midi_event_write(out, frame - std::min(played_, frame), messages_[at].bytes.data(),
                                  messages_[at].length);
        }
        played_ += frames;
    }

    const std::vector<TimedMidi> messages_;
    jack_client_t* client_ = nullptr;
    jack_port_t *midi_ = nullptr, *in_ = nullptr, *noise_ = nullptr;
    std::atomic<bool> plays_ = false;
    std::atomic<std::size_t> next_ = 0;
    std::atomic<jack_nframes_t> frames_ = 0;
    std::atomic<float> peak_ = 0.0f;
    jack_nframes_t played_ = 0;
    std::uint32_t random_ = 1;
};

} // namespace zephyra

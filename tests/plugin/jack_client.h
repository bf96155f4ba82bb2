// JackServer, JackClient: JACK without a sound card, and one who plays to programs and hears them.
#pragma once

#include "tests/support/child_program.h"

#include <jack/jack.h>
#include <jack/midiport.h>

namespace zephyra {

/// Its ports are test:midi, test:in and test:out.
class JackClient {
public:
    struct Message {
        double seconds;
        std::array<std::uint8_t, 3> bytes;
    };

    JackClient() {
        jack_set_error_function([](const char*) {});
        client_ = jack_client_open("test", JackNoStartServer, nullptr);
        if (!client_) return;
        const auto port = [this](const char* name, const char* type, JackPortFlags direction) {
            return jack_port_register(client_, name, type, direction, 0);
        };
        midi_ = port("midi", JACK_DEFAULT_MIDI_TYPE, JackPortIsOutput);
        in_ = port("in", JACK_DEFAULT_AUDIO_TYPE, JackPortIsInput);
        out_ = port("out", JACK_DEFAULT_AUDIO_TYPE, JackPortIsOutput);
        jack_set_process_callback(client_, &JackClient::process, this);
        jack_activate(client_);
    }
    ~JackClient() {
        if (client_) jack_client_close(client_);
    }
    JackClient(const JackClient&) = delete;
    JackClient& operator=(const JackClient&) = delete;

    bool isThere() const { return client_ != nullptr; }
    bool connect(const std::string& from, const std::string& to) {
        const int code = jack_connect(client_, from.c_str(), to.c_str());
        return code == 0 || code == EEXIST;
    }
    bool isConnected(const std::string& port) const {
        jack_port_t* const found = jack_port_by_name(client_, port.c_str());
        const char** const others = found ? jack_port_get_all_connections(client_, found) : nullptr;
        if (others) jack_free(others);
        return others != nullptr;
    }
    /// Once; times from the next cycle on.
    void play(std::vector<Message> messages) {
        messages_ = std::move(messages);
        plays_ = true;
    }
    bool hasPlayed() const { return plays_ && next_ == messages_.size(); }
    /// From now on.
    void whistle() { whistles_ = true; }
    /// The loudest of the next so many seconds.
    float peakOf(double seconds) {
        peak_ = 0.0f;
        const jack_nframes_t until = frames_ + static_cast<jack_nframes_t>(seconds * 48000);
        comesTrue([&] { return frames_ >= until; });
        return peak_;
    }

private:
    static int process(jack_nframes_t frames, void* self) {
        static_cast<JackClient*>(self)->cycle(frames);
        return 0;
    }
    void cycle(jack_nframes_t frames) {
        const auto* const in = static_cast<float*>(jack_port_get_buffer(in_, frames));
        auto* const out = static_cast<float*>(jack_port_get_buffer(out_, frames));
        float peak = peak_;
        for (jack_nframes_t i = 0; i < frames; ++i) {
            peak = std::max(peak, std::abs(in[i]));
            out[i] = whistles_ ? 0.5f * std::sin(0.1f * static_cast<float>(frames_ + i)) : 0.0f;
        }
        peak_ = peak;
        frames_ += frames;
        void* const midi = jack_port_get_buffer(midi_, frames);
        jack_midi_clear_buffer(midi);
        if (!plays_) return;
        for (std::size_t at = next_; at < messages_.size(); next_ = ++at) {
            const auto frame = static_cast<jack_nframes_t>(messages_[at].seconds * 48000);
            if (frame >= played_ + frames) break;
            jack_midi_event_write(midi, frame - std::min(played_, frame),
                                  messages_[at].bytes.data(), 3);
        }
        played_ += frames;
    }

    jack_client_t* client_ = nullptr;
    jack_port_t *midi_ = nullptr, *in_ = nullptr, *out_ = nullptr;
    std::vector<Message> messages_;
    std::atomic<bool> plays_ = false, whistles_ = false;
    std::atomic<std::size_t> next_ = 0;
    std::atomic<jack_nframes_t> frames_ = 0;
    std::atomic<float> peak_ = 0.0f;
    jack_nframes_t played_ = 0;
};

/// Of a name of this process, which its clients and children look for; a test skips without jackd.
struct JackServer {
    explicit JackServer(const std::string& rate = "48000")
        : program({"jackd", "-n", kName, "-r", "-d", "dummy", "-r", rate, "-p", "256"}, {},
                  folder / "log") {
        ::setenv("JACK_DEFAULT_SERVER", kName.c_str(), 1);
        isUp = comesTrue([this] { return answers() || !program.runs(); }) && program.runs();
    }
    static bool answers() {
        jack_set_error_function([](const char*) {});
        jack_client_t* const probe = jack_client_open("probe", JackNoStartServer, nullptr);
        if (probe) jack_client_close(probe);
        return probe != nullptr;
    }
    ~JackServer() { program.end(SIGTERM); } // a killed one stays among the eight that JACK counts

    inline static const std::string kName = "zephyra-test-" + std::to_string(::getpid());
    const TemporaryFolder folder;
    ChildProgram program;
    bool isUp = false;
};

} // namespace zephyra

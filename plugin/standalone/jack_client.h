// JackClient: this program at a JACK server: stereo in and out, MIDI in, the server's transport.
#pragma once

#include "hosting/plugin_block.h"
#include "platform/text/result.h"
#include "platform/threads/realtime.h"
#include "platform/threads/relaxed.h"
#include "plugin/standalone/jack_library.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

namespace zephyra {

/// Whether devices' MIDI comes through ALSA's sequencer. Any thread but RENDER.
bool hasSystemMidi();

/// Order of calls: open, start, and destroy; a client that is lost stays lost. MAIN unless said
/// otherwise.
class JackClient {
public:
    /// Who plays, on JACK's thread: RENDER.
    class Player {
    public:
        virtual ~Player() = default;
        /// A message of the block that comes, before it.
        virtual void jackMidi(const std::uint8_t* bytes, std::size_t length,
                              std::uint32_t frame) ZEPHYRA_NONBLOCKING = 0;
        /// inputs, outputs: two channels each; the outputs are to be overwritten.
        virtual void jackBlock(const float* const* inputs, float* const* outputs,
                               std::uint32_t frames,
                               const PluginTransport& transport) ZEPHYRA_NONBLOCKING = 0;
    };

    /// Joins the running server, which is never started from here. player must outlive the client.
    /// Fails with one line.
    static Result<std::unique_ptr<JackClient>> open(const std::string& name, Player& player);
    ~JackClient();
    JackClient(const JackClient&) = delete;
    JackClient& operator=(const JackClient&) = delete;

    /// Begins to play, connected to the first two physical ports of each direction; to physical
    /// MIDI ports only where the system's own MIDI is missing, which would bring each note twice.
    Result<void> start();
    /// On return player is left alone, until start().
    void stop();

    double sampleRate() const { return jack_.get_sample_rate(client_); } ///< Hz
    std::uint32_t blockFrames() const { return jack_.get_buffer_size(client_); }
    int underruns() const { return underruns_; }
    /// Whether anything is connected to an input.
    bool hasInput() const;
    /// Whether the server is gone or runs at another rate: nothing is played any more.
    bool isLost() const { return isLost_; }

private:
    JackClient(const JackLibrary& jack, jack_client_t* client, Player& player)
        : jack_(jack), client_(client), player_(player) {}

    bool addPorts();
    void listen();
    void connectPhysical(const char* type, unsigned long flags, jack_port_t* const* ports,
                         std::size_t count);
    void process(std::uint32_t frames) ZEPHYRA_NONBLOCKING;
    PluginTransport transport() const ZEPHYRA_NONBLOCKING;

    const JackLibrary& jack_;
    jack_client_t* const client_;
    Player& player_;
    std::array<jack_port_t*, 2> inputs_{}, outputs_{};
    jack_port_t* midi_ = nullptr;
    jack_nframes_t rate_ = 0;
    Relaxed<bool> isLost_ = false;
    Relaxed<int> underruns_ = 0;
};

} // namespace zephyra

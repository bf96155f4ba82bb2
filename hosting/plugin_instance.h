// PluginInstance: one instance of the system as every plug-in format needs it.
#pragma once

#include "hosting/block_events.h"
#include "hosting/host_channels.h"
#include "hosting/hosted_instance.h"
#include "hosting/instrument_notes.h"
#include "hosting/offline_host.h"
#include "hosting/output_monitor.h"
#include "hosting/plugin_block.h"
#include "hosting/plugin_session.h"
#include "hosting/plugin_settings.h"
#include "hosting/plugin_tail.h"
#include "hosting/render_load.h"
#include "hosting/shown_time.h"
#include "hosting/unit_host.h"
#include "platform/audio_unit/audio_unit_preset.h"
#include "platform/text/result.h"
#include "platform/threads/relaxed.h"
#include "platform/threads/wall_clock_driver.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace zephyra {

/// What is loaded.
enum class PluginKind : std::uint8_t {
    effect,     ///< audio in and out, MIDI in; fresh, it plays its live input at once
    instrument, ///< MIDI in, audio out; fresh, it has the demonstration sample and waits for a note
    standalone, ///< an instrument that has an input, for LIVE; what comes in is not passed on
};

/// Owns instance, audio unit, view controller and the clocks that drive them. A shell translates a
/// format's calls into these and knows nothing of the system. Order of calls: construct, prepare,
/// blocks, release, and again; state, parameters and programs whenever it exists. Values of
/// parameters are linear, as the audio unit has them; see plugin_parameters.h for what hosts show.
/// What comes in comes out in the same block: there is no latency to tell.
///
/// HOST stands for any thread but RENDER, also while another one renders; it may wait for MAIN.
class PluginInstance {
public:
    static constexpr double kLeastRate = 8000.0, kMostRate = 384000.0; ///< Hz

    /// prepare: see HostedInstance; without one the folders are standardFolders(). HOST. Throws
    /// std::bad_alloc.
    explicit PluginInstance(PluginKind kind, const HostedInstance::Prepare& prepare = {});
    /// OFF.
    ~PluginInstance();
    PluginInstance(const PluginInstance&) = delete;
    PluginInstance& operator=(const PluginInstance&) = delete;

    PluginKind kind() const noexcept { return kind_; }
    bool isInstrument() const noexcept { return kind_ != PluginKind::effect; }

    // --- Sound ---

    /// Allocates all that blocks need. Failures leave it unprepared: blocks are silent then. OFF.
    Result<void> prepare(const PluginSetup& setup);
    /// Whose end a host does not tell any more counts as ended: what notes began stops. OFF.
    void release();

    /// What is to act in the next block, at a frame of it; one behind its end acts as much later.
    /// Addresses above the table, values that are not finite, and messages of more than three bytes
    /// are ignored. RENDER.
    void queueParameter(AUParameterAddress address, AUValue linear,
                        std::uint32_t frame = 0) ZEPHYRA_NONBLOCKING;
    void queueRamp(AUParameterAddress address, AUValue linearEnd, std::uint32_t frames,
                   std::uint32_t frame = 0) ZEPHYRA_NONBLOCKING;
    void queueMidi(const std::uint8_t* bytes, std::size_t length,
                   std::uint32_t frame = 0) ZEPHYRA_NONBLOCKING;

    /// A block in real time: MAIN is driven by the wall clock. RENDER.
    void render(const PluginBlock& block) ZEPHYRA_NONBLOCKING;
    /// A block of a bounce: the calling thread is RENDER and MAIN, the run loop follows the
    /// samples, and work that was begun is waited for. The same blocks, events, state and seed give
    /// the same bytes. Real-time and offline blocks may follow each other as they like. RENDER, but
    /// it may wait and allocate.
    void renderOffline(const PluginBlock& block);

    /// Passes the input on (an instrument: silence) from the next block on, without a click. Any
    /// thread.
    void setBypass(bool on) ZEPHYRA_NONBLOCKING { bypassed_ = on; }
    bool isBypassed() const ZEPHYRA_NONBLOCKING { return bypassed_; }

    /// How long something may sound after the input and the notes have ended, in seconds: see
    /// PluginTail. Any thread.
    double tailSeconds() const ZEPHYRA_NONBLOCKING { return tail_.seconds(); }

    /// Where a window's meters look; see WatchCount. It is this instance's own.
    OutputMonitor& monitor() noexcept { return monitor_; }
    /// Which share of a block's time its rendering takes, 0..1 and above, smoothed; 0 in a bounce,
    /// which has no time to keep. Any thread.
    double cpuShare() const noexcept { return load_.share(); }
    /// Grains that found no free voice, ever. Any thread.
    std::uint64_t droppedGrains() const noexcept;
    /// Where the host's music stood at the last block's end. Any thread.
    MusicPosition music() const ZEPHYRA_NONBLOCKING { return shownTime_.position(); }

    // --- Parameters; a GestureListener on system() hears what hands do to them ---

    /// What the parameter stands at, modulation included; 0 above the table. Any thread.
    AUValue parameter(AUParameterAddress address) const ZEPHYRA_NONBLOCKING;
    /// A value of the host's from now on, also while nothing renders. Ignored as in queueParameter.
    /// Any thread.
    void setParameter(AUParameterAddress address, AUValue linear) ZEPHYRA_NONBLOCKING;

    // --- State ---

    /// Everything, sounds included, as a host keeps it in its session; the bytes are a property
    /// list with a StateVersion. Empty after a line in the log when it cannot be written. HOST.
    std::string state();
    /// Applies what state() gave, a state of the command or a preset's snapshot, before it returns
    /// but for the sound's file. Then an effect plays, and an instrument waits for a note or Play,
    /// unless Play Stop was set since; with Scan Sync on it plays while the host's transport moves.
    /// A failure says what is wrong, and nothing has changed: what cannot be parsed, a version
    /// that is none, or a newer major one. HOST.
    Result<void> setState(std::span<const std::byte> bytes);

    // --- Programs: the factory's presets ---

    /// "Name (Bank)", in the order of the numbers. The list never changes. HOST.
    const std::vector<AUAudioUnitPreset>& programs();
    /// The number of the one chosen last, which a state keeps; none at first. HOST.
    std::optional<std::size_t> chosenProgram();
    /// The same, but 0 at first: hosts know no none. HOST.
    std::size_t currentProgram() { return chosenProgram().value_or(0); }
    /// What plays goes on playing. Numbers above the last are ignored. HOST.
    void setProgram(std::size_t number);

    // --- What a player chooses ---

    PluginSettings settings();                      ///< HOST
    void setSettings(const PluginSettings& chosen); ///< HOST

    /// Plays a sound file from now on; what goes wrong becomes an alert. HOST.
    void loadSample(const std::filesystem::path& path);

    /// Whom a screen or a test works on, inside RunLoop::Scope of its instance.
    HostedInstance& system() noexcept { return system_; }

private:
    void choose(const PluginSession& session);
    void standAsRestored(StateOrder::Number asked);
    void queue(std::uint32_t frame, const AURenderEvent& event) ZEPHYRA_NONBLOCKING;

    // plugin_instance_render.cpp
    void renderCycle(const PluginBlock& block, std::uint32_t begin,
                     std::uint32_t end) ZEPHYRA_NONBLOCKING;
    void close(const PluginBlock& block, const HostCycle& cycle, std::uint32_t begin,
               OSStatus status) ZEPHYRA_NONBLOCKING;
    void renderOfflineBlock(const PluginBlock& block);
    void actNow() ZEPHYRA_NONBLOCKING;
    void actUnprepared() ZEPHYRA_NONBLOCKING;
    void pushMidi(const AURenderEvent* events) ZEPHYRA_NONBLOCKING;

    // plugin_instance_restart.cpp
    void mixSeed();
    bool startsAnew(StartAnew when) const ZEPHYRA_NONBLOCKING;
    void startAnew() ZEPHYRA_NONBLOCKING;
    void startAnewOffline();

    const PluginKind kind_;
    HostedInstance system_;
    UnitHost host_;
    OfflineHost offline_;
    BlockEvents events_;
    bool rendersOffline_ = false; // the block before; RENDER
    HostChannels channels_;
    ShownTime shownTime_;
    PluginTail tail_;
    OutputMonitor monitor_;
    RenderLoad load_;
    Relaxed<bool> bypassed_ = false;
    Relaxed<StartAnew> startAnew_ = StartAnew::inBounces; // the setting, for RENDER
    Relaxed<bool> modulationStarts_ = false;              // what RENDER asks of restart_
    RunLoop::Token restart_ = 0;
    PluginSession session_{.settings = {}, .program = {}}; // MAIN
    InstrumentNotes notes_;
    WallClockDriver driver_; // ends before what it drives
};

} // namespace zephyra

// PluginTail: how long an instance may sound on by itself.
#pragma once

#include "hosting/hosted_instance.h"
#include "platform/threads/relaxed.h"

namespace zephyra {

/// Counted from the end of the input and of the last note. HOST.
class PluginTail {
public:
    /// instance must outlive this.
    explicit PluginTail(HostedInstance& instance);
    ~PluginTail();
    PluginTail(const PluginTail&) = delete;
    PluginTail& operator=(const PluginTail&) = delete;

    /// Of the output, Hz above 0. Any thread.
    void setSampleRate(double rate) ZEPHYRA_NONBLOCKING { sampleRate_ = rate; }

    /// The echo's repeats (see echoTail), the grains that sound on, and what they are cut from: of
    /// a sound a stop's fade, of live input what LIVE remembers. Any thread.
    double seconds() const ZEPHYRA_NONBLOCKING;

private:
    double grainSeconds() const ZEPHYRA_NONBLOCKING;
    double echoSeconds() const ZEPHYRA_NONBLOCKING;

    HostedInstance& instance_;
    RunLoop::Token source_ = 0;
    Relaxed<double> sampleRate_{44100.0};
    Relaxed<double> fadeOut_{0.0}; // seconds, as MAIN found it last
};

} // namespace zephyra

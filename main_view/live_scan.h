// LiveScan: where the scan of live input stands that nobody has placed.
#pragma once

#include <cstdint>
#include <memory>

namespace zephyra {

class HostLink;
class MOK_SCRUB_GRANULATOR;

/// A little behind the newest frame, until somebody sets the scan's speed, its position or its
/// region. MAIN.
class LiveScan {
public:
    /// link, which need not be built yet, hears where the scan stands. All outlive this.
    LiveScan(MOK_SCRUB_GRANULATOR& stream, HostLink& link);
    ~LiveScan();
    LiveScan(const LiveScan&) = delete;
    LiveScan& operator=(const LiveScan&) = delete;

    /// While LIVE is on.
    void standBehindInput();
    /// The same where it stands so already: the session's rate may be another one.
    void standAgain();
    /// LIVE has ended. A file then scans from its start, and at its own speed unless one was set,
    /// as one does that was loaded first. A captured sound goes on standing where it stood.
    void leaveInput();

private:
    bool wasChosen() const;
    void leave();
    void forgetChoices();

    MOK_SCRUB_GRANULATOR& stream_;
    HostLink& link_;
    bool speedWasSet_ = false;  // by somebody, since the scan was placed
    std::uint64_t choices_ = 0; // of the stream, when the scan was placed
    bool standsBehindInput_ = false;
    std::shared_ptr<const bool> alive_ = std::make_shared<bool>(true); // posted tasks look at it
};

} // namespace zephyra

#include "screens/desktop/touch_screen.h"

#if defined(__linux__)

#include "screens/desktop/touch_reader.h"
#include "screens/desktop/x11_display.h"

#include <juce_gui_basics/juce_gui_basics.h>

#include <cstdint>

namespace zephyra {

namespace {

class ReadScreen final : public TouchScreen {
public:
    explicit ReadScreen(std::unique_ptr<TouchReader> reader) : reader_(std::move(reader)) {
        // JUCE may still call what it has picked for this round.
        juce::LinuxEventLoop::registerFdCallback(
            reader_->descriptor(), [watched = std::weak_ptr<TouchReader>(reader_)](int) {
                if (const auto alive = watched.lock()) alive->read();
            });
    }
    ~ReadScreen() override { juce::LinuxEventLoop::unregisterFdCallback(reader_->descriptor()); }

private:
    std::shared_ptr<TouchReader> reader_;
};

} // namespace

std::unique_ptr<TouchScreen> TouchScreen::of(juce::ComponentPeer& peer, Sink sink) {
    const std::string display = x11::displayName();
    if (display.empty()) return nullptr;
    const auto window = reinterpret_cast<std::uintptr_t>(peer.getNativeHandle());
    auto reader = TouchReader::open(display.c_str(), static_cast<::Window>(window),
                                    [&peer, sink = std::move(sink)](TouchEvent event) {
                                        if (!juce::ComponentPeer::isValidPeer(&peer)) return;
                                        const double pixels =
                                            peer.getPlatformScaleFactor() *
                                            double{peer.getComponent().getDesktopScaleFactor()};
                                        event.at = {event.at.x / pixels, event.at.y / pixels};
                                        sink(event);
                                    });
    if (!reader) return nullptr;
    return std::make_unique<ReadScreen>(std::move(reader));
}

} // namespace zephyra

#else

namespace zephyra {
std::unique_ptr<TouchScreen> TouchScreen::of(juce::ComponentPeer&, Sink) {
    return nullptr; // JUCE reads it itself
}
} // namespace zephyra

#endif

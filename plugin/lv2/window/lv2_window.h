// Lv2Window: the window of one instance as an LV2 host shows it, inside a window of the host's.
#pragma once

#include "plugin/lv2/window/host_writes.h"
#include "plugin/lv2/window/message_thread.h"

#include <atomic>
#include <lv2/ui/ui.h>
#include <memory>

namespace zephyra {

/// Made, called and destroyed by the host's window thread.
class Lv2Window {
public:
    /// What the host wants and offers.
    struct Host {
        LV2UI_Write_Function write = nullptr;
        LV2UI_Controller controller = nullptr;
        void* parent = nullptr;               ///< an X11 window
        const LV2UI_Resize* resize = nullptr; ///< may be null, and outlives the window, as
        const LV2UI_Touch* touch = nullptr;   ///< touch does
        double scale = 1.0;                   ///< pixels a unit at a zoom of 1
    };

    /// thread runs; plugin outlives it.
    Lv2Window(Lv2Plugin& plugin, const Host& host, std::shared_ptr<MessageThread> thread);
    ~Lv2Window();
    Lv2Window(const Lv2Window&) = delete;
    Lv2Window& operator=(const Lv2Window&) = delete;

    /// The X11 window; null when none could be made.
    LV2UI_Widget widget() const noexcept { return widget_; }

    /// Tells the host what hands have done, and which size the window wants.
    void idle();
    /// The host gives it so many pixels.
    void resize(int width, int height);

private:
    class Content;
    void askForSize();

    std::shared_ptr<MessageThread> thread_;
    const LV2UI_Resize* const resize_;
    std::atomic<bool> asksForSize_ = false; // its zoom has changed
    HostWrites writes_;
    std::unique_ptr<Content> content_; // of the message thread
    LV2UI_Widget widget_ = nullptr;
};

} // namespace zephyra

#include "tests/plugin/lv2_window/second_window.h"

#include <utility>

namespace window_host {

SecondWindow::SecondWindow(Display* server) : HostWindow(server) {
    handle_ = reinterpret_cast<void* (*)(unsigned long, unsigned long*)>(
        entry(SECOND_JUCE, "second_open"))(parent, &widget);
    if (!widget) fail("no second window");
}

void SecondWindow::close() {
    if (handle_)
        reinterpret_cast<void (*)(void*)>(entry(SECOND_JUCE, "second_close"))(
            std::exchange(handle_, nullptr));
}

} // namespace window_host

// OnADisplay: an X server that nobody sees, JUCE on it, and a host's connection beside JUCE's.
#pragma once

#include "tests/support/child_program.h" // before X's macros

#define JUCE_GUI_BASICS_INCLUDE_XHEADERS 1
#include <juce_gui_basics/juce_gui_basics.h>

#include <optional>

namespace zephyra {

/// Errors that the host was told; its handler is the same in all tests of a process, since ours
/// remembers whom it took the place of first.
inline int hostsErrors = 0;
inline int countError(::Display*, ::XErrorEvent*) {
    return ++hostsErrors, 0;
}

struct OnADisplay : testing::Test {
    void SetUp() override {
        static HiddenDisplay display;
        if (display.name().empty()) GTEST_SKIP() << "Xvfb is not installed (xvfb)";
        ::setenv("DISPLAY", display.name().c_str(), 1);
        host = ::XOpenDisplay(nullptr);
        hostsErrors = 0;
        ::XSetErrorHandler(countError);
        gui.emplace();
        juce::Desktop::getInstance().getDisplays();
    }
    void TearDown() override {
        gui.reset();
        if (host) ::XCloseDisplay(host);
    }
    static ::Display* juceDisplay() { return juce::XWindowSystem::getInstance()->getDisplay(); }

    std::optional<juce::ScopedJuceInitialiser_GUI> gui;
    ::Display* host = nullptr;
};

} // namespace zephyra

// second_open, second_close: what another maker's JUCE plug-in brings into the process, a window
// that moves and the message thread of JUCE's own wrappers.
#define JUCE_GUI_BASICS_INCLUDE_XHEADERS 1
#include <juce_gui_basics/juce_gui_basics.h>

#include <juce_audio_plugin_client/utility/juce_LinuxMessageThread.h> // stands on the one above

#include <memory>

namespace {

struct Content final : juce::Component, juce::Timer {
    explicit Content(void* parent) {
        setOpaque(true);
        setSize(300, 200);
        addToDesktop(0, parent);
        setVisible(true);
        startTimerHz(60);
    }
    void timerCallback() override {
        ++turns_;
        repaint();
    }
    void paint(juce::Graphics& graphics) override {
        graphics.fillAll(juce::Colour(0xFF'33'66'99).withRotatedHue(turns_ / 600.0f));
    }

    float turns_ = 0.0f;
};

/// As in a wrapper: JUCE lives, and its thread runs, while there is an instance.
struct Second {
    explicit Second(void* parent) {
        const juce::MessageManagerLock lock;
        content = std::make_unique<Content>(parent);
    }
    ~Second() {
        const juce::MessageManagerLock lock;
        content.reset();
    }

    const juce::ScopedJuceInitialiser_GUI juce;
    const juce::SharedResourcePointer<juce::MessageThread> thread;
    std::unique_ptr<Content> content;
};

} // namespace

extern "C" {

__attribute__((visibility("default"))) void* second_open(unsigned long parent,
                                                         unsigned long* widget);
__attribute__((visibility("default"))) void second_close(void* window);

void* second_open(unsigned long parent, unsigned long* widget) {
    auto* const window = new Second(reinterpret_cast<void*>(parent));
    *widget = reinterpret_cast<unsigned long>(window->content->getWindowHandle());
    return window;
}

void second_close(void* window) {
    delete static_cast<Second*>(window);
}
}

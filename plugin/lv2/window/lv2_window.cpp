#include "plugin/lv2/window/lv2_window.h"

#include "screens/desktop/host_keys.h"
#include "screens/remembered_screen.h"

#include <functional>
#include <utility>

namespace zephyra {

class Lv2Window::Content final : public juce::Component {
public:
    /// grown: it has made itself larger or smaller.
    Content(PluginInstance& plugin, const Host& host, std::function<void()> grown)
        : screen_(makeRememberedScreen(plugin)), zoom_(screen_->settings().zoom) {
        setOpaque(true);
        ScreenContext& context = screen_->context();
        context.hostScale = host.scale;
        setSize(juce::roundToInt(ScreenLayout::kStartWidth * zoom_ * host.scale),
                juce::roundToInt(ScreenLayout::kStartHeight * zoom_ * host.scale));
        context.settingsChanged = [this, before = std::move(context.settingsChanged),
                                   grown = std::move(grown)] {
            before();
            if (followZoom()) grown();
        };
        addAndMakeVisible(*screen_);
        addToDesktop(0, host.parent);
        setVisible(true);
    }

    void resized() override { screen_->setBounds(getLocalBounds()); }
    bool keyPressed(const juce::KeyPress& key) override {
        keys_.passOn(*this, key);
        return true;
    }

private:
    /// The window keeps its size in units.
    bool followZoom() {
        const double zoom = screen_->settings().zoom, change = zoom / std::exchange(zoom_, zoom);
        if (change == 1.0) return false;
        setSize(juce::roundToInt(getWidth() * change), juce::roundToInt(getHeight() * change));
        return true;
    }

    HostKeys keys_;
    std::unique_ptr<ZephyraScreen> screen_;
    double zoom_;
};

Lv2Window::Lv2Window(Lv2Plugin& plugin, const Host& host, std::shared_ptr<MessageThread> thread)
    : thread_(std::move(thread)), resize_(host.resize),
      writes_(plugin, host.write, host.controller, host.touch) {
    thread_->call([&] {
        content_ =
            std::make_unique<Content>(plugin.instance(), host, [this] { asksForSize_ = true; });
        if (auto* const peer = content_->getPeer()) widget_ = peer->getNativeHandle();
    });
    askForSize();
}

Lv2Window::~Lv2Window() {
    thread_->call([this] { content_.reset(); });
}

void Lv2Window::idle() {
    writes_.deliver();
    if (asksForSize_.exchange(false)) askForSize();
}

void Lv2Window::askForSize() {
    if (!resize_) return;
    int width = 0, height = 0;
    thread_->call([&] {
        width = content_->getWidth();
        height = content_->getHeight();
    });
    resize_->ui_resize(resize_->handle, width, height);
}

void Lv2Window::resize(int width, int height) {
    thread_->call([&] { content_->setSize(width, height); });
}

} // namespace zephyra

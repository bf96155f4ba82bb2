#include "plugin/lv2/window/lv2_window.h"

#include "screens/desktop/host_keys.h"
#include "screens/remembered_screen.h"

#include <utility>

namespace zephyra {

class Lv2Window::Content final : public juce::Component {
public:
    Content(PluginInstance& plugin, void* parent) : screen_(makeRememberedScreen(plugin)) {
        setOpaque(true);
        const double zoom = screen_->settings().zoom;
        setSize(juce::roundToInt(ScreenLayout::kStartWidth * zoom),
                juce::roundToInt(ScreenLayout::kStartHeight * zoom));
        addAndMakeVisible(*screen_);
        addToDesktop(0, parent);
        setVisible(true);
    }

    void resized() override { screen_->setBounds(getLocalBounds()); }
    bool keyPressed(const juce::KeyPress& key) override {
        keys_.passOn(*this, key);
        return true;
    }

private:
    HostKeys keys_;
    std::unique_ptr<ZephyraScreen> screen_;
};

Lv2Window::Lv2Window(Lv2Plugin& plugin, const Host& host, std::shared_ptr<MessageThread> thread)
    : thread_(std::move(thread)), writes_(plugin, host.write, host.controller, host.touch) {
    int width = 0, height = 0;
    thread_->call([&] {
        content_ = std::make_unique<Content>(plugin.instance(), host.parent);
        if (auto* const peer = content_->getPeer()) widget_ = peer->getNativeHandle();
        width = content_->getWidth();
        height = content_->getHeight();
    });
    if (host.resize) host.resize->ui_resize(host.resize->handle, width, height);
}

Lv2Window::~Lv2Window() {
    thread_->call([this] { content_.reset(); });
}

void Lv2Window::resize(int width, int height) {
    thread_->call([&] { content_->setSize(width, height); });
}

} // namespace zephyra

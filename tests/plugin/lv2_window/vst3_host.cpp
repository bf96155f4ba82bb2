#include "tests/plugin/lv2_window/vst3_host.h"

#include <cstring>
#include <map>
#include <pluginterfaces/base/ipluginbase.h>
#include <pluginterfaces/vst/ivstaudioprocessor.h>
#include <pluginterfaces/vst/ivstmessage.h>
#include <poll.h>
#include <utility>

namespace window_host {

using namespace Steinberg;

namespace {

/// The interface of an object that its identifier names; fails where it has none.
template <typename Wanted>
Wanted* as(FUnknown* object, const TUID identifier) {
    void* found = nullptr;
    if (object->queryInterface(identifier, &found) != kResultOk) fail("an interface is missing");
    return static_cast<Wanted*>(found);
}

/// The host's, on its one thread.
class RunLoop final : public Linux::IRunLoop {
public:
    tresult PLUGIN_API queryInterface(const TUID, void** object) override {
        *object = nullptr;
        return kNoInterface;
    }
    uint32 PLUGIN_API addRef() override { return 1; }
    uint32 PLUGIN_API release() override { return 1; }
    tresult PLUGIN_API registerEventHandler(Linux::IEventHandler* handler,
                                            Linux::FileDescriptor file) override {
        handlers_[file] = handler;
        return kResultOk;
    }
    tresult PLUGIN_API unregisterEventHandler(Linux::IEventHandler* handler) override {
        std::erase_if(handlers_, [&](const auto& one) { return one.second == handler; });
        return kResultOk;
    }
    // JUCE asks for none.
    tresult PLUGIN_API registerTimer(Linux::ITimerHandler*, Linux::TimerInterval) override {
        return kNotImplemented;
    }
    tresult PLUGIN_API unregisterTimer(Linux::ITimerHandler*) override { return kNotImplemented; }

    /// All that is ready, as a host's loop does that sleeps when nothing is.
    void turn() {
        bool isReady = true;
        for (int i = 0; i < 200 && isReady; ++i) {
            isReady = false;
            for (const auto& [file, handler] : std::map(handlers_)) {
                pollfd one{file, POLLIN, 0};
                if (!handlers_.contains(file) || poll(&one, 1, 0) <= 0) continue;
                handler->onFDIsSet(file);
                isReady = true;
            }
        }
    }

private:
    std::map<Linux::FileDescriptor, Linux::IEventHandler*> handlers_;
} runLoop;

IPluginFactory* factoryOf(bool isInstrument) {
    const std::string name = isInstrument ? "Zephyra Instrument" : "Zephyra";
    const std::string library =
        ZEPHYRA_BINARY_DIR "/plugin/VST3/" + name + ".vst3/Contents/x86_64-linux/" + name + ".so";
    static std::map<std::string, IPluginFactory*> all; // entered once
    if (IPluginFactory* const known = all[library]) return known;
    if (!reinterpret_cast<bool (*)(void*)>(entry(library, "ModuleEntry"))(nullptr))
        fail("no VST3 module");
    return all[library] =
               reinterpret_cast<IPluginFactory* (*)()>(entry(library, "GetPluginFactory"))();
}

void connect(Vst3Plugin& plugin, bool together) {
    auto* const one = as<Vst::IConnectionPoint>(plugin.component, Vst::IConnectionPoint_iid);
    auto* const other = as<Vst::IConnectionPoint>(plugin.controller, Vst::IConnectionPoint_iid);
    together ? one->connect(other) : one->disconnect(other);
    together ? other->connect(one) : other->disconnect(one);
    one->release();
    other->release();
}

} // namespace

Vst3Plugin::Vst3Plugin(bool isInstrument) {
    IPluginFactory* const factory = factoryOf(isInstrument);
    PClassInfo info;
    for (int i = 0; i < factory->countClasses() && !component; ++i)
        if (factory->getClassInfo(i, &info); !std::strcmp(info.category, kVstAudioEffectClass))
            factory->createInstance(info.cid, Vst::IComponent_iid,
                                    reinterpret_cast<void**>(&component));
    TUID identifier;
    if (!component || component->initialize(nullptr) != kResultOk ||
        component->getControllerClassId(identifier) != kResultOk ||
        factory->createInstance(identifier, Vst::IEditController_iid,
                                reinterpret_cast<void**>(&controller)) != kResultOk ||
        controller->initialize(nullptr) != kResultOk)
        fail("no VST3 instance");
    connect(*this, true);
}

Vst3Plugin::~Vst3Plugin() {
    connect(*this, false);
    controller->terminate();
    controller->release();
    component->terminate();
    component->release();
}

Vst3Window::Vst3Window(Display* server, Vst3Plugin& of) : HostWindow(server) {
    view_ = of.controller->createView(Vst::ViewType::kEditor);
    if (!view_ || view_->setFrame(this) != kResultOk ||
        view_->attached(reinterpret_cast<void*>(parent), kPlatformTypeX11EmbedWindowID) !=
            kResultOk)
        fail("no VST3 window");
    ::Window root, above, *children = nullptr;
    unsigned count = 0;
    XSync(display, False);
    if (XQueryTree(display, parent, &root, &above, &children, &count) && count == 1)
        widget = children[0];
    XFree(children);
    if (!widget) fail("no VST3 window in the host's");
}

void Vst3Window::close() {
    if (!view_) return;
    view_->setFrame(nullptr);
    view_->removed();
    std::exchange(view_, nullptr)->release();
}

void Vst3Window::turn() {
    runLoop.turn();
}

tresult Vst3Window::queryInterface(const TUID wanted, void** object) {
    const auto is = [&](const TUID identifier) { return !std::memcmp(wanted, identifier, 16); };
    *object = nullptr;
    if (is(Linux::IRunLoop_iid)) *object = &runLoop;
    if (is(IPlugFrame_iid)) *object = static_cast<IPlugFrame*>(this);
    return *object ? kResultOk : kNoInterface;
}

tresult Vst3Window::resizeView(IPlugView* view, ViewRect* size) {
    XResizeWindow(display, parent, static_cast<unsigned>(size->getWidth()),
                  static_cast<unsigned>(size->getHeight()));
    return view->onSize(size);
}

} // namespace window_host

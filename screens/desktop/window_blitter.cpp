#if defined(__linux__)
#define JUCE_GUI_BASICS_INCLUDE_XHEADERS 1 // for who includes JUCE first
#endif

#include "screens/desktop/window_blitter.h"

#if defined(__linux__)

#include "screens/draw/brush.h"

#include <algorithm>
#include <atomic>
#include <sys/ipc.h>
#include <sys/shm.h>

namespace zephyra {

namespace {

constexpr int kLine = 16;                // pixels of a cache's line, on which each row begins
constexpr std::size_t kGrain = 1u << 22; // bytes: a window that is drawn larger needs no other soon

bool touches(const Box& a, const Box& b) {
    return a.x < b.right() && b.x < a.right() && a.y < b.bottom() && b.y < a.bottom();
}

/// Tells whether a request failed, while it lives. Errors of other connections go on as before.
class ErrorTrap {
public:
    explicit ErrorTrap(::Display* display) : display_(display) {
        trapped = nullptr;
        watched = display;
        before = juce::X11Symbols::getInstance()->xSetErrorHandler(handle);
    }
    ~ErrorTrap() { juce::X11Symbols::getInstance()->xSetErrorHandler(before); }
    ErrorTrap(const ErrorTrap&) = delete;
    ErrorTrap& operator=(const ErrorTrap&) = delete;

    bool wentWrong() const {
        juce::X11Symbols::getInstance()->xSync(display_, False);
        return trapped.load() != nullptr;
    }

private:
    static int handle(::Display* display, ::XErrorEvent* event) {
        if (display != watched.load()) return before ? before(display, event) : 0;
        trapped = display;
        return 0;
    }

    static inline std::atomic<::Display*> watched = nullptr, trapped = nullptr;
    static inline ::XErrorHandler before = nullptr;
    ::Display* const display_;
};

} // namespace

/// Memory that is shared with the server, and what pictures of it are put with.
class WindowBlitter::Server {
public:
    Server(::Window window, std::size_t bytes) : window_(window), bytes_(bytes) {
        const juce::XWindowSystemUtilities::ScopedXLock lock;
        isUsable_ = fits() && attach();
    }
    ~Server() {
        if (data()) shmdt(data());
        if (display_ != display()) return; // JUCE closed it, and with it what the server kept
        const juce::XWindowSystemUtilities::ScopedXLock lock;
        if (isUsable_) x_.xShmDetach(display_, &segment_);
        if (image_) x_.xDestroyImage(image_);
        if (context_) x_.xFreeGC(display_, context_);
    }
    Server(const Server&) = delete;
    Server& operator=(const Server&) = delete;

    bool isUsable() const { return isUsable_ && display_ == display(); }
    std::size_t bytes() const { return bytes_; }
    char* data() const { return segment_.shmaddr; }
    /// Whether all that was put before has arrived.
    bool hasArrived() const {
        auto& system = *juce::XWindowSystem::getInstance();
        system.processPendingPaintsForWindow(window_);
        return system.getNumPaintsPendingForWindow(window_) == 0;
    }
    void put(const std::vector<Put>& puts) {
        const juce::XWindowSystemUtilities::ScopedXLock lock;
        // JUCE counts what is told to have arrived, and paints nothing before.
        juce::XWindowSystem::getInstance()->addPendingPaintForWindow(window_);
        for (const Put& it : puts) {
            image_->width = it.pitch;
            image_->height = it.box.height;
            image_->data = data() + it.offset;
            x_.xShmPutImage(display_, window_, context_, image_, 0, 0, it.box.x, it.box.y,
                            static_cast<unsigned>(it.box.width),
                            static_cast<unsigned>(it.box.height), &it == &puts.back());
        }
    }

private:
    static ::Display* display() {
        auto* const system = juce::XWindowSystem::getInstanceWithoutCreating();
        return system ? system->getDisplay() : nullptr;
    }
    /// Pixels are as JUCE draws them.
    bool fits() {
        if (!display_ || !juce::XWindowSystem::getInstance()->canUseARGBImages()) return false;
        if (!x_.xGetWindowAttributes(display_, window_, &is_)) return false;
        return (is_.depth == 24 || is_.depth == 32) && is_.visual->red_mask == 0xff0000 &&
               is_.visual->green_mask == 0xff00 && is_.visual->blue_mask == 0xff;
    }
    bool attach() {
        const int number = shmget(IPC_PRIVATE, bytes_, IPC_CREAT | 0600);
        if (number < 0) return false;
        segment_.shmid = number;
        void* const data = shmat(number, nullptr, 0);
        segment_.shmaddr = data == reinterpret_cast<void*>(-1) ? nullptr : static_cast<char*>(data);
        bool isAttached = false;
        if (segment_.shmaddr) {
            x_.xSync(display_, False); // others' errors are not ours
            const ErrorTrap trap(display_);
            isAttached = x_.xShmAttach(display_, &segment_) != 0 && !trap.wentWrong();
        }
        shmctl(number, IPC_RMID, nullptr); // goes with the last who has it, however they end
        if (!isAttached) return false;
        image_ = x_.xShmCreateImage(display_, is_.visual, static_cast<unsigned>(is_.depth), ZPixmap,
                                    segment_.shmaddr, &segment_, kLine, 1);
        ::XGCValues values{};
        values.graphics_exposures = False;
        context_ = x_.xCreateGC(display_, window_, GCGraphicsExposures, &values);
        return image_ && context_ && image_->bits_per_pixel == 32 && image_->byte_order == LSBFirst;
    }

    juce::X11Symbols& x_ = *juce::X11Symbols::getInstance();
    ::Display* const display_ = display();
    const ::Window window_;
    const std::size_t bytes_;
    ::XWindowAttributes is_{};
    ::XShmSegmentInfo segment_{};
    ::XImage* image_ = nullptr;
    ::GC context_ = nullptr;
    bool isUsable_ = false;
};

WindowBlitter::WindowBlitter() = default;
WindowBlitter::~WindowBlitter() = default;

void WindowBlitter::begin(const juce::Component& window) {
    isReady_ = false;
    puts_.clear();
    used_ = 0;
    auto* const peer = window.getPeer();
    void* const handle = peer ? peer->getNativeHandle() : nullptr;
    const auto pixels = static_cast<std::size_t>(std::max(1, window.getWidth() + kLine)) *
                        static_cast<std::size_t>(std::max(1, window.getHeight()));
    const std::size_t bytes = (pixels * sizeof(std::uint32_t) / kGrain + 1) * kGrain;
    if (handle != window_ || (server_ && server_->bytes() < bytes)) server_.reset();
    window_ = handle;
    if (!handle || peer->getPlatformScaleFactor() != 1.0 || window.getDesktopScaleFactor() != 1.0f)
        return;
    if (!server_) server_ = std::make_unique<Server>(reinterpret_cast<::Window>(handle), bytes);
    isReady_ = server_->isUsable() && server_->hasArrived();
}

bool WindowBlitter::enter(const juce::Component& component) {
    covered_.clear();
    place_ = {};
    if (!isReady_) return false;
    const auto add = [this](const juce::Component& in, int from) {
        for (int i = from; i < in.getNumChildComponents(); ++i) {
            const juce::Component& one = *in.getChildComponent(i);
            if (one.isVisible()) covered_.push_back(brush::boxOf(one.getBounds() - place_));
        }
    };
    add(component, 0);
    for (const juce::Component* at = &component;; at = at->getParentComponent()) {
        if (!at->isVisible() || at->isTransformed()) return false; // isShowing() asks the server
        if (at->isOnDesktop()) return true;
        const juce::Component* const around = at->getParentComponent();
        if (!around) return false;
        // In the component's pixels, of which place_ is the distance to those around.
        place_ += at->getPosition();
        add(*around, around->getIndexOfChildComponent(at) + 1);
    }
}

void WindowBlitter::keepOff(const Box& box) {
    covered_.push_back(box);
}

std::optional<PixelRows> WindowBlitter::room(const Box& box) {
    if (box.width <= 0 || box.height <= 0) return std::nullopt;
    const int pitch = (box.width + kLine - 1) / kLine * kLine;
    const std::size_t row = static_cast<std::size_t>(pitch) * sizeof(std::uint32_t);
    const std::size_t bytes = row * static_cast<std::size_t>(box.height);
    if (used_ + bytes > server_->bytes()) return std::nullopt;
    for (const Box& other : covered_)
        if (touches(box, other)) return std::nullopt;
    puts_.push_back({{box.x + place_.x, box.y + place_.y, box.width, box.height}, used_, pitch});
    const PixelRows rows(server_->data() + used_, box, static_cast<std::ptrdiff_t>(row));
    used_ += bytes;
    return rows;
}

bool WindowBlitter::send() {
    if (puts_.empty()) return false;
    server_->put(puts_);
    puts_.clear();
    isReady_ = false;
    return true;
}

} // namespace zephyra

#else

namespace zephyra {
class WindowBlitter::Server {};
WindowBlitter::WindowBlitter() = default;
WindowBlitter::~WindowBlitter() = default;
void WindowBlitter::begin(const juce::Component&) {}
bool WindowBlitter::enter(const juce::Component&) {
    return false;
}
void WindowBlitter::keepOff(const Box&) {}
std::optional<PixelRows> WindowBlitter::room(const Box&) {
    return std::nullopt;
}
bool WindowBlitter::send() {
    return false;
}
} // namespace zephyra

#endif

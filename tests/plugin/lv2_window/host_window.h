// HostWindow: a window of a host's, with a plug-in's inside.
#pragma once

#include <X11/Xlib.h>
#include <X11/keysym.h>
#include <cstddef>
#include <string>

namespace window_host {

/// Prints why, and ends the program with 3.
[[noreturn]] void fail(const std::string& why);

/// What library exports; it stays loaded. Fails where there is none.
void* entry(const std::string& library, const char* name);

/// A plug-in's window is opened by the constructors of those who derive; everything is the thread
/// that made it.
class HostWindow {
public:
    explicit HostWindow(Display* server);
    virtual ~HostWindow();
    HostWindow(const HostWindow&) = delete;
    HostWindow& operator=(const HostWindow&) = delete;

    virtual void close() = 0; ///< the plug-in's; again: nothing
    /// As a host's timer does, for so long.
    void idle(int milliseconds);
    /// The host's window goes first.
    void destroyParent();
    /// A hand's drag upwards.
    void drag(int x, int y, int by);
    /// Strikes keys in it, and says which of them came to the host's window.
    std::string keysThatComeBack(const std::string& letters);
    /// Strikes a key in it.
    void strike(KeySym key);
    /// How many colours are seen in it.
    std::size_t colours() const;
    /// Whether its middle was painted since the parent, which is black, was shown.
    bool isPainted() const;
    /// Whether it paints itself again after something stood over it, within two seconds.
    bool paintsAgain();

    ::Window widget = 0; ///< the plug-in's
    Display* const display;
    ::Window parent;

protected:
    virtual void turn() = 0; ///< one idle call

private:
    std::string keys_; // that came to the host's window
};

} // namespace window_host

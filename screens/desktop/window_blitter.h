// WindowBlitter: boxes of a window that are sent to its display past JUCE.
#pragma once

#include "screens/draw/pixel_rows.h"
#include "screens/model/screen_layout.h"

#include <juce_gui_basics/juce_gui_basics.h>

#include <memory>
#include <optional>
#include <vector>

namespace zephyra {

/// JUCE clears each rectangle before it is painted, keeps all of them in a picture as large as what
/// is around them, and has each one's arrival told. What moves 60 times a second over much of the
/// window is drawn here instead: box behind box into a stretch of memory that X reads from, which
/// stays in the cache. Only where that can be done (an X server of this machine, pixels as JUCE
/// draws them, no scale, the last boxes arrived); elsewhere, and where anything stands over a box,
/// JUCE is to paint it. Message thread.
class WindowBlitter {
public:
    WindowBlitter();
    ~WindowBlitter();

    /// A frame's boxes begin. window: fills its native window, or none.
    void begin(const juce::Component& window);
    /// The next boxes are of component, somewhere in the window; false: JUCE is to paint them all.
    bool enter(const juce::Component& component);
    /// Something else of component's stands in box: JUCE is to paint what touches it.
    void keepOff(const Box& box);
    /// Rows for box, in component's pixels, all of which are to be written before send(); none
    /// where JUCE is to paint it.
    std::optional<PixelRows> room(const Box& box);
    /// All boxes are on their way, after what JUCE has painted; false when there were none.
    bool send();

private:
    class Server; // what X keeps of a window
    struct Put {
        Box box; ///< of the window
        std::size_t offset;
        int pitch; ///< pixels
    };

    std::unique_ptr<Server> server_;
    void* window_ = nullptr;
    bool isReady_ = false;
    juce::Point<int> place_; // of the component, in the window
    std::vector<Box> covered_;
    std::vector<Put> puts_;
    std::size_t used_ = 0; // bytes
};

} // namespace zephyra

// SampleLine: which sound grains are cut from, as the top names it.
#pragma once

#include "screens/model/screen_context.h"

#include <string>
#include <vector>

namespace zephyra {

/// One moment. Plain data.
struct SampleShown {
    std::string name = {};  ///< a file's; "Live input", "Captured sound", "No sound"
    std::string facts = {}; ///< "12.0 s   44.1 kHz   mono"
    bool isMissing = false; ///< a state named it, and it was not found
    bool isLive = false;    ///< what LIVE hears or heard, in the place of a file
    bool operator==(const SampleShown&) const = default;
};

/// Message thread.
class SampleLine final : public ScreenPart {
public:
    explicit SampleLine(ScreenContext& context);
    ~SampleLine() override;

    const SampleShown& shown() const noexcept { return shown_; }
    /// What a press offers; a single row is done at once. From live sound, also from what it left,
    /// there is a way back to the file.
    std::vector<MenuRow> menu();
    /// A press of the name at that place of the window: a menu below it, or what is offered alone.
    void press(const Box& at);
    void read(AudioUnitViewController& view, const FrameTime& time) override;

private:
    /// Behind live sound; plain data.
    struct File {
        std::string name = {};
        bool isMissing = false, isLoaded = false; ///< another one's sound may be loaded
    };

    ScreenContext& context_;
    SampleShown shown_;
    File file_;
};

/// "12.0 s   44.1 kHz   mono", of more than an hour "1:02:03"; what is 0 is left out.
std::string soundFacts(double seconds, double rate, unsigned channels);

} // namespace zephyra

#include "screens/desktop/window_look.h"

#include "screens/draw/brush.h"

#include <juce_gui_basics/juce_gui_basics.h>

namespace zephyra {

void useWindowLook() {
    using namespace palette;
    auto* const look =
        dynamic_cast<juce::LookAndFeel_V4*>(&juce::LookAndFeel::getDefaultLookAndFeel());
    if (!look) return;
    using brush::colour;
    look->setColourScheme({colour(kStage), colour(kRaised), colour(kRaised), colour(kTrack),
                           colour(kText), colour(kPressed), colour(kBright), colour(kTrack),
                           colour(kText)});
    look->setDefaultSansSerifTypeface(brush::regular(14).getTypefacePtr());
}

} // namespace zephyra

// drawKnobSigns: the small signs beside a knob, who moves it and whether it is locked.
#pragma once

#include "screens/model/path/knob_face.h"
#include "screens/model/path/path_places.h"

#include <juce_graphics/juce_graphics.h>

namespace zephyra {

/// At the cell's upper corners: right by whom, left the lock. Red what moves now. Message thread.
void drawKnobSigns(juce::Graphics& graphics, const KnobFace& face, const CellPlace& place,
                   bool isRaised);

} // namespace zephyra

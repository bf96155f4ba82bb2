// KnobLook: how a knob looks.
#pragma once

#include "screens/model/path/knob_face.h"
#include "screens/model/path/path_places.h"

#include <juce_graphics/juce_graphics.h>

#include <map>
#include <string>
#include <utility>

namespace zephyra {

/// What hands and eyes are about to do with a cell.
struct CellReach {
    bool isHovered = false, isPressed = false;
    bool showsFocus = false; ///< reached by keyboard
    bool showsNumber = true; ///< false while a value is typed over it
    bool operator==(const CellReach&) const = default;
};

/// Draws cells, and keeps the empty tracks, which are the same for all knobs of a size. Message
/// thread.
class KnobLook {
public:
    /// Tracks of another size are to be made.
    void layOut() { tracks_.clear(); }

    /// The ground of any cell, of so many pixels: raised under the pointer, framed in the focus.
    static void drawCell(juce::Graphics& graphics, const CellPlace& place, const CellReach& reach);
    /// A cell's name, in the middle below.
    static void drawName(juce::Graphics& graphics, const CellPlace& place, const CellReach& reach,
                         const std::string& name, bool isOff);
    /// What of a knob stays while it turns, with its cell: it can be kept as a picture.
    void drawStill(juce::Graphics& graphics, const KnobFace& face, const CellPlace& place,
                   const CellReach& reach, const std::string& name);
    /// The arc and the number, over that.
    static void drawMoving(juce::Graphics& graphics, const KnobFace& face, const CellPlace& place,
                           const CellReach& reach);

private:
    const juce::Image& track(int diameter, float width);

    std::map<std::pair<int, int>, juce::Image> tracks_; // by diameter and width in 64ths
};

/// Where a place of the turn lies on a circle of that radius round the knob.
juce::Point<float> pointOnTurn(const CellPlace& place, float fraction, float radius);
/// The circle on which a sweep is drawn, with its grips.
float sweepRadius(const CellPlace& place);

} // namespace zephyra

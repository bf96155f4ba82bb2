// ControlPath: where a control that something moves stood over a render's time.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace zephyra {

/// What was seen of a value within a stretch of time.
struct SeenValues {
    float first = 0, low = 0, high = 0, last = 0;
    std::size_t count = 0; ///< 0: nothing

    void add(float value) noexcept;
};

/// One row of a picture, thinned to its columns. Whoever collects it gives the texts. MAIN.
struct ControlPath {
    /// columns: at least 1.
    ControlPath(std::string controlName, std::string whatMoves, std::size_t columnCount);

    /// The linear value at a share of the render's time; one outside 0 to 1 is clamped.
    void add(double share, float value);

    /// How high on its row a linear value stands, 0 at the lowest that was seen and 1 at the
    /// highest; the middle where nothing moved.
    double heightOf(float value) const noexcept;

    std::string name;  ///< of the control
    std::string mover; ///< what moves it, for people: "LFO sine 0.25 Hz", "CC 1", "automation"
    std::string lowText = {}, highText = {}; ///< the ends of its way in its unit: "20 Hz"
    SeenValues all = {};                     ///< from beginning to end
    std::vector<SeenValues> columns;
};

} // namespace zephyra

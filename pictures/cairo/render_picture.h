// RenderPicture: one page that shows what a render did: source, grains, output and spectrum.
#pragma once

#include "pictures/cairo/grain_map.h"
#include "pictures/cairo/notes_lane.h"
#include "pictures/cairo/picture_canvas.h"
#include "pictures/spectrum_columns.h"
#include "pictures/waveform_columns.h"
#include "rendering/control_paths.h"

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace zephyra {

/// The words around the picture.
struct PictureTexts {
    std::string title;                 ///< the source's file name
    std::vector<std::string> settings; ///< "Density 80 Hz", ...; the most telling first
    std::vector<std::string> facts;    ///< "612 grains", ...; shown as a list
};

/// What the picture's lanes are made for.
struct PictureScales {
    std::uint64_t sourceFrames;
    double sourceRate; ///< Hz
    std::uint64_t frames;
    double sampleRate; ///< Hz
    std::vector<MovedControl> moved = {};
    std::vector<NoteMark> notes = {};
};

/// Order of calls: addSource, addOutput, addScan and addControls block by block, grains and events
/// into map() in any order, draw once. Keeps what the picture's pixels need, and the grains. MAIN.
class RenderPicture {
public:
    static constexpr int kWidth = 1600; // pixels
    /// Pixels; the more controls are moved, the taller the page.
    int height() const;

    explicit RenderPicture(const PictureScales& scales);

    void addSource(std::span<const float> samples);
    void addOutput(const float* left, const float* right, std::size_t frames);
    /// Thinned to what the picture can show.
    void addScan(const ScanMark& mark);
    /// The linear values of the moved controls, in their order, at a time of the output.
    void addControls(double seconds, std::span<const float> values) { paths_.add(seconds, values); }
    GrainMap& map() noexcept { return map_; }
    const GrainMap& map() const noexcept { return map_; }

    /// Draws all on an empty canvas of kWidth · height().
    void draw(Canvas& canvas, const PictureTexts& texts);

private:
    void drawHeader(Canvas& canvas, const PictureTexts& texts) const;
    void drawSourceAndGrains(Canvas& canvas) const;
    void drawOutput(Canvas& canvas) const;
    void drawMotion(Canvas& canvas) const;
    void drawSpectrum(Canvas& canvas) const;

    PictureScales scales_;
    WaveformColumns source_, left_, right_;
    SpectrumColumns spectrum_;
    GrainMap map_;
    ControlPaths paths_;
    struct Page {
        Box notes, paths, spectrum;
    };
    Page page_;
};

} // namespace zephyra

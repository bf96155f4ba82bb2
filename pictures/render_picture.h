// RenderPicture: what a picture of a render shows, as numbers and texts, thinned while it renders.
#pragma once

#include "pictures/control_path.h"
#include "pictures/grain_map.h"
#include "pictures/note_mark.h"
#include "pictures/spectrum_columns.h"
#include "pictures/waveform_columns.h"

#include <cstddef>
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

/// How long the sounds are that the picture shows.
struct PictureLengths {
    std::uint64_t sourceFrames;
    double sourceRate; ///< Hz
    std::uint64_t frames;
    double sampleRate; ///< Hz
};

/// How finely the picture shows them: what its place, in pixels, has room for. Each at least 1.
struct PictureGrid {
    std::size_t source;      ///< columns of the source's waveform
    std::size_t time;        ///< columns of the output's time
    std::size_t frequencies; ///< rows of its spectrum
};

/// Made when the lengths are known and fed block by block; who collects the render writes the other
/// marks and the texts. It takes memory for the grid, the grains and the events. MAIN.
struct RenderPicture {
    RenderPicture(const PictureLengths& lengths, const PictureGrid& grid);

    void addOutput(const float* outLeft, const float* outRight, std::size_t frames);
    /// Thinned to what the picture can show.
    void addScan(const ScanRun& run);
    /// The linear values of the controls in paths, in their order, at a time of the output.
    void addControls(double atSeconds, std::span<const float> values);
    /// Seconds that the grid can just show.
    double finestSeconds() const;
    /// Once all output is in.
    void finish() { spectrum.finish(); }

    double seconds, sourceSeconds;
    bool isStereo = false;            ///< the output: its sides differ
    std::uint32_t sourceChannels = 1; ///< of its file, 0 where nobody knows; grains read their mean
    WaveformColumns source, left, right;
    SpectrumColumns spectrum;
    GrainMap map;
    std::vector<NoteMark> notes;    ///< by time
    std::vector<ControlPath> paths; ///< each of the grid's time columns
    PictureTexts texts;
};

} // namespace zephyra

// PictureRecorder: collects a render block by block for its picture.
#pragma once

#include "pictures/cairo/render_picture.h"
#include "platform/sound/sound_file.h"
#include "rendering/offline_render.h"
#include "rendering/output_file.h"

#include <span>
#include <string>

namespace zephyra {

/// Order of calls: addSource, add for every block, draw. MAIN.
class PictureRecorder {
public:
    PictureRecorder(const RenderPlan& plan, const SoundFileInfo& source);

    void addSource(std::span<const float> samples) { picture_.addSource(samples); }
    /// Before the block's samples are limited.
    void add(const RenderedBlock& block);
    /// Pixels of the canvas to draw on.
    int height() const { return picture_.height(); }
    /// What was recorded of the grains.
    const GrainMap& map() const noexcept { return picture_.map(); }
    /// title is the source's name; statistics and file tell what else was measured.
    void draw(Canvas& canvas, const std::string& title, const RenderStatistics& statistics,
              const OutputFile& file);

private:
    /// Where a read position of the engine lies in the source, as a fraction of it, for a grain or
    /// scan at this frame of the block.
    double sourcePosition(double position, const RenderedBlock& block, std::uint64_t frame) const;

    RenderPlan plan_;
    double sourceFrames_;
    double readFrames_; ///< of the buffer that the engine reads
    double readRate_;   ///< Hz of that buffer
    RenderPicture picture_;
};

} // namespace zephyra

// PictureRecorder: collects a render block by block for its picture.
#pragma once

#include "pictures/render_picture.h"
#include "platform/sound/sound_file.h"
#include "rendering/output/output_file.h"
#include "rendering/render_plan.h"
#include "rendering/rendered_block.h"

#include <span>
#include <string>

namespace zephyra {

/// Order of calls: addSource, add for every block, addOutput for all that went into the file,
/// before or after, finish. MAIN.
class PictureRecorder {
public:
    /// grid: of whoever will draw the picture.
    PictureRecorder(const RenderPlan& plan, const SoundFileInfo& source, const PictureGrid& grid);

    void addSource(std::span<const float> samples) {
        picture_.source.add(samples.data(), samples.size());
    }
    /// All but the block's samples.
    void add(const RenderedBlock& block);
    /// Samples in order, before they are limited.
    void addOutput(const float* left, const float* right, std::uint32_t frames) {
        picture_.addOutput(left, right, frames);
    }
    /// What was recorded until now.
    const RenderPicture& picture() const noexcept { return picture_; }
    /// The complete picture, valid as long as this. title is the source's name; statistics and
    /// file tell what else was measured.
    const RenderPicture& finish(std::string title, const RenderStatistics& statistics,
                                const OutputFile& file);

private:
    void addPaths(const PictureGrid& grid);
    void addGrains(const RenderedBlock& block);
    void addScan(const RenderedBlock& block);
    /// Where a read position of the engine lies in the source, as a fraction of it, where what is
    /// read ends with so many frames of input.
    double sourcePosition(double position, std::uint64_t heard) const;

    RenderPlan plan_;
    double sourceFrames_;
    double readFrames_; ///< of the buffer that the engine reads
    double readRate_;   ///< Hz of that buffer
    RenderPicture picture_;
};

} // namespace zephyra

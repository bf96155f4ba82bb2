// readRenderSource: the sounds that a render is made of.
#pragma once

#include "platform/files/folders.h"
#include "platform/sound/channel_levels.h"
#include "platform/sound/sound_file.h"
#include "platform/text/result.h"
#include "rendering/render_request.h"
#include "stream/sample_reading.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace zephyra {

/// What is played: a sample, a host's input, or both.
struct RenderSource {
    std::shared_ptr<const mokSample> sample = {}; ///< null for an effect on its input alone
    SampleReference reference = {};               ///< of sample
    /// The host's input, of equal length; empty: none.
    std::vector<float> inputLeft = {}, inputRight = {};
};

/// What was read.
struct ReadSource {
    RenderSource source;
    SoundFileInfo input;                     ///< of INPUT
    SoundFileInfo shown;                     ///< of the sound that grains are cut from
    std::shared_ptr<const mokSample> sample; ///< that sound, when it is a sample
    std::filesystem::path sampleFile;        ///< where it stands, if it came from a file
    std::vector<float> heard; ///< that sound, when it is the input: the mean of its channels
    std::string notice;       ///< of a file that holds another sound than the preset was made with
    std::string keeping;      ///< how a saved state has a sound again that no file holds
    ChannelLevels sampleLevels; ///< of the sample, where a file was named
    ChannelLevels inputLevels;  ///< of an effect's input
    std::span<const float> shownSamples() const;
};

/// Reads INPUT as the sample of an instrument, or as the input of an effect (a mono file on both
/// channels, as a host feeds it; of more than two channels the first two), and an effect's sample.
/// A preset's sample is read where nothing else takes its place, and counts as INPUT without one.
/// progress is called with the share of a file that is read, 0 to 1, from 0 again for the next
/// file; a false answer ends the reading with a failure. files as
/// for findPresetSound. MAIN.
Result<ReadSource> readRenderSource(const RenderRequest& request, const Folders& folders,
                                    const std::shared_ptr<FileFacts>& files,
                                    const std::function<bool(double share)>& progress);

} // namespace zephyra

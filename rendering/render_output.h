// RenderOutput: the way of a render's blocks into its file: end fade, gain, measuring, writing.
#pragma once

#include "platform/files/unnamed_file.h"
#include "platform/text/result.h"
#include "rendering/output/end_fade.h"
#include "rendering/output/output_file.h"
#include "rendering/render_plan.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <vector>

namespace zephyra {

/// Order of calls: open, write every block, finish, close. A gain that aims at a level needs
/// that of the whole before its first sample can go on, so until finish the render lies on the
/// disk. MAIN.
class RenderOutput {
public:
    /// Gets what goes into the file, in order, before it is limited; may not change it.
    using Listener = std::function<void(const float* left, const float* right, std::uint32_t)>;

    /// plan is complete. goesOn is asked while something has to be waited for.
    Result<void> open(const RenderRequest& request, const RenderPlan& plan,
                      ByteStream::GoesOn goesOn);
    void setListener(Listener listener) { listener_ = std::move(listener); }

    /// Appends a block, in place.
    Result<void> write(float* left, float* right, std::uint32_t frames);

    /// Lets what was kept go on. told gets the share of that which is done, 0 to 1.
    Result<void> finish(const std::function<void(double share)>& told);
    Result<void> close() { return file_.close(); }

    /// What has been measured until now.
    const OutputFile& file() const noexcept { return file_; }
    /// What the render was multiplied by; 1 for nothing.
    double gain() const noexcept { return gain_; }

private:
    std::filesystem::path folderToKeepIn() const;
    Result<void> keep(const float* left, const float* right, std::uint32_t frames);
    /// Kept frames from this one on, as many as there are up to those of left and right.
    Result<std::uint32_t> readKept(std::uint64_t from, std::span<float> left,
                                   std::span<float> right);
    Result<void> passOn(float* left, float* right, std::uint32_t frames);
    Failure keptFailure(std::error_code error) const;

    std::filesystem::path path_;
    OutputType type_ = {};
    std::optional<OutputGain> asked_;
    ByteStream::GoesOn goesOn_;
    Listener listener_;
    OutputFile file_;
    std::optional<EndFade> fade_;
    std::uint64_t frames_ = 0; // written until now
    double gain_ = 1;
    std::optional<UnnamedFile> kept_; // interleaved; none where nothing has to wait
    std::filesystem::path keptFolder_;
    std::vector<float> interleaved_, heard_; // the second one without what is not finite
    std::optional<LoudnessMeter> meter_;     // of what is kept
};

} // namespace zephyra

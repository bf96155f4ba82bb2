#include "screens/draw/opaque_target.h"

#include <cstdint>
#include <cstring>

#if defined(__linux__)
#include <sys/mman.h>
#endif

namespace zephyra {

namespace {

using State = juce::RenderingHelpers::SoftwareRendererSavedState;
using Rectangles = juce::RenderingHelpers::ClipRegions<State>::RectangleListRegion;
using Bitmap = juce::Image::BitmapData;

/// What it renders into, which a renderer keeps for those that are made from it.
struct Renderer : juce::LowLevelGraphicsSoftwareRenderer {
    static State& stateOf(juce::LowLevelGraphicsSoftwareRenderer& renderer) {
        return *(renderer.*(&Renderer::stack));
    }
};

/// Each row of a wide picture lies on a page of its own, and looking up so many takes longer than
/// copying a small box.
void askForLargePages([[maybe_unused]] juce::Image& image) {
#if defined(__linux__)
    const Bitmap data(image, Bitmap::readWrite);
    constexpr std::uintptr_t page = 1u << 21;
    const auto begin = reinterpret_cast<std::uintptr_t>(data.data);
    const std::uintptr_t first = (begin + page - 1) & ~(page - 1);
    const std::uintptr_t last = (begin + data.size) & ~(page - 1);
    if (first < last) madvise(reinterpret_cast<void*>(first), last - first, MADV_HUGEPAGE);
#endif
}

} // namespace

OpaqueTarget::OpaqueTarget(juce::Graphics& graphics) {
    auto* const renderer =
        dynamic_cast<juce::LowLevelGraphicsSoftwareRenderer*>(&graphics.getInternalContext());
    if (!renderer) return;
    const State& state = Renderer::stateOf(*renderer);
    const auto* const clip = dynamic_cast<const Rectangles*>(state.clip.get());
    if (!clip || !state.transform.isOnlyTranslated || state.image.getFormat() != juce::Image::ARGB)
        return;
    juce::Image image = state.image;
    bitmap_.emplace(image, Bitmap::readWrite);
    clip_ = clip->clip;
    origin_ = state.transform.offset;
    clip_.offsetAll(-origin_);
}

void copyOpaque(juce::Graphics& graphics, const juce::Image& picture) {
    const OpaqueTarget target(graphics);
    if (!target) return graphics.drawImageAt(picture, 0, 0);
    const Bitmap from(picture, Bitmap::readOnly);
    const PixelRows rows = target.rows();
    for (const auto& rectangle : target.clip()) {
        const auto part = rectangle.getIntersection(picture.getBounds());
        for (int y = part.getY(); y < part.getBottom(); ++y)
            std::memcpy(&rows.at(part.getX(), y), from.getPixelPointer(part.getX(), y),
                        static_cast<std::size_t>(part.getWidth()) * sizeof(juce::PixelARGB));
    }
}

juce::Image opaqueImage(int width, int height) {
    juce::Image image(juce::Image::ARGB, juce::jmax(1, width), juce::jmax(1, height), false,
                      juce::SoftwareImageType());
    askForLargePages(image);
    return image;
}

} // namespace zephyra

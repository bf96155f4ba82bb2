#include "screens/draw/opaque_target.h"

#include <cstring>

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
    const juce::Point<int> origin = target.origin();
    for (const auto& rectangle : target.clip()) {
        const auto part = rectangle.getIntersection(picture.getBounds());
        for (int y = part.getY(); y < part.getBottom(); ++y)
            std::memcpy(target.bitmap().getPixelPointer(part.getX() + origin.x, y + origin.y),
                        from.getPixelPointer(part.getX(), y),
                        static_cast<std::size_t>(part.getWidth()) * sizeof(juce::PixelARGB));
    }
}

juce::Image opaqueImage(int width, int height) {
    return juce::Image(juce::Image::ARGB, juce::jmax(1, width), juce::jmax(1, height), false,
                       juce::SoftwareImageType());
}

} // namespace zephyra

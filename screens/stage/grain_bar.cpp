#include "screens/stage/grain_bar.h"

#include <algorithm>
#include <cmath>

namespace zephyra {

namespace {

constexpr double kHalo = 8.0, kStripe = 3.5; // units to each side
constexpr int kPaler = 130;                  // of 256
constexpr double kHaloLight = 0.085;         // of each of its boxes
constexpr double kLight = 160.0;             // of 256, on the energy
constexpr double kHaloBehind = 20.0;         // units
constexpr double kAhead = 3.0;               // units that a head may stand before its place
constexpr double kOutline = 1.0, kEndedLine = 2.5;
constexpr double kHot = 5.0; // units behind the head that turn paler

/// A box with round ends, row by row: what a row covers between left and right.
template <typename Row>
void forRows(const Box& clip, double left, double right, double top, double bottom,
             const Row& row) {
    const double radius = std::min(bottom - top, right - left) / 2.0;
    const double middle = (top + bottom) / 2.0;
    const double straight = (bottom - top) / 2.0 - radius; // none but for tall, narrow ones
    const double end = std::min(bottom, 1.0 * clip.bottom());
    for (int y = std::max(clip.y, static_cast<int>(std::floor(top))); y < end; ++y) {
        const double covered = std::min(y + 1.0, bottom) - std::max(1.0 * y, top);
        const double away = std::max(0.0, std::abs(y + 0.5 - middle) - straight);
        const double inset = radius - std::sqrt(std::max(0.0, radius * radius - away * away));
        row(y, left + inset, right - inset, std::min(1.0, covered));
    }
}

void fill(const Pixels& pixels, double left, double right, double top, double bottom,
          const Tint& tint, double alpha) {
    forRows(pixels.clip(), left, right, top, bottom,
            [&](int y, double from, double to, double covered) {
                pixels.mixSpan(y, from, to, tint, static_cast<int>(alpha * covered * 256.0));
            });
}

Tint tintOf(const ShownGrain& grain) {
    return Tint(palette::pitch(double{grain.semitones}));
}

double loudest(const ShownGrain& grain) {
    return std::max({0.01, double{grain.left}, double{grain.right}});
}

/// Of one ear against the louder one: a quieter ear is darker, too.
double earShare(const ShownGrain& grain, bool isLeft) {
    return 0.35 + 0.65 * double{isLeft ? grain.left : grain.right} / loudest(grain);
}

/// Flat boxes around the head, one in another; what the bar covers anyway is left out.
void drawHalo(const Pixels& pixels, const StageScene& scene, const GrainBar& bar, const Tint& tint,
              double light) {
    const double top = bar.axis - bar.above, bottom = bar.axis + bar.below;
    const double round = (bottom - top) / 2.0;
    const int alpha = static_cast<int>(light * 256.0);
    if (alpha <= 0) return;
    for (const double share : {1.0, 0.66, 0.33}) {
        const double more = scene.units(kHalo * share);
        const double left = std::max(bar.left, bar.head - scene.units(kHaloBehind * share)) - more;
        forRows(pixels.clip(), left, bar.head + more, top - more, bottom + more,
                [&](int y, double from, double to, double covered) {
                    const int here = static_cast<int>(alpha * covered);
                    const double inner = std::max(from, bar.left + round);
                    const double outer = std::min(to, bar.right - round);
                    if (y < top || y + 1 > bottom || inner >= outer)
                        return pixels.mixSpan(y, from, to, tint, here);
                    pixels.mixSpan(y, from, inner, tint, here);
                    pixels.mixSpan(y, outer, to, tint, here);
                });
    }
}

struct Stretch {
    double from, to;
};

/// What of a row was read: brighter towards the head, and paler just behind it. most: of 256.
void drawRead(const Pixels& pixels, const StageScene& scene, const GrainBar& bar, int y,
              const Stretch& stretch, const Tint& tint, double most) {
    const Box& clip = pixels.clip();
    if (y < clip.y || y >= clip.bottom()) return;
    const int first = std::max(clip.x, static_cast<int>(stretch.from));
    const int last = std::min(clip.right(), static_cast<int>(stretch.to));
    const int hot = static_cast<int>(bar.head - scene.units(kHot));
    const int hotWide = std::max(1, static_cast<int>(bar.head) + 1 - hot);
    const double slope = 0.6 * most / std::max(1.0, bar.glowHead - bar.left);
    const auto fixed = [](double share) { return static_cast<int>(share * 65536.0); };
    const int each = fixed(slope), end = fixed(most);
    int alpha = fixed(0.4 * most + slope * (first - bar.left)); // 16 bits are its fraction
    Pixel* const row = pixels.row(y);
    const Tint white(255, 255, 255);
    const Pixel colour = tint.pixel();
    for (int x = first; x < last; ++x, alpha += each)
        Pixels::mix(row[x],
                    x < hot ? colour : tint.towards(white, kPaler * (x - hot) / hotWide).pixel(),
                    std::clamp(alpha, 0, end) >> 16);
}

bool meet(const Box& a, const Box& b) {
    return a.x < b.right() && b.x < a.right() && a.y < b.bottom() && b.y < a.bottom();
}

Box boxAround(double left, double right, double top, double bottom) {
    const int x = static_cast<int>(std::floor(left)), y = static_cast<int>(std::floor(top));
    return {x, y, static_cast<int>(std::ceil(right)) - x, static_cast<int>(std::ceil(bottom)) - y};
}

/// The columns of the sound at the head, and the hair between them and the bar.
Box lightBoxOf(const StageScene& scene, const GrainBar& bar, std::span<const WaveExtent> extents) {
    const double stripe = scene.units(kStripe);
    double top = bar.axis, bottom = bar.axis;
    const int first = std::max(0, static_cast<int>(bar.glowHead - stripe));
    const int last =
        std::min(static_cast<int>(extents.size()) - 1, static_cast<int>(bar.glowHead + stripe) + 1);
    for (int column = first; column <= last; ++column) {
        top = std::min(top, double{extents[static_cast<std::size_t>(column)].top} - 1.0);
        bottom = std::max(bottom, double{extents[static_cast<std::size_t>(column)].bottom} + 1.0);
    }
    return boxAround(bar.glowHead - stripe - 1.0, bar.glowHead + stripe + 2.0, top, bottom);
}

} // namespace

int fadeStep(const ShownGrain& grain) {
    return static_cast<int>(grain.endedFor / GrainCloud::kFadeSeconds * kFadeSteps);
}

double axisOf(const StageScene& scene, const ShownGrain& grain) {
    return scene.y(double{grain.semitones}) - grain.lane * scene.units(kStackedBar);
}

GrainBar placeBar(const StageScene& scene, const ShownGrain& grain, const GrainGlow& glow,
                  double shift, std::span<const WaveExtent> extents) {
    GrainBar bar;
    bar.axis = axisOf(scene, grain);
    const double least = scene.units(kLeastHalf), more = scene.units(kMostBar) / 2.0 - least;
    bar.above = least + more * std::sqrt(double{grain.left}); // nearly as it is heard
    bar.below = least + more * std::sqrt(double{grain.right});
    bar.left = scene.x(grain.from + shift);
    bar.right =
        std::max(scene.x(grain.to + shift), bar.left + kLeastLengths * (bar.above + bar.below));
    bar.head = bar.left + (bar.right - bar.left) * grain.through;
    bar.glowHead = bar.left + (bar.right - bar.left) * glow.through;
    bar.glowEnvelope = double{glow.envelope};

    const double halo = scene.reducedMotion ? 0.0 : scene.units(kHalo);
    const double top = bar.axis - bar.above, bottom = bar.axis + bar.below;
    const double rim = scene.units(kOutline) + 1.0, around = std::max(halo + 1.0, rim);
    const double behind = scene.units(kHaloBehind) + around, ahead = around + scene.units(kAhead);
    bar.box = boxAround(bar.left - around, bar.right + around, top - around, bottom + around);
    bar.headBox =
        boxAround(std::max(bar.left - around, bar.head - behind),
                  std::min(bar.right + around, bar.head + ahead), top - around, bottom + around);
    bar.readBox = boxAround(bar.left - 1.0, bar.glowHead + 1.0, top - 1.0, bottom + 1.0);
    const double line = scene.units(kEndedLine) / 2.0;
    bar.endedBox = boxAround(bar.left, bar.right, bar.axis - line, bar.axis + line);
    bar.lightBox = lightBoxOf(scene, bar, extents);
    return bar;
}

void drawLight(const Pixels& pixels, const StageScene& scene, const ShownGrain& grain,
               const GrainBar& bar, std::span<const WaveExtent> extents) {
    const Tint tint = tintOf(grain);
    const Pixel colour = tint.pixel();
    const double stripe = scene.units(kStripe), strength = 0.25 + 0.75 * bar.glowEnvelope;
    const Box& clip = pixels.clip();
    const int first = std::max({static_cast<int>(bar.glowHead - stripe), clip.x, 0});
    const int last = std::min({static_cast<int>(bar.glowHead + stripe) + 1, clip.right(),
                               static_cast<int>(extents.size())});
    for (int x = first; x < last; ++x) {
        const WaveExtent& at = extents[static_cast<std::size_t>(x)];
        const double share = 1.0 - std::abs(x + 0.5 - bar.glowHead) / (stripe + 1.0);
        const int alpha = static_cast<int>(kLight * std::max(0.0, share) * strength);
        const int top = std::max(clip.y, static_cast<int>(at.top));
        const int bottom = std::min(clip.bottom(), static_cast<int>(at.bottom));
        const int energyTop = static_cast<int>(at.energyTop);
        const int energyBottom = static_cast<int>(at.energyBottom);
        for (int y = top; y < bottom; ++y)
            Pixels::mix(pixels.row(y)[x], colour,
                        y >= energyTop && y < energyBottom ? alpha : alpha / 2);
    }
    const int x = static_cast<int>(bar.glowHead);
    if (x < 0 || x >= static_cast<int>(extents.size())) return;
    const WaveExtent& at = extents[static_cast<std::size_t>(x)];
    const Box hair{x, 0, std::max(1, scene.px(1)), 0};
    const auto join = [&](double top, double bottom) {
        pixels.mixBox({hair.x, static_cast<int>(top), hair.width,
                       std::max(0, static_cast<int>(bottom) - static_cast<int>(top))},
                      tint, static_cast<int>(110.0 * strength));
    };
    join(bar.axis + bar.below, double{at.top});
    join(double{at.bottom}, bar.axis - bar.above);
}

void drawBar(const Pixels& pixels, const StageScene& scene, const ShownGrain& grain,
             const GrainBar& bar) {
    const Tint tint = tintOf(grain), ink(palette::kInk), white(255, 255, 255);
    const double envelope = double{grain.envelope};
    const double top = bar.axis - bar.above, bottom = bar.axis + bar.below;
    if (!scene.reducedMotion && meet(bar.headBox, pixels.clip()))
        drawHalo(pixels, scene, bar, tint, kHaloLight * envelope);
    const double rim = scene.units(kOutline);
    fill(pixels, bar.left - rim, bar.right + rim, top - rim, bottom + rim, ink, 0.85);
    const Tint ahead = Tint(palette::kGround).towards(tint, 110);
    forRows(pixels.clip(), bar.left, bar.right, top, bottom,
            [&](int y, double from, double to, double covered) {
                const double ear = earShare(grain, y + 0.5 < bar.axis), whole = covered * 256.0;
                pixels.mixSpan(y, from, to, ahead, static_cast<int>(whole * (0.5 + 0.5 * ear)));
                drawRead(pixels, scene, bar, y, {from, std::min(to, bar.head)}, tint,
                         whole * ear * (0.5 + 0.5 * bar.glowEnvelope));
            });
    // The head, always to be seen: white-hot as far as the envelope is open.
    const double wide = scene.units(1.75), inside = scene.units(1.25);
    const double head = std::clamp(bar.head, bar.left + wide + inside, bar.right - wide - inside);
    forRows(pixels.clip(), head - wide, head + wide, top + inside, bottom - inside,
            [&](int y, double from, double to, double covered) {
                pixels.mixSpan(y, from, to, tint.towards(white, 215),
                               static_cast<int>(256.0 * covered * (0.5 + 0.5 * envelope)));
            });
}

void drawEnded(const Pixels& pixels, const StageScene& scene, const ShownGrain& grain,
               const GrainBar& bar) {
    const double left = 1.0 - static_cast<double>(fadeStep(grain)) / kFadeSteps;
    const double half = scene.units(kEndedLine) / 2.0;
    fill(pixels, bar.left, bar.right, bar.axis - half, bar.axis + half, tintOf(grain),
         0.45 * std::max(0.0, left));
}

} // namespace zephyra

#include "tests/screens/window/drawn_text.h"

#include <algorithm>

namespace zephyra {

namespace {

TextRecorder* recorder = nullptr;

/// Where the outline of a glyph lies, in pixels.
juce::Rectangle<float> inkOf(const juce::Font& font, int glyph,
                             const juce::AffineTransform& transform) {
    juce::Path outline;
    font.getTypefacePtr()->getOutlineForGlyph(glyph, outline);
    const float high = font.getHeight();
    return outline.getBoundsTransformed(
        juce::AffineTransform::scale(high * font.getHorizontalScale(), high).followedBy(transform));
}

void add(juce::Rectangle<float>& all, const juce::Rectangle<float>& one) {
    if (!one.isEmpty()) all = all.isEmpty() ? one : all.getUnion(one);
}

/// Where the letters go, without any being written.
class Catcher final : public juce::LowLevelGraphicsSoftwareRenderer {
public:
    Catcher() : LowLevelGraphicsSoftwareRenderer(juce::Image(juce::Image::RGB, 1, 1, true)) {}
    bool clipRegionIntersects(const juce::Rectangle<int>&) override { return true; }
    void drawGlyph(int glyph, const juce::AffineTransform& transform) override {
        const auto one = inkOf(getFont(), glyph, transform);
        if (one.isEmpty()) return;
        add(ink, one);
        glyphs.push_back(glyph);
        scale = std::min(scale, getFont().getHorizontalScale());
    }

    juce::Rectangle<float> ink;
    std::vector<int> glyphs;
    float scale = 10.0f;
};

/// The glyphs of a text that have ink.
std::vector<int> glyphsOf(const juce::Font& font, const juce::String& text) {
    juce::Array<int> all;
    juce::Array<float> places;
    font.getGlyphPositions(text, all, places);
    std::vector<int> inked;
    for (int i = 0; i < all.size(); ++i)
        if (!inkOf(font, all[i], {}).isEmpty()) inked.push_back(all[i]);
    return inked;
}

} // namespace

/// Draws as ever, and knows what is painted over what.
class TextRecorder::Context final : public juce::LowLevelGraphicsSoftwareRenderer {
public:
    Context(TextRecorder& of, const juce::Image& image)
        : LowLevelGraphicsSoftwareRenderer(image), of_(of) {}

    juce::Point<float> origin() const { return stack->transform.offset.toFloat(); }
    juce::Rectangle<float> clip() const { return getClipBounds().toFloat() + origin(); }

    void fillRect(const juce::Rectangle<int>& box, bool replaces) override {
        LowLevelGraphicsSoftwareRenderer::fillRect(box, replaces);
        cover(box.toFloat());
    }
    void fillRect(const juce::Rectangle<float>& box) override {
        LowLevelGraphicsSoftwareRenderer::fillRect(box);
        cover(box);
    }
    void fillPath(const juce::Path& path, const juce::AffineTransform& transform) override {
        LowLevelGraphicsSoftwareRenderer::fillPath(path, transform);
        juce::Path moved(path);
        moved.applyTransform(transform.translated(origin()));
        of_.cover(moved, stack->fillType.colour);
    }
    void drawImage(const juce::Image& image, const juce::AffineTransform& transform) override {
        LowLevelGraphicsSoftwareRenderer::drawImage(image, transform);
        const auto at =
            origin() + juce::Point(transform.getTranslationX(), transform.getTranslationY());
        for (DrawnText& one : of_.toBePlaced_) {
            if (one.visible != image.getBounds().toFloat()) continue;
            for (auto* const box : {&one.box, &one.ink, &one.visible}) *box += at;
            of_.texts_.push_back(std::move(one));
        }
        of_.toBePlaced_.clear();
    }
    /// Of a field; what else writes comes through TextRecorder::write.
    void drawGlyph(int glyph, const juce::AffineTransform& transform) override {
        if (of_.letters_ == Letters::leftOut) return;
        LowLevelGraphicsSoftwareRenderer::drawGlyph(glyph, transform);
        if (of_.isWriting_) return;
        auto& texts = of_.texts_;
        const juce::Colour colour = stack->fillType.colour;
        if (texts.empty() || !texts.back().text.empty() || texts.back().visible != clip())
            texts.push_back(
                {.text = {}, .box = {}, .ink = {}, .visible = clip(), .colour = colour});
        add(texts.back().ink, inkOf(getFont(), glyph, transform) + origin());
    }

private:
    void cover(const juce::Rectangle<float>& box) {
        juce::Path path;
        path.addRectangle((box + origin()).getIntersection(clip()));
        of_.cover(path, stack->fillType.colour);
    }

    TextRecorder& of_;
};

TextRecorder::TextRecorder() {
    recorder = this;
}

void TextRecorder::begin(Letters letters) {
    letters_ = letters;
    inPictures_.clear();
}

TextRecorder::~TextRecorder() {
    recorder = nullptr;
}

juce::Image TextRecorder::draw(PictureWindow& window) {
    juce::Image image(juce::Image::RGB, window.getWidth(), window.getHeight(), true,
                      juce::SoftwareImageType());
    texts_ = inPictures_; // they come before what is painted
    Context context(*this, image);
    isDrawing_ = true;
    window.draw(context);
    isDrawing_ = false;
    return image;
}

const DrawnText* TextRecorder::find(const std::string& text) const {
    const auto found = std::ranges::find_if(
        texts_, [&](const DrawnText& one) { return one.text == text && !one.isBehind; });
    return found == texts_.end() ? nullptr : &*found;
}

void TextRecorder::cover(const juce::Path& path, juce::Colour colour) {
    constexpr float kSeen = 0.3f, kHidden = 0.99f; // of the colour that covers
    if (colour.getFloatAlpha() < kSeen) return;
    const bool hides = colour.getFloatAlpha() > kHidden;
    const auto corners = [&](const DrawnText& one) {
        const auto ink = one.ink.reduced(0.5f);
        return path.contains(ink.getTopLeft()) + path.contains(ink.getTopRight()) +
               path.contains(ink.getBottomLeft()) + path.contains(ink.getBottomRight());
    };
    for (DrawnText& one : texts_) {
        const int covered = corners(one);
        one.isCut = one.isCut || (hides && covered > 0 && !one.text.empty()); // no caret
        one.isBehind = one.isBehind || covered == 4;
    }
    if (hides) std::erase_if(texts_, [&](const DrawnText& one) { return corners(one) == 4; });
}

template <typename Draw>
void TextRecorder::write(const juce::Graphics& graphics, const juce::AttributedString& text,
                         juce::Rectangle<float> box, Draw&& draw) {
    const auto attribute = text.getAttribute(0);
    Catcher catcher;
    juce::Graphics caught(catcher);
    caught.setFont(attribute.font);
    draw(caught);
    auto* const context = dynamic_cast<Context*>(&graphics.getInternalContext());
    const auto clip = graphics.getClipBounds();
    const bool isKept = !context && clip.getWidth() == kept_.getWidth();
    const auto origin = context  ? context->origin()
                        : isKept ? kept_.getPosition().toFloat()
                                 : juce::Point<float>();
    DrawnText one{.text = text.getText().toStdString(),
                  .box = box + origin,
                  .ink = catcher.ink + origin,
                  .visible = context ? context->clip() : (isKept ? kept_ : clip).toFloat(),
                  .colour = attribute.colour,
                  .isWhole = catcher.glyphs == glyphsOf(attribute.font, text.getText()),
                  .isSqueezed = catcher.scale < 0.99f * attribute.font.getHorizontalScale(),
                  .isKept = isKept};
    const auto isSame = [&](const DrawnText& other) {
        return other.text == one.text && other.box == one.box;
    };
    if (context)
        texts_.push_back(std::move(one));
    else if (!isKept)
        toBePlaced_.push_back(std::move(one));
    else if (auto& kept = isDrawing_ ? texts_ : inPictures_;
             std::ranges::none_of(kept, isSame)) // an area keeps several
        kept.push_back(std::move(one));
    if (letters_ == Letters::leftOut) return;
    isWriting_ = true;
    draw(const_cast<juce::Graphics&>(graphics));
    isWriting_ = false;
}

template <typename Draw>
void TextRecorder::write(const juce::Graphics& graphics, const juce::String& text,
                         juce::Rectangle<float> box, Draw&& draw) {
    juce::AttributedString whole;
    whole.append(text, graphics.getInternalContext().getFont(), colours[&graphics]);
    write(graphics, whole, box, std::forward<Draw>(draw));
}

namespace {

const juce::String& textOf(const juce::String& text) {
    return text;
}
const juce::String& textOf(const juce::AttributedString& text) {
    return text.getText();
}

template <typename Text, typename Draw>
void hear(const juce::Graphics& graphics, const Text& text, juce::Rectangle<float> box,
          Draw&& draw) {
    if (recorder && !textOf(text).isEmpty())
        recorder->write(graphics, text, box, std::forward<Draw>(draw));
    else
        draw(const_cast<juce::Graphics&>(graphics));
}

} // namespace

// The linker sends the calls here (CMakeLists.txt), and to JUCE what is called __real.

using juce::AttributedString;
using juce::Colour;
using juce::Graphics;
using juce::Justification;
using juce::String;
using IntBox = juce::Rectangle<int>;
using FloatBox = juce::Rectangle<float>;

#define ZEPHYRA_WRAPPED(real, wrap, symbol, ...)                                                   \
    void real(__VA_ARGS__) __asm__("__real_" symbol);                                              \
    void wrap(__VA_ARGS__) __asm__("__wrap_" symbol);

ZEPHYRA_WRAPPED(setColour, heardColour, "_ZN4juce8Graphics9setColourENS_6ColourE", Graphics*,
                Colour)
ZEPHYRA_WRAPPED(drawFloats, heardFloats,
                "_ZNK4juce8Graphics8drawTextERKNS_6StringENS_9RectangleIfEENS_13JustificationEb",
                const Graphics*, const String&, FloatBox, Justification, bool)
ZEPHYRA_WRAPPED(drawInts, heardInts,
                "_ZNK4juce8Graphics8drawTextERKNS_6StringENS_9RectangleIiEENS_13JustificationEb",
                const Graphics*, const String&, IntBox, Justification, bool)
ZEPHYRA_WRAPPED(drawFour, heardFour,
                "_ZNK4juce8Graphics8drawTextERKNS_6StringEiiiiNS_13JustificationEb",
                const Graphics*, const String&, int, int, int, int, Justification, bool)
ZEPHYRA_WRAPPED(
    drawFitted, heardFitted,
    "_ZNK4juce8Graphics14drawFittedTextERKNS_6StringENS_9RectangleIiEENS_13JustificationEif",
    const Graphics*, const String&, IntBox, Justification, int, float)
ZEPHYRA_WRAPPED(drawFittedFour, heardFittedFour,
                "_ZNK4juce8Graphics14drawFittedTextERKNS_6StringEiiiiNS_13JustificationEif",
                const Graphics*, const String&, int, int, int, int, Justification, int, float)
ZEPHYRA_WRAPPED(drawLines, heardLines,
                "_ZNK4juce16AttributedString4drawERNS_8GraphicsERKNS_9RectangleIfEE",
                const AttributedString*, Graphics&, const FloatBox&)

void heardColour(Graphics* graphics, Colour colour) {
    if (recorder) recorder->colours[graphics] = colour;
    setColour(graphics, colour);
}

void heardFloats(const Graphics* graphics, const String& text, FloatBox box, Justification where,
                 bool dots) {
    hear(*graphics, text, box, [&](Graphics& to) { drawFloats(&to, text, box, where, dots); });
}

void heardInts(const Graphics* graphics, const String& text, IntBox box, Justification where,
               bool dots) {
    heardFloats(graphics, text, box.toFloat(), where, dots);
}

void heardFour(const Graphics* graphics, const String& text, int x, int y, int width, int height,
               Justification where, bool dots) {
    heardInts(graphics, text, {x, y, width, height}, where, dots);
}

void heardFitted(const Graphics* graphics, const String& text, IntBox box, Justification where,
                 int lines, float scale) {
    hear(*graphics, text, box.toFloat(),
         [&](Graphics& to) { drawFitted(&to, text, box, where, lines, scale); });
}

void heardFittedFour(const Graphics* graphics, const String& text, int x, int y, int width,
                     int height, Justification where, int lines, float scale) {
    heardFitted(graphics, text, {x, y, width, height}, where, lines, scale);
}

void heardLines(const AttributedString* text, Graphics& graphics, const FloatBox& box) {
    hear(graphics, *text, box, [&](Graphics& to) { drawLines(text, to, box); });
}

} // namespace zephyra

#include "screens/draw/icons.h"

namespace zephyra {

namespace {

using juce::Path;

constexpr float kSide = 20.0f, kLine = 1.5f;

void line(Path& path, float x1, float y1, float x2, float y2) {
    path.startNewSubPath(x1, y1);
    path.lineTo(x2, y2);
}

Path outlined(const Path& centre, float width = kLine) {
    Path outline;
    juce::PathStrokeType(width, juce::PathStrokeType::curved, juce::PathStrokeType::rounded)
        .createStrokedPath(outline, centre);
    return outline;
}

Path play() {
    Path path;
    path.addTriangle(6.5f, 4.0f, 16.5f, 10.0f, 6.5f, 16.0f);
    return path;
}

Path stop() {
    Path path;
    path.addRoundedRectangle(5.0f, 5.0f, 10.0f, 10.0f, 1.5f);
    return path;
}

Path rewind() {
    Path path;
    path.addRectangle(3.5f, 4.0f, 2.5f, 12.0f);
    path.addTriangle(16.5f, 4.0f, 16.5f, 16.0f, 7.0f, 10.0f);
    return path;
}

Path freeze() {
    Path path;
    for (int arm = 0; arm < 6; ++arm) {
        Path one;
        line(one, 10.0f, 10.0f, 10.0f, 2.0f);
        line(one, 10.0f, 5.6f, 7.6f, 3.4f);
        line(one, 10.0f, 5.6f, 12.4f, 3.4f);
        path.addPath(one, juce::AffineTransform::rotation(juce::MathConstants<float>::pi / 3.0f *
                                                              static_cast<float>(arm),
                                                          10.0f, 10.0f));
    }
    return outlined(path, 1.4f);
}

Path chevron(float quarters) {
    Path path;
    path.startNewSubPath(12.75f, 4.5f);
    path.lineTo(7.25f, 10.0f);
    path.lineTo(12.75f, 15.5f);
    path.applyTransform(juce::AffineTransform::rotation(
        juce::MathConstants<float>::halfPi * quarters, 10.0f, 10.0f));
    return outlined(path, 1.8f);
}

Path star() {
    Path path;
    path.addStar({10.0f, 10.6f}, 5, 3.6f, 8.2f);
    return path;
}

Path dice() {
    Path path;
    path.addRoundedRectangle(3.5f, 3.5f, 13.0f, 13.0f, 2.0f);
    Path made = outlined(path);
    for (const float at : {6.9f, 10.0f, 13.1f}) made.addEllipse(at - 1.15f, at - 1.15f, 2.3f, 2.3f);
    return made;
}

Path undo() {
    Path path;
    path.startNewSubPath(7.0f, 3.5f);
    path.lineTo(3.5f, 7.0f);
    path.lineTo(7.0f, 10.5f);
    line(path, 3.5f, 7.0f, 12.0f, 7.0f);
    path.cubicTo(15.0f, 7.0f, 16.75f, 9.0f, 16.75f, 11.5f);
    path.cubicTo(16.75f, 14.0f, 15.0f, 16.0f, 12.0f, 16.0f);
    path.lineTo(8.0f, 16.0f);
    return outlined(path);
}

Path sliders() {
    Path lines, knobs;
    const float ys[] = {5.0f, 10.0f, 15.0f}, xs[] = {12.5f, 7.0f, 11.0f};
    for (int i = 0; i < 3; ++i) {
        line(lines, 3.0f, ys[i], xs[i] - 2.2f, ys[i]);
        line(lines, xs[i] + 2.2f, ys[i], 17.0f, ys[i]);
        knobs.addEllipse(xs[i] - 1.7f, ys[i] - 1.7f, 3.4f, 3.4f);
    }
    Path made = outlined(lines);
    made.addPath(outlined(knobs, 1.3f));
    return made;
}

Path download() {
    Path path;
    line(path, 10.0f, 3.5f, 10.0f, 12.0f);
    path.startNewSubPath(6.5f, 9.0f);
    path.lineTo(10.0f, 12.5f);
    path.lineTo(13.5f, 9.0f);
    path.startNewSubPath(3.5f, 12.5f);
    path.lineTo(3.5f, 16.0f);
    path.lineTo(16.5f, 16.0f);
    path.lineTo(16.5f, 12.5f);
    return outlined(path);
}

Path close() {
    Path path;
    line(path, 5.0f, 5.0f, 15.0f, 15.0f);
    line(path, 15.0f, 5.0f, 5.0f, 15.0f);
    return outlined(path);
}

Path redo() {
    Path path = undo();
    path.applyTransform(juce::AffineTransform::scale(-1.0f, 1.0f).translated(kSide, 0.0f));
    return path;
}

} // namespace

Path iconPath(Icon icon) {
    switch (icon) {
    case Icon::play:
        return play();
    case Icon::stop:
        return stop();
    case Icon::rewind:
        return rewind();
    case Icon::freeze:
        return freeze();
    case Icon::left:
        return chevron(0.0f);
    case Icon::up:
        return chevron(1.0f);
    case Icon::right:
        return chevron(2.0f);
    case Icon::down:
        return chevron(3.0f);
    case Icon::star:
        return outlined(star());
    case Icon::starFull:
        return star();
    case Icon::dice:
        return dice();
    case Icon::undo:
        return undo();
    case Icon::redo:
        return redo();
    case Icon::sliders:
        return sliders();
    case Icon::download:
        return download();
    case Icon::close:
        return close();
    }
    return {};
}

void drawIcon(juce::Graphics& graphics, Icon icon, juce::Rectangle<float> box,
              juce::Colour colour) {
    const float scale = juce::jmin(box.getWidth(), box.getHeight()) / kSide;
    graphics.setColour(colour);
    graphics.fillPath(iconPath(icon), juce::AffineTransform::translation(-kSide / 2, -kSide / 2)
                                          .scaled(scale)
                                          .translated(box.getCentreX(), box.getCentreY()));
}

} // namespace zephyra

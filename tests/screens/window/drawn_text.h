// TextRecorder: what a window writes, as it was asked to and as it came out.
#pragma once

#include "screens/picture/picture_window.h"

#include <map>
#include <string>
#include <vector>

namespace zephyra {

/// Places in pixels of the window.
struct DrawnText {
    std::string text;               ///< as it was asked for; empty for what a field shows
    juce::Rectangle<float> box;     ///< as it was asked for; empty for what a field shows
    juce::Rectangle<float> ink;     ///< what its letters cover
    juce::Rectangle<float> visible; ///< what they can cover
    juce::Colour colour;
    bool isWhole = true; ///< every letter came out
    bool isSqueezed = false;
    bool isBehind = false; ///< something that lets it through was painted over it
    bool isCut = false;    ///< something was painted over a part of it
    bool isKept = false;   ///< in a picture that an area keeps, over which things move
};

/// While it lives, it hears every text that JUCE is asked to write. One at a time.
class TextRecorder {
public:
    enum class Letters { written, leftOut };

    TextRecorder();
    ~TextRecorder();
    TextRecorder(const TextRecorder&) = delete;
    TextRecorder& operator=(const TextRecorder&) = delete;

    /// Texts that are written into a picture of this size, which an area keeps, stand here in the
    /// window.
    void expectPicture(juce::Rectangle<int> place) { kept_ = place; }
    /// Before areas draw the pictures that they keep, which have letters, too.
    void begin(Letters letters);
    /// The whole window; forgets what it heard of one before.
    juce::Image draw(PictureWindow& window);
    /// What is seen, as far as nothing was painted over it.
    const std::vector<DrawnText>& texts() const { return texts_; }
    const DrawnText* find(const std::string& text) const;

    // What JUCE was asked to do.
    class Context;
    template <typename Draw>
    void write(const juce::Graphics& graphics, const juce::AttributedString& text,
               juce::Rectangle<float> box, Draw&& draw);
    template <typename Draw>
    void write(const juce::Graphics& graphics, const juce::String& text, juce::Rectangle<float> box,
               Draw&& draw);
    std::map<const juce::Graphics*, juce::Colour> colours;

private:
    void cover(const juce::Path& path, juce::Colour colour);

    Letters letters_ = Letters::written;
    juce::Rectangle<int> kept_;
    std::vector<DrawnText> texts_, inPictures_;
    std::vector<DrawnText> toBePlaced_; // in a picture that is drawn next
    bool isWriting_ = false, isDrawing_ = false;
};

} // namespace zephyra

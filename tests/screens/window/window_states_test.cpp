// The whole window in its main states, sizes and zooms: what must be there is there, whole, apart,
// and readable. The pictures are kept beside the build, for eyes.
#include "screens/draw/brush.h"
#include "tests/screens/window/drawn_text.h"
#include "tests/screens/window/text_contrast.h"
#include "tests/screens/window/window_scene.h"

#include <gtest/gtest.h>

#include <set>

namespace zephyra {

void PrintTo(const PictureState& state, std::ostream* out) {
    *out << state.name;
}

namespace {

constexpr double kLeastContrast = 4.5;
constexpr double kSeconds = 1.0; // a test has less time than a picture
constexpr PictureScene::Size kSizes[] = {{1100, 700}, {800, 520}, {1600, 1040, 2.0}};
/// These take long, and differ in what is scaled alone.
constexpr PictureScene::Size kLargeSizes[] = {{2200, 1400, 2.0}, {3840, 2160}};
constexpr std::string_view kLargeStates[] = {"playing", "dialog", "typing"};

/// In which something lies over the areas.
constexpr std::string_view kLayers[] = {"dialog", "name", "menu", "settings", "names"};

struct Expected {
    std::vector<std::string> texts; ///< besides those that are always there
    /// Play, and the stage, as far as nothing lies over them; none: either way.
    std::optional<bool> isRed, hasGrains;
};

const std::map<std::string_view, Expected> kExpected = {
    {"start", {{"LIVE", "Zephyra_Sample08.mp3", "0 grains", "End 12.00 s"}, false, false}},
    {"playing", {{"Zephyra_Sample08.mp3", "CPU 0 %", "0 dropped"}, true, true}},
    {"live", {{"LIVE", "Clear", "Live input", "now"}, true, true}},
    {"armed", {{"0 grains", "1.3"}, true, false}},
    {"moved", {{"CC1", "CC ?", "Echo"}, true, {}}},
    {"dialog",
     {{"Overwrite",
       "This operation will replace the Night Birds's contents, do you want to proceed?", "YES",
       "NO"},
      false,
      false}}, // both lie behind it
    {"name", {{"Rename Bank", "OK", "Cancel"}, false, false}},
    {"typing", {{"Length", "85.0"}, true, true}},
    {"menu", {{"Bird Machines", "Pulse Garden"}, true, true}},
    {"settings", {{"Settings", "Zoom", "Fade in"}, {}, {}}},
    {"names", {{"Warning", "Locate", "Ok"}, {}, {}}},
    {"missing", {{"Lost Bells.wav", "missing", "Locate"}, false, false}},
};

/// How many pixels of box are so.
int count(const juce::Image& picture, juce::Rectangle<int> box,
          const std::function<bool(juce::Colour)>& isSo) {
    int found = 0;
    for (int y = box.getY(); y < box.getBottom(); ++y)
        for (int x = box.getX(); x < box.getRight(); ++x) found += isSo(picture.getPixelAt(x, y));
    return found;
}

bool isAccent(juce::Colour colour) {
    return colour == brush::colour(palette::kAccent);
}
/// Grains at 0 semitones are light yellow, and nothing else of the stage is.
bool isGrain(juce::Colour colour) {
    return colour.getGreen() > 110 && colour.getRed() - colour.getBlue() > 40;
}

void save(const juce::Image& picture, const std::string& name) {
    const auto folder = std::filesystem::path(ZEPHYRA_BINARY_DIR) / "pictures" / "window";
    std::filesystem::create_directories(folder);
    const juce::File file((folder / (name + ".png")).string());
    file.deleteFile();
    juce::FileOutputStream stream(file);
    juce::PNGImageFormat().writeImageToStream(picture, stream);
}

std::string nameOf(const PictureScene::Size& size) {
    std::string name = std::to_string(size.width) + "x" + std::to_string(size.height);
    if (size.zoom != 1.0) name += "_zoom" + std::to_string(juce::roundToInt(size.zoom * 100));
    return name;
}

struct States : testing::TestWithParam<PictureState> {
    /// With all letters, and the same without any.
    struct Drawn {
        juce::Image written, bare;
    };

    static Drawn draw(PictureScene& scene, TextRecorder& recorder, const PictureScene::Size& size) {
        StageArea& stage = *scene.find<StageArea>();
        const ScreenLayout layout = layOut(size.width, size.height, size.zoom);
        const auto drawn = [&](TextRecorder::Letters letters) {
            recorder.begin(letters);
            stage.layOut(layout); // what keeps pictures with letters
            if (!scene.find<ValueField>()) scene.find<PathArea>()->layOut(layout);
            scene.frameAgain();
            return recorder.draw(scene.window());
        };
        recorder.expectPicture(brush::rectangle(layout.stage));
        const juce::Image bare = drawn(TextRecorder::Letters::leftOut);
        return {drawn(TextRecorder::Letters::written), bare};
    }

    /// What lies over the areas: a dialog, a menu.
    static juce::Rectangle<int> layerOf(PictureScene& scene) {
        juce::Rectangle<int> layer;
        for (juce::Component* const child : scene.screen().getChildren())
            if (child->isVisible() && !dynamic_cast<ScreenArea*>(child)) layer = child->getBounds();
        return layer;
    }

    static juce::Rectangle<int> boxOf(PictureScene& scene, const juce::Component& part) {
        return scene.window().getLocalArea(&part, part.getLocalBounds());
    }

    static void checkColours(PictureScene& scene, const juce::Image& picture,
                             const Expected& expected) {
        const auto play = boxOf(scene, *scene.findTitled("Play"));
        const bool isRed = count(picture, play, isAccent) > play.getWidth();
        EXPECT_EQ(isRed, expected.isRed.value_or(isRed));
        const auto stage = boxOf(scene, *scene.find<StageArea>());
        const auto sound = stage.withTrimmedLeft(stage.getHeight() / 10); // without the pitch rail
        const bool hasGrains = count(picture, sound, isGrain) > stage.getHeight() / 2;
        EXPECT_EQ(hasGrains, expected.hasGrains.value_or(hasGrains));
    }

    static void checkTexts(const TextRecorder& recorder, const Drawn& drawn, PictureScene& scene) {
        const auto window = drawn.written.getBounds().toFloat();
        const auto layer = layerOf(scene).toFloat();
        const bool plays = !scene.find<StageArea>()->grains().sounding().empty();
        std::vector<const DrawnText*> seen;
        for (const DrawnText& one : recorder.texts()) {
            if (one.isBehind || one.ink.isEmpty()) continue;
            if (layer.intersects(one.ink) && !layer.contains(one.visible)) continue; // below it
            seen.push_back(&one);
            SCOPED_TRACE(one.text.empty() ? std::string("a field") : '"' + one.text + '"');
            EXPECT_TRUE(one.isWhole);
            EXPECT_FALSE(one.isCut);
            EXPECT_FALSE(one.isSqueezed);
            EXPECT_TRUE(one.visible.expanded(0.5f).contains(one.ink))
                << one.ink.toString() << " of " << one.visible.toString();
            EXPECT_TRUE(one.box.isEmpty() || one.box.expanded(1.0f).contains(one.ink))
                << one.ink.toString() << " of " << one.box.toString();
            EXPECT_TRUE(window.contains(one.ink)) << one.ink.toString();
            if (one.isKept && plays) continue; // the scan's light passes over it
            EXPECT_GE(contrastOf(drawn.written, drawn.bare, one.ink, one.colour), kLeastContrast);
        }
        for (std::size_t i = 0; i < seen.size(); ++i)
            for (std::size_t k = 0; k < i; ++k)
                EXPECT_FALSE(seen[i]->ink.intersects(seen[k]->ink))
                    << seen[i]->text << " over " << seen[k]->text;
    }

    /// What stands beside one another; layers over the window are no neighbours.
    static void checkPlaces(juce::Component& all, double scale) {
        /// How far a small switch takes presses from its neighbours.
        const int reach = juce::roundToInt(6 * scale);
        std::vector<juce::Component*> beside;
        for (juce::Component* const child : all.getChildren()) {
            if (!child->isVisible() || child->getBounds().isEmpty()) continue;
            EXPECT_TRUE(all.getLocalBounds().contains(child->getBounds()))
                << child->getTitle() << ' ' << child->getBounds().toString();
            for (juce::Component* const other : beside) {
                const auto both = child->getBounds().getIntersection(other->getBounds());
                const bool isSwitch = dynamic_cast<SectionSwitch*>(child) != nullptr;
                EXPECT_LE(std::min(both.getWidth(), both.getHeight()), isSwitch ? reach : 0)
                    << child->getTitle() << " over " << other->getTitle();
            }
            beside.push_back(child);
        }
    }
};

TEST_P(States, AreWholeApartAndReadable) {
    const PictureState& state = GetParam();
    std::vector<PictureScene::Size> sizes(std::begin(kSizes), std::end(kSizes));
    if (std::ranges::find(kLargeStates, state.name) != std::end(kLargeStates))
        sizes.insert(sizes.end(), std::begin(kLargeSizes), std::end(kLargeSizes));
    for (const PictureScene::Size& size : sizes) {
        SCOPED_TRACE(nameOf(size));
        WindowScene window(state.kind, size);
        PictureScene& scene = window.scene;
        ASSERT_TRUE(window.isPrepared);
        state.bring(scene, std::min(state.seconds, kSeconds));
        TextRecorder recorder;
        const Drawn drawn = draw(scene, recorder, size);
        save(drawn.written, std::string(state.name) + "_" + nameOf(size));
        checkTexts(recorder, drawn, scene);
        const Expected& expected = kExpected.at(state.name);
        for (const std::string& text : expected.texts)
            EXPECT_NE(recorder.find(text), nullptr) << text;
        const bool hasLayer = std::ranges::find(kLayers, state.name) != std::end(kLayers);
        EXPECT_EQ(!layerOf(scene).isEmpty(), hasLayer);
        checkColours(scene, drawn.written, expected);
        if (ValueField* const field = scene.find<ValueField>()) {
            const auto box = boxOf(scene, *field);
            EXPECT_EQ(field->getText(), "120");
            EXPECT_GT(count(drawn.written, box, isAccent), box.getHeight() / 2); // caret
        } else
            EXPECT_NE(state.name, "typing");
        for (juce::Component* const area : scene.screen().getChildren())
            if (dynamic_cast<ScreenArea*>(area) && !dynamic_cast<StageArea*>(area))
                checkPlaces(*area, layOut(size.width, size.height, size.zoom).scale);
    }
}

TEST(WindowHelp, IsWholeForWhateverIsUnderThePointer) {
    for (const PictureScene::Size& size : kSizes) {
        WindowScene window(PluginKind::standalone, size);
        PictureScene& scene = window.scene;
        scene.play(0.1);
        std::vector<juce::Point<float>> places;
        const auto gather = [&](auto&& self, juce::Component& all) -> void {
            for (juce::Component* const child : all.getChildren())
                if (child->isVisible() && child->getWantsKeyboardFocus())
                    places.push_back(scene.middleOf(*child));
                else if (child->isVisible())
                    self(self, *child);
        };
        gather(gather, scene.screen());
        std::set<std::string> sentences;
        TextRecorder recorder;
        for (const auto& place : places) {
            scene.window().moveTo(place);
            scene.frames(1);
            recorder.draw(scene.window());
            const auto foot = scene.find<FootArea>()->getBounds().toFloat();
            for (const DrawnText& one : recorder.texts()) {
                if (!foot.contains(one.ink)) continue;
                EXPECT_TRUE(one.isWhole) << nameOf(size) << ": " << one.text;
                sentences.insert(one.text);
            }
        }
        EXPECT_GT(sentences.size(), places.size() / 2);
    }
}

INSTANTIATE_TEST_SUITE_P(Window, States, testing::ValuesIn(pictureStates()),
                         [](const auto& of) { return std::string(of.param.name); });

} // namespace
} // namespace zephyra

// WindowScene: an instance of its own folders, and its window without a display.
#pragma once

#include "screens/picture/picture_state.h"
#include "tests/screens/no_display.h"
#include "tests/support/heard_instance.h"
#include "tests/support/testing.h"

namespace zephyra {

/// Whatever plays is the same in every run.
struct WindowScene {
    explicit WindowScene(PluginKind kind, const PictureScene::Size& size = {1100, 700})
        : plugin(kind,
                 [this](Instance& instance) {
                     log.hear(instance);
                     instance.folders = {.shared = folder / "shared",
                                         .resources = ZEPHYRA_SOURCE_DIR "/resources"};
                     instance.fileFacts = std::make_shared<FileFacts>();
                 }),
          isPrepared(plugin.prepare({PictureScene::kRate, PictureScene::kBlock}).ok()),
          scene(plugin, size) {}

    const TemporaryFolder folder{quickFolder()};
    HeardLog log;
    juce::ScopedJuceInitialiser_GUI gui;
    PluginInstance plugin;
    bool isPrepared;
    PictureScene scene;
};

} // namespace zephyra

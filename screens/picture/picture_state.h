// PictureState: the states in which a window is drawn and checked.
#pragma once

#include "screens/picture/picture_scene.h"

#include <span>
#include <string>
#include <string_view>

namespace zephyra {

struct PictureState {
    std::string_view name;
    std::string_view what; ///< for a list of them
    PluginKind kind;       ///< of the instance
    /// How long it plays unless somebody says otherwise; seconds.
    double seconds;
    /// Brings a fresh scene there, by hands where there are hands for it.
    void (*bring)(PictureScene& scene, double seconds);
};

std::span<const PictureState> pictureStates();
/// Null for a name that is none.
const PictureState* pictureState(std::string_view name);
/// "start, playing, ..."
std::string pictureStateNames();

} // namespace zephyra

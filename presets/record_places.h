// forgetPlaces: takes out of a preset where things stand on this computer.
#pragma once

#include "platform/files/folders.h"
#include "platform/lists/property_list.h"

namespace zephyra {

/// Of every text of the record, at any depth, but the preset's name: an absolute path becomes the
/// file's name. A sample below the shared or the resource folder gets its path relative to that.
/// MAIN.
void forgetPlaces(PropertyDictionary& record, const Folders& folders);

} // namespace zephyra

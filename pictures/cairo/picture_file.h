// PictureFile: a PNG that appears under its name complete or not at all.
#pragma once

#include "pictures/cairo/picture_canvas.h"
#include "platform/files/atomic_file.h"
#include "platform/text/result.h"

#include <filesystem>

namespace zephyra {

/// Order of calls: open (before the work that the picture is to show, so that a wrong name is told
/// early), save. Dropped before, it leaves what was there. MAIN.
class PictureFile {
public:
    Result<void> open(const std::filesystem::path& path);
    Result<void> save(const Canvas& canvas);

private:
    std::filesystem::path path_;
    AtomicFile file_;
};

} // namespace zephyra

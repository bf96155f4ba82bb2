#include "pictures/cairo/picture_file.h"

namespace zephyra {

namespace {

Failure notWritten(const std::filesystem::path& path, const std::string& reason) {
    return {path.string() + ": the picture cannot be written (" + reason +
            "); choose a folder with room that may be written to"};
}

} // namespace

Result<void> PictureFile::open(const std::filesystem::path& path) {
    path_ = path;
    if (const std::error_code error = file_.open(path)) return notWritten(path, error.message());
    return {};
}

Result<void> PictureFile::save(const Canvas& canvas) {
    if (const Result<void> saved = canvas.save(file_.path()); !saved)
        return notWritten(path_, saved.message());
    if (const std::error_code error = file_.commit()) return notWritten(path_, error.message());
    return {};
}

} // namespace zephyra

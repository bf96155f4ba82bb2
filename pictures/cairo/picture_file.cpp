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
    const auto bytes = canvas.png();
    if (!bytes) return notWritten(path_, bytes.message());
    std::error_code error = file_.write(bytes.value());
    if (!error) error = file_.commit();
    return error ? notWritten(path_, error.message()) : Result<void>();
}

} // namespace zephyra

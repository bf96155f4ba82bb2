// OpenFile: a file's descriptor, which is closed at the end.
#pragma once

#include <filesystem>
#include <optional>
#include <system_error>

namespace zephyra {

/// Used by one thread at a time, any but RENDER.
class OpenFile {
public:
    /// flags as for file_calls::open; after an error there is no descriptor.
    OpenFile(std::filesystem::path path, int flags, std::error_code& error);
    /// Another descriptor of what descriptor has open, which the caller keeps; none after an
    /// error. path is what errors call it.
    static OpenFile duplicateOf(int descriptor, std::filesystem::path path, std::error_code& error);
    ~OpenFile();
    OpenFile(OpenFile&& other) noexcept;
    OpenFile& operator=(OpenFile&& other) noexcept;

    /// -1 for none.
    int descriptor() const noexcept { return descriptor_; }
    const std::filesystem::path& path() const noexcept { return path_; }
    /// The descriptor is gone also after an error; without one nothing happens.
    std::error_code close();

private:
    OpenFile() = default;

    std::filesystem::path path_;
    int descriptor_ = -1;
};

/// The descriptor of this process that a typed name means by its number, as /dev/fd/3 does; none
/// for any other name. Any thread but RENDER.
std::optional<int> numberedDescriptor(const std::filesystem::path& name);

} // namespace zephyra

#include "rendering/file_clashes.h"

#include "library/bank_name.h"
#include "platform/files/byte_stream.h"

#include <string>
#include <system_error>
#include <utility>
#include <vector>

namespace zephyra {

namespace fs = std::filesystem;

namespace {

struct NamedFile {
    const char* option;
    fs::path path;
};

/// The same file, whether or not it exists yet.
bool sameFile(const fs::path& a, const fs::path& b) {
    const fs::path left = trueName(a), right = trueName(b);
    return !left.empty() && left == right;
}

bool isNamedPipe(const fs::path& path) {
    std::error_code error;
    return fs::is_fifo(path, error);
}

/// What the render writes, whether or not it was asked for. A stream takes no file's place,
/// but a pipe that the render reads, too, never ends.
std::vector<std::pair<const char*, std::optional<fs::path>>>
writtenFiles(const RenderRequest& request) {
    std::optional<fs::path> output = request.output;
    if (ByteStream::isNamedBy(request.output) && !isNamedPipe(request.output)) output.reset();
    return {{"OUT", output},
            {"--picture", request.picture},
            {"--save-state", request.host.saveState},
            {"--record-scrub", request.motion.recordScrub}};
}

Failure wouldReplace(const char* option, const std::string& what, const fs::path& path) {
    if (isNamedPipe(path))
        return {std::string(option) + " and " + what + " cannot both be the pipe " + path.string() +
                ", where each would wait for the other; choose another name"};
    return {std::string(option) + " would replace " + what + " " + path.string() +
            "; choose another name"};
}

} // namespace

fs::path trueName(const fs::path& file) {
    std::error_code error;
    if (file.empty()) return {};
    const fs::path name = fs::weakly_canonical(fs::absolute(file, error), error);
    return error ? fs::path() : name;
}

Result<void> checkOverwriting(const RenderRequest& request, const std::string& what,
                              const fs::path& file) {
    for (const auto& [option, path] : writtenFiles(request))
        if (path && sameFile(*path, file)) return wouldReplace(option, what, file);
    return {};
}

Result<void> checkFileClashes(const RenderRequest& request, const Folders& folders) {
    const HostRequest& host = request.host;
    std::vector<NamedFile> taken;
    const auto take = [&taken](const char* option, const std::optional<fs::path>& path) {
        if (path && !path->empty() && !isStandardInput(*path)) taken.push_back({option, *path});
    };
    take("INPUT", request.input);
    take("--sample", host.sample);
    take("--automate", host.automation);
    take("--midi", host.midi);
    take("--scrub", request.motion.scrub);
    if (request.preset) take("--bank", request.preset->file);
    if (request.savedPreset)
        take("--save-bank", folders.shared / bankFileName(request.savedPreset->bank));
    if (!host.saveState || !host.state || !sameFile(*host.saveState, *host.state))
        take("--state", host.state);

    const auto write = [&](const char* option,
                           const std::optional<fs::path>& path) -> Result<void> {
        if (!path) return {};
        for (const NamedFile& other : taken)
            if (sameFile(*path, other.path)) return wouldReplace(option, other.option, other.path);
        take(option, path);
        return {};
    };
    for (const auto& [option, path] : writtenFiles(request))
        if (const auto written = write(option, path); !written) return written;
    return {};
}

} // namespace zephyra

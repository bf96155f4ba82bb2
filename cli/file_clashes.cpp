#include "cli/file_clashes.h"

#include <system_error>
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
    std::error_code first, second;
    const fs::path left = fs::weakly_canonical(fs::absolute(a, first), first);
    const fs::path right = fs::weakly_canonical(fs::absolute(b, second), second);
    return !first && !second && left == right;
}

} // namespace

Result<void> checkFileClashes(const RenderOptions& options) {
    const HostOptions& host = options.host;
    std::vector<NamedFile> taken = {{"INPUT", options.input}};
    const auto take = [&taken](const char* option, const std::optional<fs::path>& path) {
        if (path) taken.push_back({option, *path});
    };
    take("--sample", host.sample);
    take("--automate", host.automation);
    take("--midi", host.midi);
    take("--scrub", options.motion.scrub);
    if (!host.saveState || !host.state || !sameFile(*host.saveState, *host.state))
        take("--state", host.state);

    const auto write = [&](const char* option,
                           const std::optional<fs::path>& path) -> Result<void> {
        if (!path) return {};
        for (const NamedFile& other : taken)
            if (sameFile(*path, other.path))
                return Failure{std::string(option) + " would replace " + other.option + " " +
                               other.path.string() + "; choose another name"};
        take(option, path);
        return {};
    };
    for (const auto& [option, path] :
         {std::pair("OUT", std::optional(options.output)), std::pair("--picture", options.picture),
          std::pair("--save-state", host.saveState),
          std::pair("--record-scrub", options.motion.recordScrub)})
        if (const auto written = write(option, path); !written) return written;
    return {};
}

} // namespace zephyra

#include "plugin/standalone/session_file.h"

#include "platform/files/file_calls.h"
#include "platform/files/whole_file.h"
#include "platform/text/odd_bytes.h"

#include <span>
#include <utility>

namespace zephyra {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t kMostBytes = std::size_t{1} << 30; // a session may hold its sounds

} // namespace

Result<void> SessionFile::open(const fs::path& folder) {
    if (folder.empty()) return Failure{"there is no folder for the session: set HOME"};
    if (const std::error_code error = file_calls::makeFolders(folder))
        return Failure{"the folder " + shownFile(folder) + " cannot be made: " + error.message()};
    for (int number = 1; number <= kMost; ++number) {
        const std::string stem = "session-" + std::to_string(number);
        const fs::path side = folder / ("." + stem + ".lock");
        const std::error_code error = lock_.lock(side, {.seconds = 0.0});
        if (!error) {
            path_ = folder / (stem + ".plist");
            return {};
        }
        if (error != std::errc::timed_out) return Failure{lockProblem(side, error)};
    }
    return Failure{"too many sessions in " + shownFile(folder) + " are in use"};
}

Result<std::optional<std::vector<std::byte>>> SessionFile::read() const {
    std::error_code missing;
    if (path_.empty() || !fs::exists(file_calls::status(path_, missing)))
        return std::optional<std::vector<std::byte>>();
    auto whole = readWholeFile(path_, kMostBytes);
    if (!whole) return Failure{whole.message()};
    return std::optional(std::move(whole.value().bytes));
}

Result<void> SessionFile::save(std::string_view state) {
    if (path_.empty() || state.empty() || state == saved_) return {};
    auto written = replaceFile(path_, std::as_bytes(std::span(state)));
    if (written) saved_ = state;
    return written;
}

Result<void> SessionFile::setAside(std::string_view word) {
    std::error_code error;
    if (path_.empty() || !fs::exists(file_calls::status(path_, error))) return {};
    const fs::path kept =
        path_.parent_path() / (path_.stem().string() + "." + std::string(word) + ".plist");
    if (!(error = file_calls::rename(path_, kept))) return {};
    const fs::path left = std::exchange(path_, {});
    return Failure{shownFile(left) + " cannot be kept as " + shownFile(kept) + ": " +
                   error.message() + "; it is left as it is, and no session is saved"};
}

} // namespace zephyra

#include "platform/files/file_copy.h"

#include "platform/files/file_calls.h"
#include "platform/files/file_failure.h"
#include "platform/files/open_file.h"
#include "platform/text/odd_bytes.h"

#include <algorithm>
#include <fcntl.h>
#include <utility>
#include <vector>

namespace zephyra {

namespace fs = std::filesystem;

Result<void> FileCopy::open(const fs::path& source) {
    auto opened = openToRead(source);
    if (!opened) return Failure{opened.message()};
    source_ = std::move(opened.value());
    return {};
}

Result<void> FileCopy::write(const fs::path& target, const Progress& progress) {
    target_ = target;
    if (const std::error_code error = file_.open(target))
        return fileFailure(target, "written", error);
    const auto [reading, writing] = copyPieces(progress);
    if (!reading && !writing) return {};
    file_.abandon();
    if (reading == std::errc::operation_canceled)
        return Failure{"interrupted; " + shownFile(source_->path()) + " was not copied"};
    if (reading) return fileFailure(source_->path(), "read", reading);
    return fileFailure(target, "written", writing);
}

FileCopy::Errors FileCopy::copyPieces(const Progress& progress) {
    Errors errors;
    auto& [reading, writing] = errors;
    OpenFile file(file_.path(), O_WRONLY | O_CREAT | O_EXCL, writing);
    std::vector<std::byte> piece(kPieceBytes);
    const std::uint64_t size = source_->size();
    for (std::uint64_t at = 0; !writing && at < size; at += piece.size()) {
        if (progress && !progress(static_cast<double>(at) / static_cast<double>(size))) {
            reading = std::make_error_code(std::errc::operation_canceled);
            break;
        }
        piece.resize(std::min<std::uint64_t>(kPieceBytes, size - at));
        piece.resize(source_->readAt(at, piece, reading));
        if (reading || piece.empty()) break; // shorter when somebody cuts it meanwhile
        writing = file_calls::write(file.descriptor(), piece, file_.path());
    }
    if (!reading && !writing) writing = file_calls::flush(file.descriptor(), file_.path());
    const std::error_code closing = file.close();
    if (!writing) writing = closing;
    return errors;
}

Result<bool> FileCopy::replace() {
    if (const std::error_code error = file_.commit()) return fileFailure(target_, "written", error);
    return true;
}

Result<bool> FileCopy::create() {
    const std::error_code error = file_.commitNew();
    if (error == std::errc::file_exists) return false;
    if (error) return fileFailure(target_, "written", error);
    return true;
}

} // namespace zephyra

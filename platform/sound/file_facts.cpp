#include "platform/sound/file_facts.h"

#include "platform/files/content_hash.h"

#include <utility>

namespace zephyra {

namespace fs = std::filesystem;

FileFacts::Entry& FileFacts::entryOf(const fs::path& path) {
    const std::lock_guard lock(mutex_);
    return entries_[path];
}

/// What is known of that version; what was known of another one goes.
FileFacts::Facts& FileFacts::factsOf(Entry& entry, const FileStamp& stamp) {
    if (entry.facts.stamp != stamp) entry.facts = {.stamp = stamp, .hash = {}, .info = {}};
    return entry.facts;
}

void FileFacts::forgetUnsettled(Entry& entry, const FileBytes& file) {
    if (!file.isSettled()) entry.facts = {};
}

std::optional<std::string> FileFacts::hashIn(const Entry& entry, const fs::path& path) {
    if (entry.facts.hash.empty() || fileStamp(path) != entry.facts.stamp) return std::nullopt;
    return entry.facts.hash;
}

Result<std::string> FileFacts::hashIn(Entry& entry, const FileBytes& file, const Wanted& wanted) {
    Facts& facts = factsOf(entry, file.stamp());
    if (!facts.hash.empty()) return facts.hash;
    auto hash = zephyra::contentHash(file, wanted);
    if (hash) facts.hash = hash.value();
    forgetUnsettled(entry, file);
    return hash;
}

Result<FileFacts::Hashed> FileFacts::contentHash(const fs::path& path, const Wanted& wanted) {
    Entry& entry = entryOf(path);
    const std::lock_guard lock(entry.reading);
    if (const auto known = hashIn(entry, path)) return Hashed{*known};
    auto file = openToHash(path);
    if (!file) return Failure{file.message()};
    static_cast<void>(file.value().load()); // what cannot be loaded is read piece by piece
    auto hash = hashIn(entry, file.value(), wanted);
    if (!hash) return Failure{hash.message()};
    return Hashed{std::move(hash.value()), std::move(file.value())};
}

Result<std::string> FileFacts::contentHash(const FileBytes& file, const Wanted& wanted) {
    Entry& entry = entryOf(file.path());
    const std::lock_guard lock(entry.reading);
    return hashIn(entry, file, wanted);
}

std::optional<std::string> FileFacts::knownHash(const fs::path& path) {
    Entry& entry = entryOf(path);
    const std::lock_guard lock(entry.reading);
    return hashIn(entry, path);
}

Result<SoundFileInfo> FileFacts::soundInfo(const fs::path& path) {
    Entry& entry = entryOf(path);
    const std::lock_guard lock(entry.reading);
    if (entry.facts.info && fileStamp(path) == entry.facts.stamp) return *entry.facts.info;
    const auto file = openSoundFile(path);
    if (!file) return Failure{file.message()};
    auto info = readSoundFileInfo(file.value());
    if (info) factsOf(entry, file.value().stamp()).info = info.value();
    forgetUnsettled(entry, file.value());
    return info;
}

} // namespace zephyra

#include "platform/user_defaults.h"

#include "platform/files/file_calls.h"
#include "platform/files/file_failure.h"
#include "platform/files/file_lock.h"
#include "platform/text/log.h"
#include "platform/text/odd_bytes.h"

#include <utility>

namespace zephyra {

namespace fs = std::filesystem;

namespace {

constexpr double kLongestWait = 0.2; // seconds; a window waits meanwhile
constexpr int kMostSetAside = 99;

/// What the file at a path is found to be.
struct Found {
    PropertyDictionary values = {};
    std::string problem = {}; ///< empty: it was read, or there is none
    bool isDamaged = false;   ///< what stands there is no list of settings, else it cannot be read
};

Found found(const fs::path& path) {
    std::error_code ignored;
    const fs::file_status status = file_calls::status(path, ignored);
    if (status.type() == fs::file_type::not_found) return {};
    if (const auto opened = openToRead(path); !opened)
        return fs::is_directory(status)
                   ? Found{.problem = opened.message(), .isDamaged = true}
                   : Found{.problem = opened.message() + "; it is left as it is, and settings last "
                                                         "until the program ends"};
    auto values = readPropertyListFile(path);
    if (!values) return {.problem = values.message(), .isDamaged = true};
    return {.values = std::move(values.value())};
}

} // namespace

UserDefaults::UserDefaults(fs::path path, Log& log) : path_(std::move(path)), log_(&log) {
    Found now = found(path_);
    values_ = std::move(now.values);
    if (now.problem.empty()) return;
    say(now.problem + (now.isDamaged ? "; it is set aside once a setting changes" : ""));
}

UserDefaults::~UserDefaults() {
    flush();
}

const PropertyValue* UserDefaults::value(std::string_view key) const {
    const auto found = values_.find(key);
    return found == values_.end() ? nullptr : &found->second;
}

void UserDefaults::change(Change change) {
    change(values_);
    if (path_.empty()) return;
    waiting_.push_back(std::move(change));
    flush();
}

void UserDefaults::setValue(std::string key, PropertyValue value) {
    change([key = std::move(key), value = std::move(value)](PropertyDictionary& values) {
        values.insert_or_assign(key, value);
    });
}

void UserDefaults::removeValue(std::string_view key) {
    change([key = std::string(key)](PropertyDictionary& values) { values.erase(key); });
}

bool UserDefaults::flush() {
    if (waiting_.empty()) return true;
    const auto written = write();
    if (written) {
        waiting_.clear();
        said_.clear();
    } else {
        say(written.message());
    }
    return written.ok();
}

Result<void> UserDefaults::write() {
    const fs::path folder = path_.parent_path();
    if (const std::error_code error = file_calls::makeFolders(folder))
        return Failure{"the folder " + shownFile(folder) + " cannot be made: " + error.message()};
    const std::string stem = path_.stem().string();
    const fs::path side = folder / ("." + stem + ".lock");
    FileLock lock;
    const bool isFirst = waiting_.size() == 1; // whoever waited once need not wait again
    if (const std::error_code error = lock.lock(side, {.seconds = isFirst ? kLongestWait : 0.0}))
        return Failure{shownFile(path_) + " cannot be written: " + lockProblem(side, error) +
                       "; the setting is kept, and written with the next one"};
    auto before = readToChange();
    if (!before) return Failure{before.message()};
    PropertyDictionary values = before.value();
    for (const Change& change : waiting_) change(values);
    values = writable(std::move(values));
    if (values == before.value()) return {};
    return writePropertyListFile(path_, values);
}

/// What the file holds now; nothing after a damaged one has been set aside.
Result<PropertyDictionary> UserDefaults::readToChange() {
    Found now = found(path_);
    if (now.problem.empty()) return std::move(now.values);
    if (!now.isDamaged) return Failure{now.problem};
    if (const auto aside = setAside(now.problem); !aside) return Failure{aside.message()};
    return PropertyDictionary();
}

/// Under a name that is free: what stands there may be the only copy.
Result<void> UserDefaults::setAside(const std::string& problem) {
    std::error_code error = std::make_error_code(std::errc::file_exists);
    for (int number = 1; number <= kMostSetAside && error == std::errc::file_exists; ++number) {
        const std::string count = number == 1 ? "" : std::to_string(-number); // -2, -3
        fs::path kept = path_;
        kept.replace_extension("unreadable" + count + path_.extension().string());
        error = file_calls::renameNew(path_, kept);
        if (!error) log_->write(problem + "; it is kept as " + shownFile(kept));
    }
    if (!error) return {};
    return Failure{problem + "; it cannot be set aside (" + error.message() +
                   "), so settings last until the program ends"};
}

/// One value that no file can hold must not keep the others from being written.
PropertyDictionary UserDefaults::writable(PropertyDictionary values) const {
    std::erase_if(values, [this](const auto& entry) {
        const auto xml = writePropertyList(PropertyDictionary{entry});
        if (!xml) log_->write(shownFile(path_) + " goes without " + xml.message());
        return !xml;
    });
    return values;
}

void UserDefaults::say(const std::string& problem) {
    if (std::exchange(said_, problem) != problem) log_->write(problem);
}

} // namespace zephyra

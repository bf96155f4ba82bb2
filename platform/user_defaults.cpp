#include "platform/user_defaults.h"

#include "platform/files/file_calls.h"
#include "platform/text/log.h"

namespace zephyra {

namespace fs = std::filesystem;

UserDefaults::UserDefaults(fs::path path, Log& log) : path_(std::move(path)), log_(&log) {
    std::error_code ignored;
    if (fs::status(path_, ignored).type() == fs::file_type::not_found) return;
    auto values = readPropertyListFile(path_);
    if (values) {
        values_ = std::move(values.value());
        return;
    }
    log_->write(values.message() +
                "; it is left as it is, and settings last until the program ends");
    path_.clear();
}

const PropertyValue* UserDefaults::value(std::string_view key) const {
    const auto found = values_.find(key);
    return found == values_.end() ? nullptr : &found->second;
}

void UserDefaults::setValue(std::string key, PropertyValue value) {
    values_.insert_or_assign(std::move(key), std::move(value));
    save();
}

void UserDefaults::removeValue(std::string_view key) {
    const auto found = values_.find(key);
    if (found == values_.end()) return;
    values_.erase(found);
    save();
}

void UserDefaults::save() {
    if (path_.empty()) return;
    // One value that no file can hold must not keep the others from being written.
    PropertyDictionary kept;
    for (const auto& entry : values_) {
        PropertyDictionary alone{entry};
        const auto xml = writePropertyList(alone);
        if (xml)
            kept.merge(alone);
        else
            log_->write(path_.string() + " goes without " + xml.message());
    }
    const fs::path folder = path_.parent_path();
    if (const std::error_code error = file_calls::makeFolders(folder))
        return log_->write("the folder " + folder.string() + " cannot be made: " + error.message());
    if (const auto written = writePropertyListFile(path_, kept); !written)
        log_->write(written.message());
}

} // namespace zephyra

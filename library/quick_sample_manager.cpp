#include "library/quick_sample_manager.h"

#include "platform/files/file_calls.h"
#include "platform/files/file_name.h"
#include "platform/files/folder_entries.h"
#include "platform/text/odd_bytes.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace zephyra {

namespace {

constexpr TableColour kSelection = {0.988f, 0.212f, 0.114f};

std::string refusal() {
    std::string text = "You can Import only these audio types: ";
    for (const std::string_view extension : QuickSampleManager::kExtensions)
        text.append("\n").append(extension);
    return text;
}

std::vector<TableRow> rowsOf(const std::vector<std::string>& files) {
    std::vector<TableRow> rows;
    for (const std::string& file : files)
        rows.push_back({.title = typedFromBytes(percentDecoded(file))});
    return rows;
}

bool isSoundFile(const std::string& name) {
    const auto& known = QuickSampleManager::kExtensions;
    return std::ranges::find(known, extensionOf(name)) != known.end();
}

} // namespace

QuickSampleManager::QuickSampleManager(Instance& instance, QuickSampleManagerDelegate* receiver)
    : instance_(instance), delegate(receiver),
      _buitlInFiles(kBuiltInSamples.begin(), kBuiltInSamples.end()),
      import_(instance, {{kExtensions.begin(), kExtensions.end()}, refusal()},
              [this] {
                  fillTableWithFilesName();
                  instance_.sharedFolder.post(shared_folder_notice::kSamples);
              }),
      lister_(instance.runLoop, instance.log) {
    table_.highlight = kSelection;
    table_.sections = {{"Built-In", rowsOf(_buitlInFiles)}, {"Shared"}};
}

QuickSampleManager::~QuickSampleManager() {
    instance_.notifications.removeObserver(notice_);
}

void QuickSampleManager::viewDidLoad() {
    fillTableWithFilesName();
    if (notice_ != 0) return;
    notice_ = instance_.notifications.addObserver(
        shared_folder_notice::kSamples,
        [this](const std::any&) { fillTableWithFilesNameFromNotification(); });
}

void QuickSampleManager::fillTableWithFilesNameFromNotification() {
    fillTableWithFilesName();
}

void QuickSampleManager::fillTableWithFilesName() {
    const auto list = [this, shared = instance_.folders.shared] {
        std::vector<std::string> files;
        std::ranges::copy_if(folderEntries(shared), std::back_inserter(files), isSoundFile);
        std::vector<TableRow> rows = rowsOf(files);
        return [this, files = std::move(files), rows = std::move(rows)]() mutable {
            _listOfFiles.swap(files);
            table_.sections[kSharedSection].rows.swap(rows);
            ++table_.reloads;
            highLightSelection();
        };
    };
    if (instance_.runLoop.isPaced()) // thousands of them take MAIN too long
        lister_.start([list](const Worker::Cancelled&) { return RunLoop::Task(list()); });
    else
        list()();
}

// --- Choosing ---

void QuickSampleManager::tableView_didSelectRowAtIndexPath(LibraryTable::Place place) {
    const auto& files = place.section == kBuiltInSection ? _buitlInFiles : _listOfFiles;
    if (place.section > kSharedSection || place.row >= files.size()) return;
    if (instance_.folders.shared.empty()) // its name alone would be looked for just anywhere
        return instance_.log.write("no sample can be chosen: there is no shared folder; name one");
    table_.selected = place;
    _pathAndNameTmp = instance_.folders.shared / files[place.row];
    if (delegate) delegate->LoadSampleDelegate(_pathAndNameTmp);
    setLastSelectedFile(_pathAndNameTmp);
    close();
}

void QuickSampleManager::setLastSelectedFile(const std::filesystem::path& path) {
    if (!path.empty()) _selectedFilePath = path;
}

void QuickSampleManager::highLightSelection() {
    if (!_selectedFilePath.empty()) table_.selected.reset();
}

void QuickSampleManager::close(const void*) {
    if (delegate) delegate->dismissQuickSampleManager();
}

// --- Deleting ---

bool QuickSampleManager::tableView_canEditRowAtIndexPath(LibraryTable::Place place) const {
    return place.section == kSharedSection && place.row < _listOfFiles.size();
}

void QuickSampleManager::tableView_commitDeleteForRowAtIndexPath(LibraryTable::Place place) {
    if (!tableView_canEditRowAtIndexPath(place)) return;
    const auto row = static_cast<std::ptrdiff_t>(place.row);
    const std::filesystem::path file = instance_.folders.shared / _listOfFiles[place.row];
    if (const std::error_code error = file_calls::remove(file))
        instance_.log.write(shownFile(file) + " cannot be deleted: " + error.message());
    _listOfFiles.erase(_listOfFiles.begin() + row);
    auto& rows = table_.sections[kSharedSection].rows;
    rows.erase(rows.begin() + row);
    ++table_.reloads;
    if (lister_.busy()) fillTableWithFilesName(); // it may have seen the file
    instance_.sharedFolder.post(shared_folder_notice::kSamples);
}

// --- Importing ---

void QuickSampleManager::open_AUv3_main_APP() {
    instance_.documents.present(
        {.kind = DocumentRequest::Kind::importCopies,
         .types = {"public.audio"},
         .picked = [this, alive = std::weak_ptr(alive_)](const auto& documents) {
             if (!alive.expired()) documentPicker_didPickDocumentsAtURLs(documents);
         }});
}

void QuickSampleManager::documentPicker_didPickDocumentsAtURLs(
    const std::vector<std::filesystem::path>& documents) {
    for (const std::filesystem::path& document : documents) import_.importDocument(document);
}

} // namespace zephyra

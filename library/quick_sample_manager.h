// QuickSampleManager: the sample library, where the user picks, imports and deletes sound files.
#pragma once

#include "library/built_in_samples.h"
#include "library/document_import.h"
#include "library/library_table.h"
#include "platform/instance.h"
#include "platform/sound/sound_file.h"
#include "platform/threads/worker.h"

#include <cstddef>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace zephyra {

/// Who plays what was chosen. MAIN.
class QuickSampleManagerDelegate {
public:
    virtual ~QuickSampleManagerDelegate() = default;
    /// file may be missing.
    virtual void LoadSampleDelegate(const std::filesystem::path& file) = 0;
    /// The library is to be closed.
    virtual void dismissQuickSampleManager() {}
};

/// The logic of one table with two sections; draws nothing. Everything is MAIN.
class QuickSampleManager {
public:
    static constexpr auto& kExtensions = kSoundFileExtensions;
    static constexpr std::size_t kBuiltInSection = 0, kSharedSection = 1;

    /// receiver, the delegate, may be null. Both must outlive this.
    QuickSampleManager(Instance& instance, QuickSampleManagerDelegate* receiver);
    ~QuickSampleManager();
    QuickSampleManager(const QuickSampleManager&) = delete;
    QuickSampleManager& operator=(const QuickSampleManager&) = delete;

    void viewDidLoad(); ///< fills the list, and again whenever the folder is said to have changed
    /// At once, or in a host as soon as WORKER has listed the folder.
    void fillTableWithFilesName();
    void fillTableWithFilesNameFromNotification();
    /// The program came to the front.
    void applicationDidBecomeActive() { fillTableWithFilesName(); }

    const std::vector<std::string>& builtInFiles() const { return _buitlInFiles; }
    const std::vector<std::string>& listOfFiles() const { return _listOfFiles; }
    const LibraryTable& table() const { return table_; }
    void tableView_didSelectRowAtIndexPath(LibraryTable::Place place);
    bool tableView_canEditRowAtIndexPath(LibraryTable::Place place) const;
    void tableView_commitDeleteForRowAtIndexPath(LibraryTable::Place place);

    void setLastSelectedFile(const std::filesystem::path& path); ///< an empty one is ignored
    const std::filesystem::path& getLastSelectedFile() const { return _selectedFilePath; }
    void highLightSelection();

    std::filesystem::path getApplicationFolder() const { return instance_.folders.resources; }
    void open_AUv3_main_APP();
    void documentPicker_didPickDocumentsAtURLs(const std::vector<std::filesystem::path>& documents);
    void close(const void* sender = nullptr);

private:
    Instance& instance_;
    QuickSampleManagerDelegate* delegate;
    const std::vector<std::string> _buitlInFiles;
    std::vector<std::string> _listOfFiles;
    std::filesystem::path _selectedFilePath, _pathAndNameTmp;
    LibraryTable table_;
    DocumentImport import_;
    NotificationCenter::Token notice_ = 0;
    std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
    Worker lister_; // last: its thread ends before what it uses
};

} // namespace zephyra

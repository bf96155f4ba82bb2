// Imports documents of any name and content into a shared folder, with a user who gives any other
// name when asked. Whatever comes, nothing appears outside that folder, nothing that was there is
// lost unless its name was given again, and every document stays as it is.

#include "fuzz/require.h"
#include "library/bank_folder.h"
#include "library/document_import.h"
#include "platform/files/folder_entries.h"
#include "tests/support/heard_instance.h"
#include "tests/support/temporary_folder.h"

namespace zephyra {
namespace {

namespace fs = std::filesystem;

void tryImport(const std::string& document, const std::string& typed, const std::string& content) {
    // documents/DOCUMENT and home/shared, with a file beside and in the latter.
    const TemporaryFolder ground;
    const fs::path shared = ground / "home/shared", file = ground / "documents" / document;
    fs::create_directories(shared);
    fs::create_directories(file.parent_path());
    writeText(ground / "home/beside.zephyra", "beside");
    writeText(shared / "Mine.zephyra", "mine");
    {
        std::ofstream made(file, std::ios::binary);
        made << content;
        if (!made) return; // no name that a document can have
    }
    HeardInstance instance;
    instance.folders.shared = shared;
    int refills = 0;
    DocumentImport import(instance, {{"zephyra"}, "Only banks"}, [&refills] { ++refills; });
    for (int round = 0; round < 2; ++round) { // the second finds its name taken
        import.importDocument(file);
        for (int turn = 0; turn < 6; ++turn) {
            instance.runLoop.waitForWork();
            instance.runLoop.runPosted();
            if (!instance.alerts.current()) continue;
            if (!instance.alerts.answer("OK", typed)) instance.alerts.answer(0);
        }
    }
    require(!import.isImporting() && instance.alerts.count() == 0);
    require(ground.entries() == 2 && folderEntries(ground / "home").size() == 2);
    require(readText(ground / "home/beside.zephyra") == "beside");
    require(folderEntries(file.parent_path()).size() == 1 && readText(file) == content);
    const std::string mine = readText(shared / "Mine.zephyra");
    require(mine == "mine" || mine == content);
    int banks = 0;
    for (const auto& entry : fs::directory_iterator(shared)) {
        if (entry.path().filename() == BankFolder::kLockName) continue;
        require(entry.is_regular_file() && entry.path().extension() == ".zephyra");
        ++banks;
    }
    if (content != "mine") require((refills > 0) == (banks > 1 || mine != "mine"));
}

} // namespace
} // namespace zephyra

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    // Document's name, a line end, what the user types, a line end, content.
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    const std::size_t first = bytes.find('\n');
    const std::size_t second = first == std::string::npos ? first : bytes.find('\n', first + 1);
    if (second == std::string::npos) return 0;
    const std::string name = bytes.substr(0, first);
    if (name.empty() || name == "." || name == ".." || name.find('/') != std::string::npos ||
        name.find('\0') != std::string::npos)
        return 0;
    zephyra::tryImport(name, bytes.substr(first + 1, second - first - 1), bytes.substr(second + 1));
    return 0;
}

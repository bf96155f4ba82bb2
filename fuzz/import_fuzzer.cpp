// Imports documents of any name and content into a shared folder, with a user who gives any other
// name when asked. Whatever comes, nothing appears outside that folder, nothing that was there is
// lost unless its name was given again, and every document stays as it is.

#include "fuzz/require.h"
#include "library/bank_folder.h"
#include "library/document_import.h"
#include "tests/support/heard_instance.h"

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace zephyra {
namespace {

namespace fs = std::filesystem;

std::string contentOf(const fs::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

std::ptrdiff_t countIn(const fs::path& folder) {
    return std::distance(fs::directory_iterator(folder), {});
}

/// root/documents/DOCUMENT, root/home/shared, and a file beside and in each.
class Playground {
public:
    Playground() {
        std::string name = (fs::temp_directory_path() / "zephyra-fuzz-XXXXXX").string();
        if (!::mkdtemp(name.data())) std::abort();
        root = name;
        fs::create_directories(shared());
        fs::create_directories(documents());
        std::ofstream(root / "home/beside.zephyra") << "beside";
        std::ofstream(shared() / "Mine.zephyra") << "mine";
    }
    ~Playground() {
        std::error_code ignored;
        fs::remove_all(root, ignored);
    }
    fs::path shared() const { return root / "home/shared"; }
    fs::path documents() const { return root / "documents"; }

    fs::path root;
};

void tryImport(const std::string& document, const std::string& typed, const std::string& content) {
    Playground ground;
    const fs::path file = ground.documents() / document;
    {
        std::ofstream made(file, std::ios::binary);
        made << content;
        if (!made) return; // no name that a document can have
    }
    HeardInstance instance;
    instance.folders.shared = ground.shared();
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
    require(countIn(ground.root) == 2 && countIn(ground.root / "home") == 2);
    require(contentOf(ground.root / "home/beside.zephyra") == "beside");
    require(countIn(ground.documents()) == 1 && contentOf(file) == content);
    const std::string mine = contentOf(ground.shared() / "Mine.zephyra");
    require(mine == "mine" || mine == content);
    int banks = 0;
    for (const auto& entry : fs::directory_iterator(ground.shared())) {
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

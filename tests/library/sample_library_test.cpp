// Importing documents, the sample library's lists, and the built-in samples' way into the folder.

#include "library/bank_folder.h"
#include "library/named_sample.h"
#include "library/quick_sample_manager.h"
#include "library/shared_folder.h"
#include "tests/support/counted_reads.h"
#include "tests/support/testing.h"

#include <malloc.h>

namespace zephyra {
namespace {

int diskIsFull(FileCall call, const fs::path&) {
    return call == FileCall::write ? ENOSPC : 0;
}

struct Chosen : QuickSampleManagerDelegate {
    std::vector<fs::path> told;
    void LoadSampleDelegate(const fs::path& file) override { told.push_back(file); }
    void dismissQuickSampleManager() override { told.push_back("closed"); }
};

struct SampleLibrary : testing::Test {
    SampleLibrary() {
        for (const char* name : {"documents", "resources", "home/shared"})
            fs::create_directories(folder / name);
        instance.folders = {folder / "home/shared", folder / "resources"};
    }
    fs::path document(const std::string& name, const std::string& text) {
        writeText(folder / "documents" / name, text);
        return folder / "documents" / name;
    }
    /// The message (title for a rename) of the alert that work ended with.
    std::string finished() {
        instance.runLoop.finishWork();
        const Alert* const alert = instance.alerts.current();
        if (alert && alert->textField) return alert->title;
        const std::string message = alert ? alert->message : "";
        instance.alerts.answer("Ok");
        return message;
    }
    std::string imported(const fs::path& file) {
        imports.importDocument(file);
        return finished();
    }
    std::string shared(const std::string& name) { return readText(instance.folders.shared / name); }

    TemporaryFolder folder{quickFolder()};
    Instance instance;
    int refills = 0;
    DocumentImport imports{instance, {{"zephyra", "wav"}, "Only those"}, [this] { ++refills; }};
};

TEST_F(SampleLibrary, ANameMeansTheFileThatIsThereElseTheUsersSampleElseTheBuiltInOne) {
    const auto meant = [this](const char* typed) { return namedSample(typed, instance.folders); };
    EXPECT_EQ(meant("bird.wav"), "bird.wav");
    writeText(folder / "resources/bird.wav", "built in");
    EXPECT_EQ(meant("bird.wav"), folder / "resources/bird.wav");
    writeText(folder / "home/shared/bird.wav", "the user's");
    EXPECT_EQ(meant("bird.wav"), folder / "home/shared/bird.wav");
    EXPECT_EQ(meant("./bird.wav"), "./bird.wav");
    fs::create_directory(folder / "resources/d");
    EXPECT_EQ(meant("d"), "d") << "a folder is no sample";
}

TEST_F(SampleLibrary, ImportsUnderTheDecodedNameAndNothingOutsideTheFolder) {
    const char* const invalid = "Invalid file name";
    const std::tuple<std::string, std::string, const char*> cases[] = {
        {"my%20bank.zephyra", "", "my bank.zephyra"}, {"100%.wav", "", "100%.wav"},
        {"loud.WAV", "Only those", "loud.WAV"},       {".wav", "Only those", ".wav"},
        {"..%2Fx.zephyra", invalid, "../x.zephyra"},  {"..%2fshared%2Fy.wav", invalid, "y.wav"},
        {"line%0Aend.wav", invalid, "line\nend.wav"}, {"..zephyra", invalid, "..zephyra"},
        {"%2E.zephyra", invalid, "..zephyra"},        {"\xff.zephyra", invalid, "\xff.zephyra"},
        {"\\xFF.zephyra", "", "\\xFF.zephyra"}};
    int copies = 0;
    for (const auto& [name, alert, copy] : cases) {
        EXPECT_EQ(imported(document(name, name)), alert) << name;
        EXPECT_EQ(shared(copy), alert.empty() ? name : "") << name;
        EXPECT_EQ(refills, copies += alert.empty());
    }
    EXPECT_THAT(imported(folder / "documents/gone.wav"), HasSubstr("gone.wav cannot be read"));
}

/// What is allocated, large pieces included; 0 under a sanitizer's allocator.
std::size_t heapBytes() {
    const struct mallinfo2 heap = mallinfo2();
    return heap.uordblks + heap.hblkhd;
}

TEST_F(SampleLibrary, ALongDocumentIsCopiedInPiecesAheadOfTheLockAndGivenUpWhenNobodyWaits) {
    std::string text;
    while (text.size() < 24 * FileCopy::kPieceBytes + 7) text += std::to_string(text.size());
    const auto file = document("long.wav", text);
    const std::size_t before = heapBytes();
    std::size_t most = 0;
    bool isFlushed = false, isLocked = false, vanishes = false;
    const auto copy = instance.folders.shared / "long.wav";
    std::atomic<int> writes = 0;
    setFileCallGate([&](FileCall call, const fs::path&) {
        most = std::max(most, heapBytes() - std::min(heapBytes(), before));
        writes += call == FileCall::write;
        isFlushed = isFlushed || (call == FileCall::flush && !isLocked);
        isLocked = isLocked || call == FileCall::lock;
        if (vanishes && call == FileCall::lock) fs::remove(copy);
        return 0;
    });
    std::vector<double> shares;
    imports.setProgress([&shares](double share) { return shares.push_back(share), true; });
    EXPECT_TRUE(imported(file).empty() && shared("long.wav") == text);
    EXPECT_LT(most, 4 * FileCopy::kPieceBytes);
    EXPECT_TRUE(isFlushed && isLocked);
    EXPECT_TRUE(std::ranges::is_sorted(shares) && shares.front() == 0.0 && shares.size() > 20);
    writes = 0;
    EXPECT_THAT(imported(file), HasSubstr("already contains a file named long.wav"));
    EXPECT_EQ(writes, 0) << "copied for nothing";
    instance.alerts.answer("Cancel");
    vanishes = true; // while the lock is waited for
    EXPECT_TRUE(imported(file).empty() && shared("long.wav") == text);
    vanishes = !fs::remove(copy);

    imports.setProgress([](double share) { return share < 0.5; });
    EXPECT_EQ(imported(file), "interrupted; " + file.string() + " was not copied");
    writes = 0;
    {
        DocumentImport closed(instance, {{"wav"}, ""}, [] {});
        closed.importDocument(file);
        for (int i = 0; i < 5000 && writes == 0; ++i)
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    setFileCallGate({});
    EXPECT_LT(writes, 20);
    std::error_code error;
    EXPECT_THAT(file_calls::list(instance.folders.shared, error),
                ElementsAre(BankFolder::kLockName));
}

TEST_F(SampleLibrary, AsksForAnotherNameWhenOneIsTakenAlsoAtTheLastMoment) {
    const auto file = document("take.wav", "new"), others = instance.folders.shared / "take.wav";
    const std::string asks = "This location already contains a file named take.wav";
    setFileCallGate([&](FileCall call, const fs::path& path) {
        if (call == FileCall::rename && path.filename() == "take.wav" && !exists(others))
            writeText(others, "old");
        return 0;
    });
    imports.importDocument(file);
    EXPECT_EQ(imported(document("b.wav", "b")), asks); // and the next goes on
    setFileCallGate({});
    for (const char* typed : {" \t", "../take", "a/b", "x\ny", ".", " .. "}) {
        instance.alerts.answer("OK", typed);
        EXPECT_EQ(finished(), "Invalid file name") << typed;
        EXPECT_EQ(imported(file), asks);
    }
    writeText(instance.folders.shared / "mine.wav", "mine");
    instance.alerts.answer("OK", "  mine ");
    EXPECT_EQ(finished(), "");
    EXPECT_EQ(shared("mine.wav") + shared("take.wav") + shared("b.wav"), "newoldb");
    const GateScope full(diskIsFull);
    EXPECT_THAT(imported(document("c.wav", "c")), HasSubstr("c.wav cannot be written"));
    EXPECT_FALSE(exists(instance.folders.shared / "c.wav"));
}

TEST_F(SampleLibrary, WhatArrivesWhileABankIsWrittenWaitsForIt) {
    const auto bank = instance.folders.shared / "Bank.zephyra";
    const auto file = document("Bank.zephyra", "imported");
    for (const bool replaces : {false, true}) {
        SCOPED_TRACE(replaces);
        fs::remove(bank);
        std::atomic<bool> waits = false, isStarted = false;
        setFileCallGate(
            [&, changing = std::this_thread::get_id()](FileCall call, const auto& path) {
                if (std::this_thread::get_id() != changing)
                    waits = waits || call == FileCall::lock;
                else if (call == FileCall::rename && path.filename() == "Bank.zephyra" &&
                         !isStarted.exchange(true)) {
                    replaces ? imports.importAs(file, "Bank") : imports.importDocument(file);
                    for (int i = 0; i < 5000 && !waits && readText(bank) != "imported"; ++i)
                        std::this_thread::sleep_for(std::chrono::milliseconds(1));
                }
                return 0;
            });
        BankFolder banks(instance.folders);
        EXPECT_EQ(banks.change("Bank.zephyra", [](Bank&) { return true; }).problem, "");
        EXPECT_EQ(finished().empty(), replaces); // asks for another name
        setFileCallGate({});
        EXPECT_EQ(readText(bank) == "imported", replaces);
        instance.alerts.answer("Cancel");
    }
}

TEST_F(SampleLibrary, ListsSoundsOfTheFolderAndHandsOverWhatIsChosen) {
    Chosen chosen;
    Instance other;
    other.folders = instance.folders;
    QuickSampleManager manager(instance, &chosen), elsewhere(other, nullptr);
    for (const char* name :
         {"b%20b.wav", "take.WAV", "A.aifc", "bank.zephyra", "wav", "c.mp3", "z\n%ff.raw"})
        writeText(instance.folders.shared / name, name);
    manager.viewDidLoad();
    elsewhere.viewDidLoad();
    EXPECT_THAT(manager.listOfFiles(), ElementsAre("A.aifc", "b%20b.wav", "c.mp3", "z\n%ff.raw"));
    EXPECT_EQ(manager.table().sections[1].rows[1].title, "b b.wav");
    EXPECT_EQ(manager.table().sections[1].rows[3].title, "z\\x0A\\xFF.raw");
    manager.tableView_didSelectRowAtIndexPath({0, 1});
    manager.tableView_didSelectRowAtIndexPath({1, 4}); // no such row
    EXPECT_THAT(chosen.told, ElementsAre(instance.folders.shared / "Blackbird.mp3", "closed"));
    manager.tableView_commitDeleteForRowAtIndexPath({0, 1}); // built in
    manager.tableView_commitDeleteForRowAtIndexPath({1, 0});
    EXPECT_FALSE(exists(instance.folders.shared / "A.aifc"));
    manager.open_AUv3_main_APP();
    instance.documents.pick({document("d.wav", "d"), document("e.txt", "e")});
    EXPECT_THAT(finished(), HasSubstr("only these audio types: \nraw\nwav\naif\n"));
    other.runLoop.runPosted();
    for (const QuickSampleManager* each : {&manager, &elsewhere})
        EXPECT_THAT(each->listOfFiles(), ElementsAre("b%20b.wav", "c.mp3", "d.wav", "z\n%ff.raw"));
    other.runLoop.tryAdvanceByWall(0.0); // a host's: the folder is listed in the background
    elsewhere.fillTableWithFilesName();
    elsewhere.tableView_commitDeleteForRowAtIndexPath({1, 0});
    other.runLoop.finishWork();
    EXPECT_THAT(elsewhere.listOfFiles(), ElementsAre("c.mp3", "d.wav", "z\n%ff.raw"));
    EXPECT_EQ(elsewhere.table().sections[1].rows.size(), 3u);
}

TEST_F(SampleLibrary, CopiesBuiltInSamplesOnceAndNeverOverAFile) {
    const auto prepare = [this] { return prepareSharedFolder(instance.folders); };
    writeText(folder / "resources/Zephyra_Sample08.mp3", "sample");
    writeText(instance.folders.shared / "Zephyra_Sample08.mp3", "the user's");
    EXPECT_TRUE(prepare());
    writeText(folder / "resources/Blackbird.mp3", "bird"); // comes with a later version
    setFileCallGate(diskIsFull);
    EXPECT_THAT(prepare().message(), HasSubstr("Blackbird.mp3"));
    setFileCallGate({});
    EXPECT_TRUE(prepare());
    EXPECT_EQ(shared("Blackbird.mp3") + shared("Zephyra_Sample08.mp3"), "birdthe user's");
    fs::remove(instance.folders.shared / "Blackbird.mp3");
    EXPECT_TRUE(prepare());
    EXPECT_FALSE(exists(instance.folders.shared / "Blackbird.mp3"));
}

} // namespace
} // namespace zephyra

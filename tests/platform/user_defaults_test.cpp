#include "platform/user_defaults.h"

#include "platform/files/file_calls.h"
#include "platform/files/file_lock.h"
#include "platform/text/log.h"
#include "tests/support/testing.h"

namespace zephyra {
namespace {

struct UserDefaultsTest : testing::Test {
    TemporaryFolder folder_;
    fs::path path_ = folder_ / "not yet there/defaults.plist";
    std::vector<std::string> lines_;
    Log log_{[this](std::string_view line) { lines_.emplace_back(line); }};
};

TEST_F(UserDefaultsTest, OutliveTheProgram) {
    {
        UserDefaults defaults(path_, log_);
        EXPECT_EQ(defaults.value("a"), nullptr);
        defaults.setValue("a", 1.5f);
        defaults.setValue("b", "x");
        defaults.removeValue("b");
    }
    const UserDefaults defaults(path_, log_);
    EXPECT_TRUE(defaults.value("a") && *defaults.value("a") == PropertyValue(1.5));
    EXPECT_EQ(defaults.value("b"), nullptr);
    EXPECT_TRUE(lines_.empty());
}

TEST_F(UserDefaultsTest, SetADamagedFileAsideAndBeginANewOne) {
    path_ = folder_ / "defaults.plist";
    const fs::path first = folder_ / "defaults.unreadable.plist";
    writeText(folder_ / "defaults.unreadable-2.plist", "kept before");
    const std::pair<std::string, fs::path> damages[] = {
        {"<plist version=\"1.0\"><dict><key>a</key>", first},
        {"another program's bytes", folder_ / "defaults.unreadable-3.plist"}};
    for (const auto& [text, kept] : damages) {
        writeText(path_, text);
        UserDefaults defaults(path_, log_);
        EXPECT_EQ(readText(path_), text); // nothing is to be written yet
        defaults.setValue("a", 1);
        EXPECT_EQ(readText(kept), text);
        EXPECT_THAT(lines_.back(), AllOf(StartsWith(path_.string() + " cannot be read: "),
                                         EndsWith("; it is kept as " + kept.string())));
        EXPECT_EQ(readPropertyListFile(path_).value(), (PropertyDictionary{{"a", 1}}));
    }
    EXPECT_EQ(readText(folder_ / "defaults.unreadable-2.plist"), "kept before");
    fs::remove(path_);
    fs::create_directories(path_ / "somebody's");
    UserDefaults(path_, log_).setValue("a", 2);
    EXPECT_TRUE(fs::is_directory(folder_ / "defaults.unreadable-4.plist" / "somebody's"));
    EXPECT_EQ(must(readPropertyListFile(path_)), (PropertyDictionary{{"a", 2}}));
}

TEST_F(UserDefaultsTest, LeaveAFileAloneThatTheyMayNotOpenAndSaySoOnce) {
    path_ = folder_ / "defaults.plist";
    UserDefaults(path_, log_).setValue("a", 1);
    const std::string before = readText(path_);
    setFileCallGate([this](FileCall call, const fs::path& path) {
        return call == FileCall::open && path == path_ ? EACCES : 0;
    });
    UserDefaults defaults(path_, log_);
    defaults.setValue("b", 1);
    defaults.setValue("c", 1);
    setFileCallGate({});
    EXPECT_EQ(*defaults.value("b"), PropertyValue(1));
    EXPECT_EQ(readText(path_), before);
    ASSERT_EQ(lines_.size(), 1u);
    EXPECT_THAT(lines_[0], AllOf(StartsWith(path_.string()), HasSubstr("left as it is")));
    defaults.setValue("a", 2); // readable again
    EXPECT_EQ(readPropertyListFile(path_).value(),
              (PropertyDictionary{{"a", 2}, {"b", 1}, {"c", 1}}));

    UserDefaults below(path_ / "below/defaults.plist", log_); // a file in the way of its folder
    below.setValue("a", 1);
    EXPECT_THAT(lines_.back(), HasSubstr("below cannot be made"));
}

TEST_F(UserDefaultsTest, KeepForTheNextTimeWhatALockKeepsFromBeingWritten) {
    path_ = folder_ / "defaults.plist";
    FileLock other;
    ASSERT_FALSE(other.lock(folder_ / ".defaults.lock"));
    int tries = 0;
    setFileCallGate([&tries](FileCall call, const fs::path&) {
        tries += call == FileCall::lock;
        return 0;
    });
    UserDefaults defaults(path_, log_);
    defaults.setValue("a", 1);
    EXPECT_LE(tries, 201); // a millisecond each
    tries = 0;
    for (const char* const key : {"b", "c", "d", "e"}) defaults.setValue(key, 1);
    setFileCallGate({});
    EXPECT_EQ(tries, 4); // nobody waits again
    ASSERT_EQ(lines_.size(), 1u);
    EXPECT_THAT(lines_[0], HasSubstr("another program holds"));
    EXPECT_FALSE(fs::exists(path_));
    other.unlock();
    UserDefaults(path_, log_).setValue("f", 2); // of another program
    defaults.removeValue("a");
    const PropertyDictionary all = {{"b", 1}, {"c", 1}, {"d", 1}, {"e", 1}, {"f", 2}};
    EXPECT_EQ(readPropertyListFile(path_).value(), all);

    ASSERT_FALSE(other.lock(folder_ / ".defaults.lock"));
    {
        UserDefaults last(path_, log_);
        last.setValue("f", 3);
        other.unlock();
    }
    EXPECT_EQ(must(readPropertyListFile(path_)).at("f"), PropertyValue(3));
}

TEST_F(UserDefaultsTest, WriteTheOthersWhenOneValueCannotBeKept) {
    UserDefaults defaults(path_, log_);
    defaults.setValue("bad", HUGE_VAL);
    defaults.setValue("good", 1);
    EXPECT_NE(defaults.value("bad"), nullptr);
    EXPECT_THAT(lines_, Contains(HasSubstr("bad: a real that is not finite")));
    EXPECT_EQ(readPropertyListFile(path_).value(), (PropertyDictionary{{"good", 1}}));
}

} // namespace
} // namespace zephyra

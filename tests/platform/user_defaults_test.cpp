#include "platform/user_defaults.h"

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

TEST_F(UserDefaultsTest, LeaveAFileAloneThatTheyCannotRead) {
    path_ = folder_ / "defaults.plist";
    writeText(path_, "damaged");
    UserDefaults defaults(path_, log_);
    defaults.setValue("a", 1);
    EXPECT_EQ(*defaults.value("a"), PropertyValue(1));
    EXPECT_EQ(readText(path_), "damaged");
    ASSERT_EQ(lines_.size(), 1u);
    EXPECT_THAT(lines_[0], StartsWith(path_.string() + " cannot be read: "));

    UserDefaults below(path_ / "below/defaults.plist", log_); // a file in the way of its folder
    below.setValue("a", 1);
    EXPECT_THAT(lines_.back(), HasSubstr("below cannot be made"));
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

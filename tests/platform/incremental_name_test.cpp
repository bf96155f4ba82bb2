#include "platform/files/incremental_name.h"

#include "tests/support/temporary_folder.h"

#include <gtest/gtest.h>

namespace zephyra {

TEST(IncrementalName, StandsOneAboveTheLargestNumberBehindItsBase) {
    const TemporaryFolder folder;
    const auto next = [&] { return getIncrementalNameFromDocumentsFolder(folder.path(), "Rec"); };
    EXPECT_EQ(getIncrementalNameFromDocumentsFolder(folder / "none", "Rec"), "Rec 1");
    for (const auto& [entry, expected] :
         {std::pair("Record 3.wav", "Rec 1"),
          {"Rec 7.wav", "Rec 8"},
          {"Rec -20", "Rec 8"},
          {"My Rec \t12x99", "Rec 13"},
          {"Rec Rec 50", "Rec 13"},
          {"Rec 99999999999999999999", "Rec 9223372036854775807"}}) {
        writeText(folder / entry, "");
        EXPECT_EQ(next(), expected) << entry;
    }
}

} // namespace zephyra

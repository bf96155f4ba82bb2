#include "platform/files/content_hash.h"

#include "tests/support/temporary_folder.h"

#include <gtest/gtest.h>

namespace zephyra {
namespace {

TEST(ContentHash, IsTheSameOfAFileHoweverManyPiecesItIsReadIn) {
    EXPECT_EQ(contentHash({}), "99aa06d3014798d86001c324468d497f"); // published for no bytes
    TemporaryFolder folder;
    std::string text;
    for (const std::size_t size : {0u, 1u, 262143u, 262144u, 600001u}) {
        while (text.size() < size) text += static_cast<char>(text.size() * 31 >> 3);
        writeText(folder / "a", text);
        auto file = openToHash(folder / "a");
        const std::string expected = contentHash(std::as_bytes(std::span(text)));
        EXPECT_EQ(contentHash(file.value()).value(), expected);
        ASSERT_FALSE(file.value().load());
        EXPECT_EQ(contentHash(file.value()).value(), expected);
    }
    EXPECT_EQ(openToHash(folder / "b").message(),
              (folder / "b").string() + " cannot be read: an ordinary file is needed");
}

} // namespace
} // namespace zephyra

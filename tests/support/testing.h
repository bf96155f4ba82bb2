// must, failureOf and comesTrue, and what nearly every test needs: the framework and the standard
// library.
#pragma once

#include "platform/text/result.h"
#include "tests/support/temporary_folder.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <bit>
#include <cerrno>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <gmock/gmock.h>
#include <limits>
#include <map>
#include <numbers>
#include <numeric>
#include <random>
#include <set>
#include <sstream>
#include <thread>

namespace zephyra {

namespace fs = std::filesystem;
using testing::AllOf, testing::AnyOf, testing::Contains, testing::Each, testing::ElementsAre;
using testing::ElementsAreArray, testing::EndsWith, testing::HasSubstr, testing::Not;
using testing::StartsWith;

/// A sanitizer watches, as in every build by clang: it takes its time, and keeps what is freed.
#ifdef __clang__
inline constexpr bool kIsWatched = true;
#else
inline constexpr bool kIsWatched = false;
#endif

/// The value of what must have come. Else the test fails with its message, and goes on with a value
/// made of nothing.
template <typename Value>
Value must(Result<Value> result) {
    EXPECT_TRUE(result.ok()) << result.message();
    return result ? std::move(result.value()) : Value();
}

/// The message of what must have failed; empty, and the test fails, when it did not.
template <typename Value>
std::string failureOf(const Result<Value>& result) {
    EXPECT_FALSE(result.ok());
    return result ? "" : result.message();
}

/// Waits in small steps until isSo() answers true; false when it does not within seconds.
template <typename Condition>
bool comesTrue(const Condition& isSo, double seconds = 20.0) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::duration<double>(seconds);
    while (!isSo()) {
        if (std::chrono::steady_clock::now() > end) return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    return true;
}

} // namespace zephyra

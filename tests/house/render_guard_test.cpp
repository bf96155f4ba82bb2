// The guard's canaries: each thing that rendering may not do, done on purpose, must be counted.

#include "tests/support/render_guard.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdlib>
#include <fcntl.h>
#include <mutex>
#include <string>
#include <thread>
#include <unistd.h>
#include <vector>

namespace zephyra {
namespace {

struct Offence {
    const char* name;
    RenderOffence kind;
    const char* offender;
    void (*commit)();
};

std::mutex mutex;
void* volatile block = nullptr; // volatile: the compiler may leave out an allocation nobody sees

const Offence kOffences[] = {
    {"an allocation", RenderOffence::Allocation, "malloc", [] { block = ::operator new(100); }},
    {"a free", RenderOffence::Free, "free",
     [] {
         ::operator delete(block);
         block = nullptr;
     }},
    {"a vector that grows", RenderOffence::Allocation, "malloc",
     [] {
         std::vector<int> numbers(3);
         block = numbers.data();
         block = nullptr;
     }},
    {"an exception", RenderOffence::Allocation, "malloc",
     [] {
         try {
             throw 1;
         } catch (int) {
         }
     }},
    {"aligned memory", RenderOffence::Allocation, "aligned_alloc",
     [] {
         block = std::aligned_alloc(64, 64);
         std::free(block);
     }},
    {"a lock", RenderOffence::Lock, "pthread_mutex_lock",
     [] { const std::lock_guard lock(mutex); }},
    {"a lock that is only tried", RenderOffence::Lock, "pthread_mutex_trylock",
     [] {
         if (mutex.try_lock()) mutex.unlock();
     }},
    {"a wait for a condition", RenderOffence::Wait, "pthread_cond_clockwait",
     [] {
         std::condition_variable never;
         std::unique_lock lock(mutex, std::adopt_lock); // nobody else is here
         never.wait_for(lock, std::chrono::nanoseconds(1));
         lock.release();
     }},
    {"a sleep", RenderOffence::Wait, "nanosleep",
     [] { std::this_thread::sleep_for(std::chrono::nanoseconds(1)); }},
    {"a write", RenderOffence::SystemCall, "write",
     [] { EXPECT_EQ(::write(STDOUT_FILENO, "", 0), 0); }},
    {"a file that is opened", RenderOffence::SystemCall, "open",
     [] { EXPECT_EQ(::open("/dev/null/none", 0), -1); }},
};

class RenderGuardCounts : public testing::Test {
    void SetUp() override {
        if (!RenderGuard::isActive()) GTEST_SKIP() << "a sanitizer watches this build instead";
    }
};

TEST_F(RenderGuardCounts, EachOffenceByKindAndName) {
    for (const Offence& offence : kOffences) {
        SCOPED_TRACE(offence.name);
        std::uint32_t counted;
        std::string offender;
        {
            RenderGuard guard;
            offence.commit();
            counted = guard.count(offence.kind);
            offender = guard.firstOffender();
        }
        EXPECT_GE(counted, 1u);
        EXPECT_EQ(offender, offence.offender);
    }
}

TEST_F(RenderGuardCounts, NothingOfWhatRenderingMayDo) {
    std::atomic<int> word = 0;
    float sum = 0;
    RenderGuard guard;
    for (int i = 0; i < 1000; ++i) sum += static_cast<float>(word.fetch_add(1));
    EXPECT_EQ(guard.total(), 0u) << guard.firstOffender() << sum;
}

TEST_F(RenderGuardCounts, OnlyItsOwnThreadAndOnlyWhileItStands) {
    std::atomic<bool> go = false, done = false;
    std::thread other([&] {
        while (!go) {
        }
        block = ::operator new(100);
        ::operator delete(block);
        done = true;
    });
    std::uint32_t counted;
    {
        RenderGuard guard;
        go = true;
        while (!done) {
        }
        counted = guard.total();
    }
    other.join();
    EXPECT_EQ(counted, 0u);
}

} // namespace
} // namespace zephyra

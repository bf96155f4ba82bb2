#include "platform/threads/run_loop.h"

#include "platform/instance.h"
#include "platform/threads/wall_clock_driver.h"
#include "platform/threads/worker.h"
#include "tests/support/testing.h"

#include <future>

namespace zephyra {
namespace {

using Clock = RunLoop::Clock;

TEST(RunLoop, KeepsThePeriodOfChainsAndTimersHoweverFarEachAdvanceSteps) {
    for (double step : {0.0031, 0.0107, 0.05, 101.0}) {
        RunLoop loop;
        loop.setClock(Clock::sample);
        double expected = 0.0;
        int links = 0, ticks = 0;
        std::function<void()> link = [&] {
            EXPECT_EQ(loop.now(), expected) << links << " at " << step;
            expected += 0.017;
            if (++links < 5000) loop.performAfter(0.017, link);
        };
        loop.performAfter(0.0, link);
        loop.addDisplayLink(10.0, [&] { EXPECT_DOUBLE_EQ(loop.now(), 0.1 * ++ticks) << step; });
        for (int n = 1; n * step < 100.05; ++n) loop.advance(n * step);
        loop.advance(100.05);
        EXPECT_EQ(std::tuple(links, ticks), std::tuple(5000, 1000));
    }
}

TEST(RunLoop, RunsWhatIsDueInOrderWithSourcesAndPostedTasksInBetween) {
    RunLoop loop;
    std::string order;
    const auto note = [&](const char* text) { return [&order, text] { order += text; }; };
    loop.performAfter(1.0, [&] {
        loop.advance(9.0); // inside a task: nothing
        order += 'b';
        loop.post([&] { loop.post(note("c")); });
        loop.performAfter(0.0, note("e"));
    });
    loop.performAfter(1.0, note("d"));
    loop.performAfter(0.5, note("a"));
    loop.post(note("p"));
    loop.addSource([&, notice = 0]() mutable {
        if (++notice < 4) order += "123"[notice - 1];
    });
    loop.runPosted();
    EXPECT_EQ(order, "1p");
    loop.advance(1.0);
    EXPECT_EQ(order, "1p2a3bcde");
    loop.advance(0.2);
    EXPECT_EQ(loop.now(), 1.0);
}

TEST(RunLoop, EndsTasksFromInsideThemselvesAndFromEachOther) {
    RunLoop loop;
    int polls = 0, ticks = 0, never = 0;
    RunLoop::Token source, timer;
    const auto victim = loop.performAfter(0.35, [&] { ++never; });
    source = loop.addSource([&] { loop.cancel(source), ++polls; });
    timer = loop.addTimer(0.1, [&, keep = std::string(64, 'k')] {
        if (++ticks == 3) loop.cancel(timer), loop.cancel(victim);
        EXPECT_EQ(keep, std::string(64, 'k'));
    });
    const auto chained = loop.performAfter(0.05, [&] { ++never; });
    std::shared_ptr<void> last(nullptr, [&](void*) { loop.cancel(chained); });
    loop.cancel(loop.addTimer(0.05, [&never, held = std::move(last)] { ++never; }));
    for (int hundredth = 1; hundredth < 50; ++hundredth) loop.advance(hundredth * 0.01);
    EXPECT_EQ(std::tuple(polls, ticks, never), std::tuple(1, 3, 0));
}

TEST(RunLoop, SkipsOnlyLateTicksAndOnlyUnderTheWallClock) {
    for (const Clock clock : {Clock::wall, Clock::sample}) {
        RunLoop loop;
        loop.setClock(clock);
        std::string order;
        loop.addTimer(0.125, [&] { order += std::to_string(std::lround(loop.now() * 8)); });
        loop.performAfter(0.25, [&] { order += 's'; });
        loop.advance(1.0);
        EXPECT_EQ(order, clock == Clock::wall ? "s678" : "12s345678");
    }
}

TEST(RunLoop, RefusesSenselessTimesAndEmptyTasks) {
    RunLoop loop;
    int runs = 0;
    for (double bad : {-1.0, std::nan(""), HUGE_VAL}) {
        EXPECT_EQ(loop.addTimer(bad, [] {}), 0u) << bad;
        loop.performAfter(bad, [&] { ++runs; });
        loop.advance(bad);
    }
    EXPECT_EQ(loop.addTimer(0.0, [] {}) + loop.addSource({}) + loop.performAfter(1.0, {}), 0u);
    loop.advance(2.0);
    EXPECT_EQ(std::tuple(runs, loop.now()), std::tuple(3, 2.0));
}

TEST(RunLoop, RunsOutsideCallsInOrderOnceItsThreadIsNoLongerMain) {
    RunLoop loop;
    std::string order;
    const auto elsewhere = [](auto task) { return std::async(std::launch::async, task).get(); };
    const auto isFree = [&] { return elsewhere([&] { return loop.tryAdvanceByWall(0.0); }); };
    {
        const RunLoop::Scope scope(loop);
        loop.post([&] {
            loop.callOutside([&] {
                EXPECT_TRUE(isFree());
                order += 'a';
                const RunLoop::Scope again(loop);
                loop.callOutside([&] { order += 'c'; });
            });
        });
        loop.runPosted();
        loop.callOutside([&] { order += 'b'; });
        elsewhere([&] { loop.callOutside([&] { order += '0'; }); });
        EXPECT_FALSE(isFree());
    }
    EXPECT_EQ(order, "0abc");
}

TEST(RunLoop, GoesOnFromWhereItStandsWhenTheWallClockTakesOver) {
    RunLoop loop;
    loop.advance(3.0);
    const auto at = [&](double wall) { return loop.tryAdvanceByWall(wall) ? loop.now() : -1.0; };
    EXPECT_TRUE(at(10.0) == 3.0 && at(10.5) == 3.5);
    loop.setClock(Clock::sample);
    EXPECT_TRUE(at(11.0) == 3.5 && at(12.0) == 3.5);
    loop.setClock(Clock::wall);
    EXPECT_EQ(at(20.0), 3.5);
    loop.advance(50.0); // by somebody else
    EXPECT_TRUE(at(20.25) == 50.0 && at(20.5) == 50.25);
    EXPECT_EQ(at(0.0), 50.25); // another driver
    EXPECT_EQ(at(0.5), 50.75);
    {
        const RunLoop::Scope window(loop);
        EXPECT_EQ(std::async([&] { return at(0.75); }).get(), -1.0);
        EXPECT_EQ(loop.now(), 50.75);
    }
    EXPECT_EQ(loop.now(), 51.0); // the window went on in the driver's place
    { const RunLoop::Scope window(loop); }
    EXPECT_EQ(loop.now(), 51.0);
}

TEST(RunLoop, RoundsASecondStretchAsTheFirst) {
    RunLoop loop;
    loop.setClock(Clock::sample);
    const auto ticks = [&] {
        std::vector<double> at;
        loop.beginStretch();
        const double from = loop.now();
        const auto timer = loop.addDisplayLink(15.0, [&] { at.push_back(loop.stretch()); });
        for (int n = 1; n <= 100; ++n) loop.advanceStretch(n * 800 / 48000.0);
        EXPECT_DOUBLE_EQ(loop.now(), from + 100 * 800 / 48000.0);
        loop.cancel(timer);
        return at;
    };
    bool late = false;
    loop.performAfter(2.0, [&] { late = true; });
    const std::vector<double> first = ticks();
    loop.advance(loop.now() + 0.1234567);
    EXPECT_EQ(ticks(), first);
    EXPECT_TRUE(late); // what waited goes on waiting for as long
}

TEST(RunLoop, DoesWhatWasAskedForWhileItsTimeStandsStill) {
    RunLoop loop;
    loop.setClock(Clock::sample);
    std::string done;
    loop.post([&] { done += 'p'; });
    loop.addSource([&] { done += 's'; });
    loop.performAfter(0.1, [&] { done += 't'; });
    EXPECT_TRUE(loop.tryAdvanceByWall(9.0));
    EXPECT_EQ(done, "sp");
    EXPECT_EQ(loop.now(), 0.0);
    loop.askForWallClock();
    loop.setClock(Clock::sample); // a bounce again, before anybody heard of it
    EXPECT_TRUE(loop.tryAdvanceByWall(10.0));
    EXPECT_EQ(loop.clock(), Clock::sample);
    loop.askForWallClock();
    EXPECT_TRUE(loop.tryAdvanceByWall(20.0) && loop.tryAdvanceByWall(20.25));
    EXPECT_EQ(loop.now(), 0.25);
    EXPECT_EQ(done, "spsssts");
}

TEST(WallClockDriver, DrivesOneRunLoopWhileAnotherIsHeldAndLetsGoOfBoth) {
    for (int round = 0; round < 20; ++round) { // the thread ends and starts anew each time
        RunLoop held, moving;
        std::promise<void> moved;
        moving.performAfter(0.001, [&] { moved.set_value(); });
        Log log;
        WallClockDriver first(held, log), second(moving, log);
        const RunLoop::Scope scope(held);
        moved.get_future().wait();
    }
}

TEST(Worker, AnswersTheLatestRequestOnlyAndNoneOnceItIsGone) {
    RunLoop loop;
    Log log;
    std::vector<int> answers;
    const auto quick = [&](int number) {
        return [&, number](auto&) { return [&, number] { answers.push_back(number); }; };
    };
    for (const bool goes : {true, false}) {
        std::atomic<bool> began = false, ended = false;
        Worker worker(loop, log), other(loop, log);
        (goes ? other : worker).start([&](const Worker::Cancelled& cancelled) {
            for (began = true; !cancelled;) std::this_thread::yield();
            ended = true;
            return [&] { answers.push_back(1); };
        });
        while (!began) std::this_thread::yield();
        if (goes) continue;
        worker.start(quick(2)); // waits until the third takes its place
        worker.start(quick(3));
        loop.waitForWork();
        EXPECT_TRUE(ended && worker.busy());
        loop.runPosted();
        worker.start(quick(4));
        loop.waitForWork(); // the answer is posted
        worker.cancel();
        worker.start([](auto&) { return RunLoop::Task(); });
        loop.waitForWork();
        loop.runPosted();
        EXPECT_FALSE(worker.busy());
        worker.start([&](auto&) { return [&] { worker.start(quick(5)); }; });
        loop.finishWork(); // also what an answer begins
    }
    EXPECT_EQ(answers, (std::vector{3, 5}));
}

TEST(AlertCenter, AsksInOrderAndAnswersEachOnce) {
    AlertCenter alerts;
    std::string log;
    alerts.setObserver([&] { log += alerts.current() ? alerts.current()->title : "-"; });
    EXPECT_FALSE(alerts.answer(0) || alerts.answer("Ok"));
    alerts.present({"A", "", {{"Ask", [&](auto&) { alerts.present({"C", "", {{}}}); }}}});
    alerts.present({"B", "", {{"No"}, {"Ok", [&](auto& text) { log += text; }}}, AlertTextField{}});
    EXPECT_FALSE(alerts.answer("Close") || alerts.answer(1));
    EXPECT_TRUE(alerts.answer("Ask") && alerts.answer("Ok", "typed") && alerts.answer(0));
    EXPECT_EQ(log, "AABBtypedC-");
}

TEST(SharedFolderNotices, ReachEveryInstanceOnItsOwnRunLoopUnlessItHasGone) {
    Instance here, there;
    RunLoop loop;
    NotificationCenter center;
    std::optional<SharedFolderNotices> gone(std::in_place, loop, center);
    std::string log;
    const auto hear = [&](NotificationCenter& notifications, char letter) {
        notifications.addObserver("files", [&log, letter](auto&) { log += letter; });
    };
    hear(here.notifications, 'h');
    hear(there.notifications, 't');
    hear(center, 'g');
    here.sharedFolder.post("files");
    EXPECT_EQ(log, "h");
    gone.reset();
    loop.runPosted();
    there.runLoop.runPosted();
    here.runLoop.runPosted();
    EXPECT_EQ(log, "ht");
}

} // namespace
} // namespace zephyra

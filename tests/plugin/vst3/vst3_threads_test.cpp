// What happens at once in a host: blocks beside values, states, editors and other instances.
#include "plugin/juce/zephyra_processor.h"
#include "tests/plugin/vst3/raw_component.h"
#include "tests/plugin/vst3/vst3_plugin.h"
#include "tests/support/child_program.h"
#include "tests/support/render_guard.h"

namespace zephyra {
namespace {

constexpr PluginKind kKinds[] = {PluginKind::effect, PluginKind::instrument};

/// Does something over and over on a thread of its own, until it goes.
class Meanwhile {
public:
    explicit Meanwhile(std::function<void(std::mt19937&)> what, unsigned seed = 1)
        : thread_([this, what = std::move(what), seed] {
              for (std::mt19937 random(seed); !stop_; ++rounds_) what(random);
          }) {}
    ~Meanwhile() {
        stop_ = true;
        thread_.join();
    }
    int rounds() const { return rounds_; }

private:
    std::atomic<bool> stop_ = false;
    std::atomic<int> rounds_ = 0;
    std::thread thread_;
};

juce::MidiBuffer someNotes(std::mt19937& random) {
    juce::MidiBuffer notes;
    for (auto i = random() % 4; i > 0; --i)
        notes.addEvent(juce::MidiMessage(random() % 2 ? 0x90 : 0xB0,
                                         static_cast<int>(random() % 128),
                                         static_cast<int>(random() % 128)),
                       static_cast<int>(random() % 512));
    return notes;
}

/// Values from two threads, blocks on a third; meanwhile() happens on this one for so many seconds.
void storm(Vst3Plugin& plugin, int milliseconds, const std::function<void()>& meanwhile) {
    float most = 0.0f; // of the thread that plays
    {
        const auto setValues = [&](std::mt19937& random) {
            plugin.parameter(static_cast<int>(random() % kParameterCount))
                .setValue(static_cast<float>(random() % 1001) / 1000.0f);
            std::this_thread::sleep_for(std::chrono::microseconds(random() % 200));
        };
        const Meanwhile one(setValues, 1), other(setValues, 2);
        const Meanwhile blocks([&](std::mt19937& random) {
            plugin.play(static_cast<int>(random() % 513), someNotes(random));
            most = std::max(most, plugin.peak());
        });
        const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(milliseconds);
        while (std::chrono::steady_clock::now() < end) meanwhile();
        EXPECT_GT(blocks.rounds(), milliseconds / 20);
        EXPECT_GT(one.rounds(), milliseconds / 20);
    }
    EXPECT_TRUE(std::isfinite(most)) << "no number, or a subnormal one";
}

TEST(Vst3Threads, PlaysThroughAStormOfValuesAndStates) {
    for (const PluginKind kind : kKinds) {
        Vst3Plugin plugin(kind);
        plugin.start(48000, 512);
        const std::string state = plugin.state();
        storm(plugin, 3000, [&] {
            EXPECT_THAT(plugin.state(), HasSubstr("</plist>"));
            plugin.setState(state);
            plugin->setCurrentProgram(7);
            pumpMessages(5);
        });
    }
}

TEST(Vst3Threads, OpensAndClosesTheEditorWhilePlaying) {
    static HiddenDisplay display; // JUCE stays connected until the program ends
    if (display.name().empty()) GTEST_SKIP() << "Xvfb is not installed: no editor was opened";
    ::setenv("DISPLAY", display.name().c_str(), 1);
    for (const PluginKind kind : kKinds) {
        Vst3Plugin plugin(kind);
        plugin.start(48000, 512);
        int opened = 0;
        storm(plugin, 2500, [&] {
            const std::unique_ptr<juce::AudioProcessorEditor> editor(
                plugin->createEditorIfNeeded());
            ASSERT_TRUE(editor);
            editor->addToDesktop(0);
            editor->setVisible(true);
            pumpMessages(80);
            opened += editor->getWidth() > 100 && editor->getHeight() > 100;
        });
        EXPECT_GT(opened, 5);
    }
}

TEST(Vst3Threads, MakesAndEndsManyInstancesOnSeveralThreads) {
    // JUCE counts its users without a lock, and takes itself down after the last one.
    const RawComponent stays[] = {RawComponent(kKinds[0]), RawComponent(kKinds[1])};
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t)
        threads.emplace_back([t] {
            for (int i = 0; i < 6; ++i) {
                RawComponent one(kKinds[(t + i) % 2]);
                ASSERT_TRUE(one.ok());
                const bool sounds = (t + i) % 2 == 0; // an instrument waits for a note
                float most = 0.0f;
                for (int block = 0; block < (sounds ? 300 : 10) && most < 0.001f; ++block) {
                    std::vector<float> left(RawComponent::kFrames, 0.3f), right = left;
                    for (std::size_t n = 0; n < left.size(); n += 2) left[n] = right[n] = -0.3f;
                    one.play(left.data(), right.data());
                    most = *std::ranges::max_element(left);
                    std::this_thread::sleep_for(std::chrono::milliseconds(5));
                }
                EXPECT_TRUE(sounds ? most > 0.001f && most < 4.0f : most == 0.0f) << most;
            }
        });
    for (auto& thread : threads) thread.join();
}

TEST(RenderGuard, NoticesAllocationsLocksAndWaitsOfItsThreadAlone) {
    void* volatile memory = nullptr;
    std::mutex mutex;
    const std::pair<const char*, std::function<void()>> rows[] = {
        {"1, first malloc", [&] { memory = std::malloc(10); }},
        {"1, first free", [&] { std::free(memory); }},
        {"1, first malloc", [&] { memory = new char; }},
        {"1, first free", [&] { delete static_cast<char*>(memory); }},
        {"1, first pthread_mutex_lock", [&] { mutex.lock(); }},
        {"1, first nanosleep",
         [] {
             const timespec none{};
             ::nanosleep(&none, nullptr);
         }},
        {"1, first write", [] { EXPECT_EQ(::write(1, "", 0), 0); }},
        {"", [] {}}};
    for (const auto& [wanted, act] : rows) {
        {
            const RenderGuard guard;
            act();
        }
        EXPECT_EQ(RenderGuard::report(), wanted);
    }
    mutex.unlock();
    {
        const RenderGuard guard(RenderGuard::Locks::quick);
        mutex.lock();
        mutex.unlock();
    }
    EXPECT_EQ(RenderGuard::report(), "");
}

TEST(Vst3Threads, RendersWithoutAllocationOrLock) {
    for (const PluginKind kind : kKinds) {
        // The shell alone may do nothing of it.
        ZephyraProcessor shell(kind);
        shell.setPlayConfigDetails(kind == PluginKind::effect ? 2 : 0, 2, 48000, 512);
        shell.prepareToPlay(48000, 512);
        juce::AudioBuffer<float> block(2, 512);
        std::mt19937 random(4);
        for (int i = 0; i < 400; ++i) {
            juce::MidiBuffer notes = someNotes(random);
            block.clear();
            for (int k = 0; k < 4; ++k)
                shell.getParameters()[static_cast<int>(random() % kParameterCount)]->setValue(
                    static_cast<float>(random() % 101) / 100.0f);
            {
                const RenderGuard guard;
                i % 50 == 49 ? shell.processBlockBypassed(block, notes)
                             : shell.processBlock(block, notes);
            }
            ASSERT_EQ(RenderGuard::report(), "") << "block " << i;
        }
        // JUCE's wrappers around it lock what nobody else holds while a block is rendered.
        Vst3Plugin whole(kind);
        whole.start(48000, 512);
        std::vector<float> left(512), right(512);
        for (int i = 0; i < 400; ++i) {
            const bool quiet = i > 390; // else each value and note locks as well
            for (int k = 0; k < 4 && !quiet; ++k)
                whole.parameter(static_cast<int>(random() % kParameterCount))
                    .setValue(static_cast<float>(random() % 101) / 100.0f);
            juce::MidiBuffer notes = quiet ? juce::MidiBuffer() : someNotes(random);
            {
                const RenderGuard guard(RenderGuard::Locks::quick);
                whole.play(left.data(), right.data(), 512, notes);
            }
            const std::string made = RenderGuard::report();
            ASSERT_TRUE(i < 8 || made.empty()) << "block " << i << ": " << made; // lists grow once
            const unsigned locks = RenderGuard::quickLocks();
            EXPECT_TRUE(i < 392 || locks <= 5) << locks << " locks"; // the host's and the plug-in's
        }
    }
}

} // namespace
} // namespace zephyra

// What happens at once in a host: blocks beside values, states, editors and other instances.
#include "plugin/juce/zephyra_processor.h"
#include "tests/plugin/vst3/raw_component.h"
#include "tests/plugin/vst3/vst3_plugin.h"
#include "tests/support/render_guard.h"
#include "tests/support/testing.h"

#include <csignal>
#include <poll.h>
#include <sys/wait.h>

namespace zephyra {
namespace {

constexpr PluginKind kKinds[] = {PluginKind::effect, PluginKind::instrument};

vst::Event noteOn(int pitch) {
    vst::Event event{};
    event.type = vst::Event::kNoteOnEvent;
    event.noteOn.pitch = static_cast<Steinberg::int16>(pitch);
    event.noteOn.velocity = 0.7f;
    return event;
}

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

/// A display that nobody sees, of a number that is free, until it goes; empty where Xvfb cannot
/// run.
struct Display {
    Display() {
        int ends[2];
        if (::pipe(ends) != 0) return;
        server = ::fork();
        if (server == 0) {
            ::dup2(ends[1], STDOUT_FILENO);
            ::execlp("Xvfb", "Xvfb", "-displayfd", "1", "-noreset", "-nolisten", "tcp", nullptr);
            ::_exit(1);
        }
        ::close(ends[1]);
        pollfd answer{.fd = ends[0], .events = POLLIN, .revents = 0};
        for (char digit = 0;
             ::poll(&answer, 1, 20'000) == 1 && ::read(ends[0], &digit, 1) == 1 && digit != '\n';)
            name.empty() ? name = {':', digit} : name += digit;
        ::close(ends[0]);
    }
    ~Display() {
        if (server < 0) return; // kill(-1) would end everybody's
        ::kill(server, name.empty() ? SIGKILL : SIGTERM);
        ::waitpid(server, nullptr, 0);
    }
    pid_t server = -1;
    std::string name;
};

TEST(Vst3Threads, OpensAndClosesTheEditorWhilePlaying) {
    static const Display display; // outlives JUCE
    if (display.name.empty()) GTEST_SKIP() << "Xvfb does not run (xvfb): no editor was opened";
    ::setenv("DISPLAY", display.name.c_str(), 1);
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
    std::atomic<int> made = 0, sounding = 0;
    // JUCE counts its users without a lock, and takes itself down after the last one.
    const RawComponent stays[] = {RawComponent(kKinds[0]), RawComponent(kKinds[1])};
    {
        std::vector<std::thread> threads;
        for (int t = 0; t < 4; ++t)
            threads.emplace_back([&, t] {
                for (int i = 0; i < 6; ++i) {
                    RawComponent one(kKinds[(t + i) % 2]);
                    made += one.ok();
                    if (!one.ok()) continue;
                    one.notes.all = {noteOn(60)};
                    float most = 0.0f;
                    for (int block = 0; block < 300 && most < 0.001f; ++block) {
                        for (std::size_t n = 0; n < one.left.size(); ++n)
                            one.left[n] = one.right[n] = 0.3f * std::sin(static_cast<float>(n));
                        one.play(512);
                        one.notes.all.clear();
                        for (const float sample : one.left) most = std::max(most, std::abs(sample));
                        std::this_thread::sleep_for(std::chrono::milliseconds(5));
                    }
                    sounding += most > 0.001f && most < 4.0f;
                }
            });
        for (auto& thread : threads) thread.join();
    }
    EXPECT_EQ(made, 24);
    EXPECT_EQ(sounding, 24);
}

TEST(Vst3Threads, PlaysThirtyTwoInstancesTogether) {
    std::vector<std::unique_ptr<Vst3Plugin>> all;
    for (int i = 0; i < 32; ++i) {
        all.push_back(std::make_unique<Vst3Plugin>(kKinds[i % 2]));
        all.back()->start(48000, 512);
    }
    std::set<std::vector<float>> sounds;
    for (auto& plugin : all) {
        plugin->play(512, juce::MidiBuffer(juce::MidiMessage::noteOn(1, 60, 1.0f)));
        pumpMessages(1);
    }
    for (int block = 0; block < 40; ++block) {
        for (auto& plugin : all) {
            plugin->play(512);
            EXPECT_LT(plugin->peak(), 4.0f);
        }
        pumpMessages(10);
    }
    for (auto& plugin : all) {
        EXPECT_GT(plugin->peak(), 0.0f);
        sounds.insert(plugin->heard[0]);
    }
    EXPECT_EQ(sounds.size(), 32u); // each has a seed of its own
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
        // JUCE's wrapper around it locks what nobody else holds while a block is rendered.
        RawComponent whole(kind);
        ASSERT_TRUE(whole.ok());
        whole.play(512); // the wrapper's list of channels grows once
        for (int i = 0; i < 400; ++i) {
            whole.values.all.clear();
            for (vst::ParamID id = 0; id < 4; ++id) {
                OneValue value;
                value.id = static_cast<vst::ParamID>(random() % kParameterCount);
                value.value = static_cast<double>(random() % 101) / 100.0;
                whole.values.all.push_back(value);
            }
            whole.notes.all = {noteOn(static_cast<int>(random() % 128))};
            {
                const RenderGuard guard(RenderGuard::Locks::quick);
                whole.play(512);
            }
            ASSERT_EQ(RenderGuard::report(), "") << "block " << i;
        }
    }
}

} // namespace
} // namespace zephyra

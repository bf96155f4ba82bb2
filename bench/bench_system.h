// BenchSystem: an instance as a host loads it, with a shared folder of its own.
#pragma once

#include "hosting/hosted_instance.h"
#include "platform/sound/float_file_writer.h"
#include "tests/support/heard_instance.h"
#include "tests/support/test_sounds.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

namespace zephyra {

struct BenchSystem : HeardLog, HostedInstance {
    BenchSystem(FourCharCode type, const std::filesystem::path& shared)
        : HostedInstance(type, [&](Instance& fresh) {
              hear(fresh);
              fresh.folders.shared = shared;
              fresh.folders.resources = ZEPHYRA_SOURCE_DIR "/resources";
          }) {
        connect();
        unit->allocateRenderResourcesAndReturnError();
        instance.runLoop.runPosted();
    }
};

/// Writes so many seconds of noise at 44100 Hz; ends the program when it cannot.
inline std::filesystem::path benchSound(const std::filesystem::path& folder, int seconds) {
    constexpr std::uint32_t rate = 44100;
    const auto path = folder / (std::to_string(seconds) + ".wav");
    const auto second = noiseSample(rate, rate);
    FloatFileWriter writer;
    auto done = writer.open(path, rate, 1);
    const float* const channel = second->getPtr();
    for (int at = 0; done && at < seconds; ++at) done = writer.write(&channel, rate);
    if (done) done = writer.close();
    if (!done) std::exit((std::fprintf(stderr, "%s\n", done.message().c_str()), 1));
    return path;
}

} // namespace zephyra

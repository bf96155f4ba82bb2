// Reads arbitrary bytes as a sound file. Whatever comes, reading ends, within bounded memory, with
// finite samples or with one line of text.

#include "fuzz/require.h"
#include "platform/sound/sound_file.h"

#include <cmath>
#include <sys/mman.h>
#include <unistd.h>

/// Leaks that docs/library-faults.md lists.
extern "C" const char* __lsan_default_suppressions();
extern "C" const char* __lsan_default_suppressions() {
    return "leak:libvorbis.so\n";
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace zephyra;
    const int file = memfd_create("sound", MFD_CLOEXEC);
    require(file >= 0 && write(file, data, size) == static_cast<ssize_t>(size));
    const auto path = "/proc/self/fd/" + std::to_string(file);

    SoundFileOptions options;
    options.maxFrames = 1 << 20; // a few bytes can stand for hours of silence
    double lastShare = 0.0;
    options.progress = [&](double share) {
        require(share >= lastShare && share <= 1.0);
        lastShare = share;
        return true;
    };
    const auto sound = readSoundFile(path, options);
    if (sound) {
        const auto& [info, samples] = sound.value();
        require(!samples.empty() && samples.size() <= options.maxFrames);
        require(info.frames == samples.size() && lastShare == 1.0);
        for (const float sample : samples) require(std::isfinite(sample));
    } else {
        require(isOneLine(sound.message()));
    }
    close(file);
    return 0;
}

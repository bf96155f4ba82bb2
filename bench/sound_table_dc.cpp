#include "bench/sound_measures.h"
#include "bench/sound_tables.h"
#include "platform/sound/float_file_writer.h"
#include "tests/support/temporary_folder.h"

#include <cstdio>
#include <cstdlib>

namespace zephyra {

namespace {

constexpr float kOffset = -0.05f;

/// Speech with a DC of kOffset, as a file.
void writeOffset(const std::filesystem::path& path) {
    const auto sound = soundOf(SoundKind::speech);
    std::vector<float> samples(sound->getPtr(), sound->getPtr() + sound->size);
    for (float& sample : samples) sample += kOffset;
    const float* const channel = samples.data();
    FloatFileWriter writer;
    auto done = writer.open(path, double{sound->sampleRate}, 1);
    if (done) done = writer.write(&channel, static_cast<std::uint32_t>(samples.size()));
    if (done) done = writer.close();
    if (!done) std::exit((std::fprintf(stderr, "%s\n", done.message().c_str()), 1));
}

double dcOf(const SoundSetup& setup, const std::filesystem::path& file, float gain) {
    SoundPlayer player(setup, soundOf(SoundKind::speech));
    player.loadSample(file);
    for (const ControlId id : {ControlId::leftGain, ControlId::rightGain}) player.set(id, gain);
    player.set(ControlId::echoSwitch, gain > 0 ? 1.0f : 0.0f);
    player.play(40.0); // until the loudest echo has risen
    const std::size_t from = player.played();
    player.play(10.0);
    return mean(std::span(player.left).subspan(from));
}

} // namespace

void printDc(const SoundSetup& setup) {
    const TemporaryFolder folder;
    const auto file = folder / "offset.wav";
    writeOffset(file);
    std::printf("| a file with a DC of %.2f | DC |\n|---|---|\n", double{kOffset});
    std::printf("| without echo | %.3f |\n", dcOf(setup, file, 0.0f));
    for (const float gain : {0.5f, 0.9f, 0.98f})
        std::printf("| echo of %.2f | %.3f |\n", double{gain}, dcOf(setup, file, gain));
    std::printf("\n");
}

} // namespace zephyra

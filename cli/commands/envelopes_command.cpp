#include "cli/commands/commands.h"

#include "engine/envelope_menu.h"
#include "pictures/cairo/envelope_page.h"
#include "pictures/cairo/picture_file.h"
#include "pictures/envelope_curves.h"
#include "platform/random_source.h"
#include "platform/text/message_text.h"
#include "platform/text/names.h"

#include <filesystem>
#include <random>
#include <vector>

namespace zephyra {

namespace {

Result<void> savePicture(const std::filesystem::path& path) {
    PictureFile file;
    if (auto opened = file.open(path); !opened) return opened;
    RandomSource random;
    random.seed(std::mt19937::default_seed); // the picture's Random envelope is always the same one
    const Result<std::vector<EnvelopeCurve>> curves = envelopeCurves(random);
    if (!curves) return Failure{curves.message()};
    Canvas canvas(kEnvelopePageWidth, kEnvelopePageHeight);
    drawEnvelopes(canvas, curves.value());
    return file.save(canvas);
}

} // namespace

ExitCode runEnvelopes(const CommandContext&, const EnvelopesRequest& request) {
    const auto& picture = request.picture;
    if (picture) {
        const std::filesystem::path path = *picture;
        if (plainName(path.extension().string()) != "png")
            return endWith(ExitCode::wrongUsage,
                           "--picture takes a file name that ends in .png, not " +
                               inQuotes(*picture));
        if (const auto saved = savePicture(path); !saved)
            return endWith(ExitCode::failure, saved.message());
    }
    std::string menu;
    for (const char* entry : kEnvelopeMenu) menu += std::string(entry) + "\n";
    return printOut(menu);
}

} // namespace zephyra

#include "main_view/chosen_sample.h"

#include <system_error>

namespace zephyra {

void ChosenSample::LoadSampleDelegate(const std::filesystem::path& file) {
    std::error_code unreadable;
    const std::filesystem::path supplied = folders_.resources / file.filename();
    const bool falls = !folders_.resources.empty() && !std::filesystem::exists(file, unreadable) &&
                       std::filesystem::is_regular_file(supplied, unreadable);
    loader_.loadSamplePerform(falls ? supplied : file);
}

} // namespace zephyra

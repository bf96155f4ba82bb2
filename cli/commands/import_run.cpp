#include "cli/commands/import_run.h"

#include "cli/terminal/interrupt.h"
#include "cli/terminal/progress_bar.h"

#include <cstddef>

namespace zephyra {

namespace {

std::string countText(std::size_t imported, std::size_t files) {
    return std::to_string(imported) + " of " + std::to_string(files) +
           (imported == 1 ? " was imported" : " were imported");
}

} // namespace

ExitCode importAll(const std::vector<std::string>& files, const ImportOne& importOne) {
    ProgressBar bar("importing", ProgressBar::Shown::onTerminal);
    std::vector<std::string> failures;
    std::size_t imported = 0;
    const bool areSeveral = files.size() > 1;
    const auto stopped = [&](const std::string& reason) {
        bar.clear();
        return endWith(ExitCode::interrupted,
                       areSeveral ? reason + "; " + countText(imported, files.size()) : reason);
    };
    for (std::size_t n = 0; n < files.size(); ++n) {
        if (interrupted()) return stopped("interrupted; " + files[n] + " was not imported");
        const auto done = importOne(files[n], [&bar, n, count = files.size()](double share) {
            bar.update((static_cast<double>(n) + share) / static_cast<double>(count));
            return goesOn();
        });
        if (!done && interrupted()) return stopped(done.message());
        bar.clear();
        if (!done) {
            failures.push_back(done.message());
            continue;
        }
        ++imported;
        if (const ExitCode code = printOut(done.value()); code != ExitCode::success) return code;
    }
    for (const std::string& failure : failures) endWith(ExitCode::failure, failure);
    if (failures.empty()) return ExitCode::success;
    return areSeveral ? endWith(ExitCode::failure, countText(imported, files.size()))
                      : ExitCode::failure;
}

} // namespace zephyra

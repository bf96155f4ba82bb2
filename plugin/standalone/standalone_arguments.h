// StandaloneArguments: what the standalone program is started with.
#pragma once

#include <filesystem>
#include <string>
#include <variant>
#include <vector>

namespace zephyra {

/// As the file manager and the menu know the program.
inline constexpr const char* kStandaloneProgram = "zephyra-standalone";

struct StandaloneArguments {
    std::vector<std::filesystem::path> files; ///< samples and banks, opened in this order
    std::string audio;                        ///< "jack", "alsa", or empty: as remembered
    bool fresh = false;                       ///< without what was there when it ended last
    bool headless = false;                    ///< without a window
    bool plays = false;                       ///< at once
    bool check = false;                       ///< only whether display and sound are there
};

/// What is printed instead of starting.
struct StandaloneAnswer {
    std::string text; ///< with its line end
    int exitCode = 0; ///< 0: on standard output; 2, a wrong usage: on standard error
};

/// MAIN.
std::variant<StandaloneArguments, StandaloneAnswer>
parseStandaloneArguments(int count, const char* const* words);

} // namespace zephyra

// zephyra_pages KIND: prints a page about the command, see pages.h; its build's own tool.

#include "cli/pages/pages.h"
#include "cli/program_options.h"

#include <cstdio>
#include <string_view>

int main(int count, char** arguments) {
    using namespace zephyra;
    static constexpr std::pair<std::string_view, std::string (*)(const Commands&)> kPages[] = {
        {"man", manualPage},
        {"bash", bashCompletion},
        {"zsh", zshCompletion},
        {"fish", fishCompletion}};
    const ProgramOptions program;
    for (const auto& [kind, page] : kPages) {
        if (count != 2 || arguments[1] != kind) continue;
        const std::string text = page(commandFacts(program.app));
        const bool isWritten = std::fwrite(text.data(), 1, text.size(), stdout) == text.size();
        return isWritten && std::fflush(stdout) == 0 ? 0 : 1;
    }
    std::fputs("zephyra_pages takes one of man, bash, zsh and fish\n", stderr);
    return 2;
}

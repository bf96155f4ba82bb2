#include "cli/command_line.h"
#include "cli/terminal/interrupt.h"
#include "cli/terminal/standard_streams.h"

#if defined(__SANITIZE_ADDRESS__)
#define ZEPHYRA_FINDS_LEAKS
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define ZEPHYRA_FINDS_LEAKS
#endif
#endif

#ifdef ZEPHYRA_FINDS_LEAKS
/// fontconfig, below cairo's texts, keeps its fonts until the process ends.
extern "C" const char* __lsan_default_suppressions();
extern "C" const char* __lsan_default_suppressions() {
    return "leak:libfontconfig\n";
}
#endif

int main(int count, char** arguments) {
    zephyra::occupyStandardStreams();
    zephyra::watchInterrupts();
    return static_cast<int>(zephyra::runCommandLine(count, arguments));
}

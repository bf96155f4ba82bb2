#include "cli/terminal/standard_streams.h"

#include <fcntl.h>
#include <initializer_list>
#include <unistd.h>

namespace zephyra {

void occupyStandardStreams() {
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        if (::fcntl(stream, F_GETFD) < 0) // then it is the lowest that is free
            ::open("/dev/null", stream == STDIN_FILENO ? O_WRONLY : O_RDONLY);
}

} // namespace zephyra

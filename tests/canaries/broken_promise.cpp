// Calls a function that may block from one that promised not to; clang must refuse to compile it.
#include "platform/threads/realtime.h"

void waitForSomebody();

void render() ZEPHYRA_NONBLOCKING {
    waitForSomebody();
}

// Allocates where it promised not to, hidden from the compiler; the real-time sanitizer must say
// so.
#include "platform/threads/realtime.h"

#include <cstdlib>

void* volatile memory = nullptr;

void render() ZEPHYRA_NONBLOCKING {
    ZEPHYRA_TRUST_NONBLOCKING_BEGIN
    memory = std::malloc(100); // this trust is misplaced on purpose
    ZEPHYRA_TRUST_NONBLOCKING_END
}

int main() {
    render();
    std::free(memory);
    return 0;
}

// Forgets memory; the leak sanitizer must say so at the end.
#include <cstdlib>

void* volatile memory = nullptr;

int main() {
    memory = std::malloc(1000);
    memory = nullptr;
    return 0;
}

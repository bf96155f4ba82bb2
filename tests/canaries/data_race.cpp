// Two threads write one plain word; the thread sanitizer must say so.
#include <thread>

int word = 0;

int main() {
    std::thread other([] { ++word; });
    ++word;
    other.join();
    return 0;
}

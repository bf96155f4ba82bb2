// Reads one element past a heap array; the address sanitizer must say so.
#include <vector>

int main(int argc, char**) {
    const std::vector<int> numbers(static_cast<std::size_t>(argc + 9));
    return numbers.data()[argc + 9];
}

// ProcessUse: what this process holds of the system, to see whether a loop leaks.
#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <malloc.h>
#include <unistd.h>

namespace zephyra {

struct ProcessUse {
    long heap = 0;     ///< bytes that were allocated and not freed
    long resident = 0; ///< bytes in memory
    long files = 0, threads = 0;

    static ProcessUse now() {
        const auto in = [](const char* folder) {
            return static_cast<long>(
                std::distance(std::filesystem::directory_iterator(folder), {}));
        };
        const struct mallinfo2 heap = ::mallinfo2();
        long all = 0, resident = 0;
        std::ifstream("/proc/self/statm") >> all >> resident;
        return {static_cast<long>(heap.uordblks + heap.hblkhd), resident * ::sysconf(_SC_PAGESIZE),
                in("/proc/self/fd"), in("/proc/self/task")};
    }
    /// What came on top since.
    ProcessUse operator-(const ProcessUse& before) const {
        return {heap - before.heap, resident - before.resident, files - before.files,
                threads - before.threads};
    }
};

} // namespace zephyra

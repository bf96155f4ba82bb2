// The entry point of the AAC module.

#include "platform/aac_module/aac_module.h"

#include "platform/aac_module/av_handles.h"

extern "C" __attribute__((visibility("default"))) const zephyra::AacModule* zephyraAacModule() {
    using namespace zephyra;
    static const AacModule module = {kAacModuleVersion, aac::openReader, aac::read,
                                     aac::closeReader,  aac::openWriter, aac::write,
                                     aac::closeWriter};
    // Failures are reported by return value; the libraries' chatter about broken files is not.
    av_log_set_level(AV_LOG_QUIET);
    return &module;
}

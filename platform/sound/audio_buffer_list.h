// AudioBufferList: the channel buffers of one block of audio, non-interleaved by default.
#pragma once

#include "platform/sound/stream_description.h"

#include <cstdint>

namespace zephyra {

/// One buffer: a single channel, or several interleaved ones.
struct AudioBuffer {
    std::uint32_t mNumberChannels = 1;
    std::uint32_t mDataByteSize = 0; ///< bytes behind mData
    void* mData = nullptr;
};

/// A view of mNumberBuffers buffers. RENDER builds its own on the stack over memory it does not
/// own; the functions below make lists that own theirs.
struct AudioBufferList {
    std::uint32_t mNumberBuffers = 0;
    AudioBuffer* mBuffers = nullptr;

    /// The samples of buffer number index as floats. RENDER. The index must be below
    /// mNumberBuffers.
    float* floats(std::uint32_t index) const noexcept {
        return static_cast<float*>(mBuffers[index].mData);
    }
};

/// count buffers of `bytes` zeroed bytes, one channel each. Null when memory is short (nothing
/// stays allocated) . MAIN or WORKER. Free with DestroyAudioBufferList.
AudioBufferList* AllocateAudioBufferList(std::uint32_t count, std::uint32_t bytes) noexcept;

/// Frees the buffers and the list; null is fine. MAIN or WORKER.
void DestroyAudioBufferList(AudioBufferList* list) noexcept;

/// One buffer per channel for a non-interleaved format, else one interleaved buffer, each of
/// bytesPerFrame · frames zeroed bytes. Null when memory is short or the size exceeds 32 bits. MAIN
/// or WORKER. Free with AEAudioBufferListFree.
AudioBufferList* AEAudioBufferListCreate(const StreamDescription& format,
                                         std::uint32_t frames) noexcept;

/// Frees buffers and list; null is fine. MAIN or WORKER.
void AEAudioBufferListFree(AudioBufferList* list) noexcept;

} // namespace zephyra

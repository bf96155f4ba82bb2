#include "platform/sound/audio_buffer_list.h"

#include <cstdlib>
#include <limits>
#include <new>

namespace zephyra {

AudioBufferList* AllocateAudioBufferList(std::uint32_t count, std::uint32_t bytes) noexcept {
    auto* list = new (std::nothrow) AudioBufferList;
    if (!list) return nullptr;
    list->mBuffers = new (std::nothrow) AudioBuffer[count];
    if (!list->mBuffers) {
        delete list;
        return nullptr;
    }
    for (; list->mNumberBuffers < count; ++list->mNumberBuffers) {
        AudioBuffer& buffer = list->mBuffers[list->mNumberBuffers];
        buffer.mData = std::calloc(bytes ? bytes : 1, 1);
        if (!buffer.mData) {
            DestroyAudioBufferList(list);
            return nullptr;
        }
        buffer.mDataByteSize = bytes;
    }
    return list;
}

void DestroyAudioBufferList(AudioBufferList* list) noexcept {
    if (!list) return;
    for (std::uint32_t i = 0; i < list->mNumberBuffers; ++i) std::free(list->mBuffers[i].mData);
    delete[] list->mBuffers;
    delete list;
}

AudioBufferList* AEAudioBufferListCreate(const StreamDescription& format,
                                         std::uint32_t frames) noexcept {
    const bool planar = (format.formatFlags & linear_flags::isNonInterleaved) != 0;
    const std::uint64_t bytes = std::uint64_t{format.bytesPerFrame} * frames;
    if (bytes > std::numeric_limits<std::uint32_t>::max()) return nullptr;
    AudioBufferList* list = AllocateAudioBufferList(planar ? format.channelsPerFrame : 1,
                                                    static_cast<std::uint32_t>(bytes));
    if (list && !planar) list->mBuffers[0].mNumberChannels = format.channelsPerFrame;
    return list;
}

void AEAudioBufferListFree(AudioBufferList* list) noexcept {
    DestroyAudioBufferList(list);
}

} // namespace zephyra

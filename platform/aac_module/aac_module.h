// openReader to closeWriter: the functions that aac_module.cpp gathers into one AacModule.
#pragma once

#include "platform/sound/aac_codec.h"

namespace zephyra::aac {

int openReader(const char* path, AacTrack* track, void** reader, char* error,
               std::uint32_t errorSize);
int read(void* reader, float* interleaved, std::uint32_t maxFrames, std::uint32_t* frames,
         char* error, std::uint32_t errorSize);
void closeReader(void* reader);

int openWriter(const AacTarget* target, double sampleRate, std::uint32_t channels, void** writer,
               char* error, std::uint32_t errorSize);
int write(void* writer, const std::int16_t* const* channels, std::uint32_t frames, char* error,
          std::uint32_t errorSize);
int closeWriter(void* writer, char* error, std::uint32_t errorSize);

} // namespace zephyra::aac

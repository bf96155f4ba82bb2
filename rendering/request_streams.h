// takeStreams: what a render's files bring that can be read only once.
#pragma once

#include "platform/files/streamed_files.h"
#include "platform/text/result.h"
#include "rendering/render_request.h"

#include <filesystem>
#include <functional>
#include <span>

namespace zephyra {

/// Reads INPUT and every other file of the request that is standard input or a pipe, each to its
/// end, into streams; waits for who writes them, as long as goesOn answers true. Fails with one
/// line. MAIN.
Result<void> takeStreams(const RenderRequest& request, StreamedFiles& streams,
                         const std::function<bool()>& goesOn);

/// The same of one sound.
Result<void> takeSoundStream(const std::filesystem::path& name, StreamedFiles& streams,
                             const std::function<bool()>& goesOn);

/// Whether renders that each read for themselves, one after another, find all they name: what can
/// be read only once at most one of them names. A failure is a wrong usage. MAIN.
Result<void> checkSeparateStreams(std::span<const RenderRequest* const> requests);

/// Whether each of them has a stream of its own, and standard input, where it is named, is no
/// terminal, which brings no sound. inputs: those of all renders, of which request has none. A
/// failure is a wrong usage. MAIN.
Result<void> checkStreams(std::span<const std::filesystem::path> inputs,
                          const RenderRequest& request);

} // namespace zephyra

#include "rendering/request_streams.h"

#include "platform/files/small_file.h"
#include "platform/lists/property_list.h"
#include "platform/sound/sound_file.h"

#include <map>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace zephyra {

namespace fs = std::filesystem;

namespace {

/// The longest sound that is read, with eight channels of floats.
constexpr std::uint64_t kMostSoundBytes = kMaxSoundFileFrames * 8 * sizeof(float);

constexpr const char* kInput = "INPUT";

struct NamedStream {
    const char* option;
    fs::path name;
    std::uint64_t mostBytes; ///< that whoever reads it takes
};

std::vector<NamedStream> streamsOf(const RenderRequest& request) {
    const HostRequest& host = request.host;
    std::vector<NamedStream> streams;
    const auto add = [&streams](const char* option, const std::optional<fs::path>& name,
                                std::uint64_t mostBytes) {
        if (name && isStream(*name)) streams.push_back({option, *name, mostBytes});
    };
    add(kInput, request.input, kMostSoundBytes);
    add("--sample", host.sample, kMostSoundBytes);
    add("--automate", host.automation, kMostSmallFileBytes);
    add("--midi", host.midi, kMostSmallFileBytes);
    add("--scrub", request.motion.scrub, kMostSmallFileBytes);
    add("--state", host.state, PropertyListLimits{}.bytes);
    return streams;
}

Result<void> checkTerminal(const NamedStream& stream) {
    if (!isTerminal(stream.name)) return {};
    return Failure{std::string(stream.option) + " " + stream.name.string() +
                   " is standard input, and that is a terminal; send it something, as in `sox "
                   "bird.wav -t wav - | zephyra render -`"};
}

} // namespace

Result<void> takeSoundStream(const fs::path& name, StreamedFiles& streams,
                             const std::function<bool()>& goesOn) {
    if (!isStream(name)) return {};
    return streams.take(
        name, {.mostBytes = kMostSoundBytes,
               .goesOn = goesOn,
               .isWanted =
                   [&name](std::span<const std::byte> head) { return beginsLikeSound(name, head); },
               .headBytes = kSoundHeadBytes});
}

Result<void> takeStreams(const RenderRequest& request, StreamedFiles& streams,
                         const std::function<bool()>& goesOn) {
    for (const NamedStream& stream : streamsOf(request)) {
        const auto taken =
            stream.mostBytes == kMostSoundBytes
                ? takeSoundStream(stream.name, streams, goesOn)
                : streams.take(stream.name, {.mostBytes = stream.mostBytes, .goesOn = goesOn});
        if (taken) continue;
        const bool isInput = stream.option == std::string_view(kInput);
        return Failure{(isInput ? "" : std::string(stream.option) + ": ") + taken.message()};
    }
    return {};
}

Result<void> checkSeparateStreams(std::span<const RenderRequest* const> requests) {
    std::set<std::string> named;
    for (const RenderRequest* const request : requests)
        for (const NamedStream& stream : streamsOf(*request))
            if (!named.insert(streamIdentity(stream.name)).second)
                return Failure{std::string(stream.option) + " " + inputTitle(stream.name) +
                               " is read only once, but by several renders; name a file"};
    return {};
}

Result<void> checkStreams(std::span<const fs::path> inputs, const RenderRequest& request) {
    std::vector<NamedStream> streams;
    for (const fs::path& input : inputs)
        if (isStream(input)) streams.push_back({kInput, input, kMostSoundBytes});
    for (NamedStream& stream : streamsOf(request)) streams.push_back(std::move(stream));
    std::map<std::string, const NamedStream*> named;
    for (const NamedStream& stream : streams) {
        if (auto sent = checkTerminal(stream); !sent) return sent;
        const auto [first, isFirst] = named.emplace(streamIdentity(stream.name), &stream);
        if (!isFirst)
            return Failure{std::string(first->second->option) + " and " + stream.option +
                           " cannot both be " + inputTitle(stream.name) +
                           ", which is read only once; name a file for one of them"};
    }
    return {};
}

} // namespace zephyra

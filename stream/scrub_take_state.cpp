// How ScrubRecorder keeps its take in a state.

#include "stream/scrub_recorder.h"
#include "stream/stream_controller.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>
#include <string>
#include <utility>

namespace zephyra {

namespace {

static_assert(std::endian::native == std::endian::little && sizeof(float) == 4,
              "saved takes hold little endian floats of four bytes");

struct Keys {
    explicit Keys(const std::string& channel)
        : length(channel + "_SCRUB_REC_LENGTH_"), points(channel + "_SCRUB_REC_"),
          isPlaying(channel + "_SCRUB_REC_IS_PLAYING_") {}
    std::string length, points, isPlaying;
};

/// The whole floats that are there, each one that a scan can stand at.
void readPoints(const PropertyData& bytes, std::span<float> points) {
    float before = 0.0f;
    for (std::size_t i = 0; i < std::min(points.size(), bytes.size() / sizeof(float)); ++i) {
        std::memcpy(&points[i], bytes.data() + i * sizeof(float), sizeof(float));
        if (!std::isfinite(points[i])) points[i] = before;
        before = points[i] = std::clamp(points[i], 0.0f, 1.0f);
    }
}

} // namespace

void ScrubRecorder::saveDataForRecordScrub(PropertyDictionary& state) {
    keepTake(state);
    if (recLength < 1 && controls().scrubRec.tag == 1) ui_scrubRec(&controls().scrubRec);
}

void ScrubRecorder::keepTake(PropertyDictionary& state) const {
    const Keys keys(stream_.channel());
    if (recLength < 1) {
        for (const std::string& key : {keys.length, keys.points, keys.isPlaying}) state.erase(key);
        return;
    }
    const PropertyData points(std::as_bytes(take()));
    state.insert_or_assign(keys.length, std::int64_t{recLength});
    state.insert_or_assign(keys.points, points);
    state.insert_or_assign(keys.isPlaying, std::int64_t{controls().scrubPlay.tag});
}

std::array<std::string, 3> ScrubRecorder::takeKeys() const {
    const Keys keys(stream_.channel());
    return {keys.length, keys.points, keys.isPlaying};
}

bool ScrubRecorder::isIn(const PropertyReader& state) const {
    return std::ranges::any_of(takeKeys(), [&](const auto& key) { return state.has(key); });
}

void ScrubRecorder::loadStateForRecordScrub(PropertyReader& state) {
    const Keys keys(stream_.channel());
    const std::int64_t length = state.whole(keys.length).value_or(0);
    const PropertyData* const bytes = state.data(keys.points);
    const bool plays = state.whole(keys.isPlaying) == 1;
    if (length < 1) return resetScrubRecordedData();
    const auto points = static_cast<std::size_t>(std::min(length, std::int64_t{kPoints}));
    scrubBuffer.fill(0.0f);
    if (bytes) readPoints(*bytes, std::span(scrubBuffer).first(points));
    tookPlace(points);
    recalled_ = true;
    if (plays != willPlay())
        ui_scrubPlay(&controls().scrubPlay);
    else if (movesScan() && std::exchange(recalled_, false))
        placeScan();
}

} // namespace zephyra

#include "screens/model/stage/grain_cloud.h"

#include <algorithm>
#include <cmath>

namespace zephyra {

namespace {

float gainAt(std::span<const float> envelope, double through) {
    if (envelope.empty()) return 1.0f;
    const auto at = static_cast<std::size_t>(through * static_cast<double>(envelope.size()));
    return std::min(1.0f, std::abs(envelope[std::min(at, envelope.size() - 1)]));
}

} // namespace

/// The nearest to its pitch where it covers no other bar; its pitch itself where all are taken.
int GrainCloud::freeLane(const ShownGrain& grain, const BarSize& bar) const {
    const auto isFree = [&](int lane) {
        const double height = double{grain.semitones} + lane * bar.semitones;
        if (lane != 0 && std::abs(height) > bar.most) return false;
        return std::none_of(sounding_.begin(), sounding_.begin() + soundingCount_,
                            [&](const Sounding& other) {
                                const ShownGrain& it = other.grain;
                                const double its = double{it.semitones} + it.lane * bar.semitones;
                                return std::abs(its - height) < 0.95 * bar.semitones &&
                                       it.from < std::max(grain.to, grain.from + bar.source) &&
                                       grain.from < std::max(it.to, it.from + bar.source);
                            });
    };
    for (int away = 0; away <= kMostLane; ++away)
        for (const int lane : {away, -away})
            if (isFree(lane)) return lane;
    return 0;
}

void GrainCloud::add(const GrainRecord& record, const GrainSource& source, const BarSize& bar) {
    if (record.dropped) {
        ++dropped_;
        return;
    }
    if (!(record.length > 0.0f) || !(source.seconds > 0.0)) return;
    if (soundingCount_ == kMostSounding) {
        end(sounding_[0].grain);
        std::move(sounding_.begin() + 1, sounding_.end(), sounding_.begin());
        --soundingCount_;
    }
    ShownGrain grain{.id = next_++,
                     .from = double{record.position},
                     .to = double{record.position} + double{record.rate} * double{record.length},
                     .head = double{record.position},
                     .semitones = static_cast<float>(
                         12.0 * std::log2(std::max(1e-6, double{record.rate} * source.seconds))),
                     .left = std::clamp(record.gainL, 0.0f, 1.0f),
                     .right = std::clamp(record.gainR, 0.0f, 1.0f)};
    grain.lane = freeLane(grain, bar);
    sounding_[soundingCount_++] = {grain, record.frame, double{record.rate}, double{record.length}};
}

void GrainCloud::advance(double frame, double elapsed, double rate, const GrainSource& source,
                         std::span<const float> envelope, bool fades) {
    if (!fades) endedCount_ = 0;
    fade(elapsed, (frame - frame_) * source.driftPerFrame);
    frame_ = frame;
    shownCount_ = 0;
    std::size_t kept = 0;
    for (std::size_t i = 0; i < soundingCount_; ++i) {
        Sounding& it = sounding_[i];
        const double frames = frame - static_cast<double>(it.frame), age = frames / rate;
        const double shift = -frames * source.driftPerFrame;
        ShownGrain shown = it.grain;
        shown.from += shift;
        shown.to += shift;
        if (age >= it.seconds) {
            if (fades) end(shown);
            continue;
        }
        if (age >= 0.0) {
            shown.through = age / it.seconds;
            shown.head = shown.from + it.rate * age;
            shown.envelope = gainAt(envelope, shown.through);
            shown_[shownCount_++] = shown;
        }
        sounding_[kept++] = it;
    }
    soundingCount_ = kept;
}

void GrainCloud::fade(double elapsed, double drift) {
    std::size_t kept = 0;
    for (std::size_t i = 0; i < endedCount_; ++i) {
        ended_[i].endedFor += elapsed;
        for (double* const place : {&ended_[i].from, &ended_[i].to, &ended_[i].head})
            *place -= drift;
        if (ended_[i].endedFor < kFadeSeconds) ended_[kept++] = ended_[i];
    }
    endedCount_ = kept;
}

void GrainCloud::end(const ShownGrain& grain) {
    if (endedCount_ == kMostEnded) {
        std::move(ended_.begin() + 1, ended_.end(), ended_.begin());
        --endedCount_;
    }
    ended_[endedCount_++] = grain;
}

void GrainCloud::endAll() {
    for (const ShownGrain& grain : sounding()) end(grain);
    soundingCount_ = shownCount_ = 0;
}

} // namespace zephyra

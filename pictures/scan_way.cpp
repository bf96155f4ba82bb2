#include "pictures/scan_way.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace zephyra {

namespace {

constexpr double kSameTime = 1e-6; // seconds; a frame is longer
constexpr double kSame = 1e-5;     // fractions and phases, which come as 32-bit floats
constexpr double kSlowestTicks =
    0.1; // seconds from step to step of a motion: takes have 15 a second
constexpr double kLargestTick = 0.25;   // of the source: what goes faster is no motion to the eye
constexpr double kSmallestJump = 0.004; // of the source: less is not seen as one

bool isNear(double a, double b, double tolerance = kSame) {
    return std::abs(a - b) <= tolerance;
}

double partly(double phase) {
    return phase - std::floor(phase);
}

ScanPoint beginOf(const ScanRun& run) {
    return {run.seconds, run.low + run.phase * run.span};
}

/// Where it ends, before it wraps if it is about to.
ScanPoint endOf(const ScanRun& run) {
    const double phase = run.phase + run.travel;
    const double rest = phase > 1   ? phase - std::ceil(phase) + 1
                        : phase < 0 ? partly(phase)
                                    : phase;
    return {run.end(), run.low + run.drift + rest * run.span};
}

/// Whether the scan goes from a into b without a step; a wrap is none.
bool leadsInto(const ScanRun& a, const ScanRun& b) {
    double apart = std::abs(a.phase + a.travel - b.phase);
    if (a.travel != 0) apart = std::min(partly(apart), partly(-apart)); // what stands cannot wrap
    return isNear(a.low + a.drift, b.low) && isNear(a.span, b.span) && apart < kSame;
}

bool isAsFast(const ScanRun& a, const ScanRun& b) {
    return isNear(a.travel * b.length, b.travel * a.length, kSame * std::min(a.length, b.length)) &&
           isNear(a.drift * b.length, b.drift * a.length, kSame * std::min(a.length, b.length));
}

/// The run's lines, from wrap to wrap.
void addLines(std::vector<ScanLine>& lines, const ScanRun& run) {
    const double direction = run.travel < 0 ? -1 : 1;
    const double end = run.phase + run.travel;
    // The end of the part that it reaches next, in parts from the one that it began in.
    double border = run.travel < 0 ? 0 : 1;
    ScanPoint from = beginOf(run);
    for (; (end - border) * direction > 0; border += direction) {
        const double share = (border - run.phase) / run.travel;
        const double seconds = run.seconds + run.length * share, low = run.low + run.drift * share;
        const ScanPoint top = {seconds, low + run.span}, bottom = {seconds, low};
        lines.push_back({from, run.travel < 0 ? bottom : top});
        from = run.travel < 0 ? top : bottom;
    }
    lines.push_back({from, endOf(run)});
}

/// A place where the scan was put elsewhere.
struct Step {
    ScanPoint from;
    double up;             ///< how far, as a fraction of the source
    bool isMotion = false; ///< one of many
};

bool areAlike(const Step& a, const Step& b, double finest) {
    return std::abs(a.from.seconds - b.from.seconds) <= std::max(kSlowestTicks, 2 * finest) &&
           std::abs(a.up - b.up) <= std::max(std::abs(a.up), std::abs(b.up)) / 2;
}

/// At least three steps that follow each other evenly are motion, all of them.
void findMotion(std::vector<Step>& steps, double finest) {
    for (std::size_t i = 2; i < steps.size(); ++i)
        if (areAlike(steps[i - 2], steps[i - 1], finest) &&
            areAlike(steps[i - 1], steps[i], finest))
            steps[i - 2].isMotion = steps[i - 1].isMotion = steps[i].isMotion = true;
}

std::vector<Step> stepsOf(const std::vector<ScanRun>& runs) {
    std::vector<Step> steps;
    for (std::size_t i = 1; i < runs.size(); ++i) {
        const ScanRun &a = runs[i - 1], &b = runs[i];
        if (!isNear(a.end(), b.seconds, kSameTime) || leadsInto(a, b)) continue;
        const ScanPoint from = endOf(a);
        steps.push_back({from, beginOf(b).position - from.position});
    }
    return steps;
}

} // namespace

void addScanRun(std::vector<ScanRun>& runs, const ScanRun& run, double finest) {
    if (runs.empty() || !isNear(runs.back().end(), run.seconds, kSameTime)) {
        runs.push_back(run);
        return;
    }
    ScanRun& last = runs.back();
    if (leadsInto(last, run) && isAsFast(last, run)) {
        last.length += run.length;
        last.travel += run.travel;
        last.drift += run.drift;
    } else if (last.length < finest) {
        const double begin = last.seconds;
        last = run;
        last.seconds = begin;
        last.length = run.end() - begin;
    } else {
        runs.push_back(run);
    }
}

ScanWay scanWay(const std::vector<ScanRun>& runs, double finest) {
    ScanWay way;
    for (const ScanRun& run : runs) {
        if (std::abs(run.travel) > 2 && run.length / std::abs(run.travel) < finest)
            way.bands.push_back({run.seconds, run.end(), std::min(run.low, run.low + run.span),
                                 std::max(run.low, run.low + run.span)});
        else
            addLines(way.lines, run);
    }
    std::vector<Step> steps = stepsOf(runs);
    findMotion(steps, finest);
    for (const Step& step : steps) {
        const bool moves = std::abs(step.up) < kSmallestJump ||
                           (step.isMotion && std::abs(step.up) <= kLargestTick);
        (moves ? way.lines : way.jumps)
            .push_back({step.from, {step.from.seconds, step.from.position + step.up}});
    }
    return way;
}

} // namespace zephyra

#include "screens/model/stage/ruler_scale.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>

namespace zephyra {

namespace {

constexpr std::array kMinuteSteps{15.0, 30.0, 60.0, 120.0, 300.0, 600.0, 900.0, 1800.0, 3600.0};

// A round time of at least so many seconds.
double roundStep(double least) {
    const auto minutes = std::find_if(kMinuteSteps.begin(), kMinuteSteps.end(),
                                      [least](double step) { return step >= least; });
    if (least > 10.0) return minutes == kMinuteSteps.end() ? kMinuteSteps.back() : *minutes;
    const double ten = std::pow(10.0, std::floor(std::log10(least)));
    for (const double times : {1.0, 2.0, 5.0})
        if (ten * times >= least * (1.0 - 1e-9)) return ten * times;
    return ten * 10.0;
}

int decimalsFor(double step) {
    int decimals = 0;
    for (; decimals < 4 && step < 0.999; ++decimals) step *= 10.0;
    return decimals;
}

// So many digits at least; never by the locale.
void append(std::string& text, std::int64_t value, int digits) {
    const std::string plain = std::to_string(value);
    text.append(static_cast<std::size_t>(std::max(0, digits - static_cast<int>(plain.size()))),
                '0');
    text.append(plain);
}

// Rounded before it is split, so that no minute has 60 seconds.
std::string plain(double seconds, int decimals) {
    std::int64_t unit = 1;
    for (int i = 0; i < decimals; ++i) unit *= 10;
    const std::int64_t all = std::llround(std::abs(seconds) * static_cast<double>(unit));
    const std::int64_t minutes = all / (60 * unit), rest = all % (60 * unit);
    std::string text(seconds < 0.0 && all > 0 ? "\u2212" : "");
    if (minutes > 0) text.append(std::to_string(minutes)).push_back(':');
    append(text, rest / unit, minutes > 0 ? 2 : 1);
    if (decimals == 0) return text;
    text.push_back('.');
    append(text, rest % unit, decimals);
    return text;
}

} // namespace

std::vector<RulerTick> rulerTicks(double first, double last, double width, bool sparse, bool live) {
    std::vector<RulerTick> ticks;
    const double span = last - first;
    if (!(span > 0.0) || !(width > 0.0)) return ticks;
    const double step = roundStep(span * kLeastApart / width);
    const int decimals = decimalsFor(step);
    const double zero = live ? last : 0.0;
    const auto begin = static_cast<std::int64_t>(std::ceil((first - zero) / step - 1e-9));
    for (std::int64_t i = begin; zero + static_cast<double>(i) * step <= last + 1e-9 * span; ++i) {
        const double at = static_cast<double>(i) * step;
        const bool isLabelled = (!sparse || i % 2 == 0) && !(live && i == 0);
        ticks.push_back({(zero + at - first) / span, isLabelled ? plain(at, decimals) : ""});
    }
    return ticks;
}

std::string timeText(double seconds, double step) {
    const int decimals = std::clamp(decimalsFor(step), 2, 4);
    const double shownAsMinute = 60.0 - 0.5 * std::pow(10.0, -decimals);
    if (std::abs(seconds) >= shownAsMinute) return plain(seconds, std::max(1, decimals - 1));
    return plain(seconds, decimals) + " s";
}

} // namespace zephyra

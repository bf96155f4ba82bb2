// LiteralEcho and LiteralRing: both effects as one plain loop per sample, the model of their bits.
#pragma once

#include <cmath>
#include <cstdint>
#include <numbers>
#include <vector>

namespace zephyra {

/// One channel of the echo.
struct LiteralEcho {
    double time = 0, feedback = 0;
    double targetTime = 0, targetFeedback = 0;
    std::vector<double> line = std::vector<double>(262144);
    std::int64_t writeIndex = 0;
    bool fresh = true; // nothing written since the line was cleared

    float operator()(float in) {
        time += 0.00014247585682363153 * (targetTime - time);
        const double least = fresh ? 0 : 1;
        const double d = time < least ? least : time > 200000 ? 200000 : time;
        const double r = static_cast<double>(writeIndex + 262144) - d;
        const double i = std::trunc(r);
        const double f = r - i;
        const double before = line[static_cast<std::size_t>(i) % 262144];
        const double after = line[static_cast<std::size_t>(i + 1) % 262144];
        const double delayed = before + f * (after - before);
        feedback += 0.0014247580910282925 * (targetFeedback - feedback);
        const double stored = in + delayed * feedback;
        line[static_cast<std::size_t>(writeIndex)] = std::isfinite(stored) ? stored : 0.0;
        writeIndex = writeIndex + 1 == 262144 ? 0 : writeIndex + 1;
        fresh = false;
        return static_cast<float>(in + delayed);
    }
};

/// The ring modulator's oscillator and blend; one call per frame.
struct LiteralRing {
    double increment = 0, phase = 0;
    double amount = 0, targetAmount = 0;
    std::vector<double> table = makeTable();

    static std::vector<double> makeTable() {
        std::vector<double> cosine(16384);
        for (std::size_t n = 0; n < cosine.size(); ++n)
            cosine[n] = std::cos(2 * std::numbers::pi * static_cast<double>(n) / 16384);
        return cosine;
    }

    void operator()(const float* in, float* out) {
        amount += 0.0014247580910282925 * (targetAmount - amount);
        phase += increment;
        if (phase < 0 || phase > 1) phase -= std::floor(phase);
        const auto index =
            static_cast<std::uint32_t>(static_cast<std::uint64_t>(phase * 4294967296.0));
        const std::size_t i = index >> 18;
        const double f = (index & 0x3FFFF) * 3.81471181759574e-6;
        const double m = table[i] + f * (table[(i + 1) & 0x3FFF] - table[i]);
        for (int side = 0; side < 2; ++side) {
            const double dry = in[side];
            out[side] = static_cast<float>(dry + amount * (m * dry - dry));
        }
    }
};

} // namespace zephyra

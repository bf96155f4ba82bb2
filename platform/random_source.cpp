#include "platform/random_source.h"

#include <memory>
#include <random>
#include <utility>

namespace zephyra {

std::uint32_t RandomSource::next32() {
    if (!generator_)
        generator_ = [device = std::make_shared<std::random_device>()] { return (*device)(); };
    return generator_();
}

void RandomSource::seed(std::uint32_t seed) {
    generator_ = [twister = std::mt19937(seed)]() mutable {
        return static_cast<std::uint32_t>(twister());
    };
}

void RandomSource::setGenerator(Generator generator) {
    generator_ = std::move(generator);
}

} // namespace zephyra

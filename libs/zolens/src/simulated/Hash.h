#pragma once

#include <cstdint>

namespace zolens {

/// Mixes two numbers into one that looks random, the same one on every run and machine.
constexpr std::uint32_t hashOf(std::uint32_t a, std::uint32_t b)
{
    std::uint32_t h = a * 0x9e3779b1U ^ (b + 0x7f4a7c15U) * 0x85ebca77U;
    h = (h ^ (h >> 15)) * 0x2c1b3c6dU;
    h = (h ^ (h >> 12)) * 0x297a2d39U;
    return h ^ (h >> 15);
}

/// Of 0 (included) to 1 (excluded).
constexpr double unitHashOf(std::uint32_t a, std::uint32_t b)
{
    return hashOf(a, b) / 4294967296.0;
}

} // namespace zolens

#pragma once

#include <chrono>
#include <cstdint>

/// A time that stands in a picture, readable after any coding: the lower 32 bits of the monotonic
/// clock in microseconds, which processes on one machine share, as black and white squares from the
/// left of the top, the lowest bit first.
namespace clockcode {

constexpr int bits = 32;
constexpr int side = 16; ///< Of a square, in pixels.

inline uint32_t now()
{
    const auto time = std::chrono::steady_clock::now().time_since_epoch();
    return uint32_t(std::chrono::duration_cast<std::chrono::microseconds>(time).count());
}

/// `luma` is the first byte of a brightness plane of at least 512 x 16 pixels.
inline void paint(uint8_t* luma, int stride, uint32_t time)
{
    for (int y = 0; y < side; ++y) {
        for (int x = 0; x < bits * side; ++x)
            luma[y * stride + x] = (time >> (x / side)) & 1U ? 235 : 16;
    }
}

/// `bright` tells whether the pixel at x, y is.
template <typename Bright>
uint32_t read(Bright bright)
{
    uint32_t time = 0;
    for (int bit = 0; bit < bits; ++bit)
        time |= uint32_t(bright(bit * side + side / 2, side / 2) ? 1 : 0) << bit;
    return time;
}

} // namespace clockcode

#include "SampleRows.h"

#include <libyuv.h>

#include <cstring>

namespace zolens {
namespace {

using Packing = SensorFormat::Packing;

/// Groups of samples begin and end with a byte.
template <int bits>
struct Stream
{
    static constexpr std::size_t groupSamples = bits == 10 ? 4 : 2;
    static constexpr std::size_t groupBytes = groupSamples * bits / 8;

    static uchar sample(const uchar* group, std::size_t number)
    {
        const std::size_t bit = number * bits;
        const uchar* at = group + bit / 8;
        return uchar((at[0] | at[1] << 8) >> (bit % 8 + bits - 8));
    }
};

struct HighBytes
{
    static constexpr std::size_t groupSamples = 2;
    static constexpr std::size_t groupBytes = 3;

    static uchar sample(const uchar* group, std::size_t number) { return group[2 * number]; }
};

template <typename Packed>
void unpackWithin(const uchar* group, std::size_t first, std::size_t end, uchar* to)
{
    for (std::size_t i = first; i < end; ++i)
        *to++ = Packed::sample(group, i);
}

/// Rows may begin and end within a group.
template <typename Packed>
void unpack(const uchar* data, std::size_t first, std::size_t count, uchar* to)
{
    constexpr std::size_t samples = Packed::groupSamples;
    const uchar* group = data + first / samples * Packed::groupBytes;
    if (const std::size_t skipped = first % samples) {
        const std::size_t end = std::min(samples, skipped + count);
        unpackWithin<Packed>(group, skipped, end, to);
        to += end - skipped;
        count -= end - skipped;
        group += Packed::groupBytes;
    }
    for (; count >= samples; count -= samples, to += samples, group += Packed::groupBytes) {
        for (std::size_t i = 0; i < samples; ++i)
            to[i] = Packed::sample(group, i);
    }
    unpackWithin<Packed>(group, 0, count, to);
}

void unpackWords(const uchar* data, std::size_t count, int bits, uchar* to)
{
    const int length = int(count);
    libyuv::Convert16To8Plane(reinterpret_cast<const uint16_t*>(data), length, to, length,
                              1 << (24 - bits), length, 1);
}

} // namespace

void unpackSamples(const SensorFormat& format, const uchar* data, std::size_t first,
                   std::size_t count, uchar* to)
{
    switch (format.packing) {
    case Packing::Bytes:
        std::memcpy(to, data + first, count);
        break;
    case Packing::Words:
        unpackWords(data + 2 * first, count, format.bits, to);
        break;
    case Packing::Stream:
        (format.bits == 10 ? unpack<Stream<10>> : unpack<Stream<12>>)(data, first, count, to);
        break;
    case Packing::HighBytes:
        unpack<HighBytes>(data, first, count, to);
        break;
    }
}

} // namespace zolens

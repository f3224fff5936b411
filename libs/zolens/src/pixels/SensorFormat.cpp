#include "SensorFormat.h"

#include "FormatNumber.h"

#include <algorithm>
#include <iterator>

namespace zolens {
namespace {

using Layout = SensorFormat::Layout;
using Packing = SensorFormat::Packing;
using Colors = SensorFormat::Colors;

constexpr int longestSide = 1 << 20;
constexpr int byteBits = 8;

constexpr SensorFormat mono(std::uint32_t code, Packing packing, int bits)
{
    return {code, FormatNumber::planarYuv, Layout::Mono, packing, bits};
}

constexpr SensorFormat bayer(std::uint32_t code, Layout layout, Packing packing, int bits)
{
    return {code, FormatNumber::otherRgb, layout, packing, bits};
}

constexpr SensorFormat rgb(std::uint32_t code, Layout layout, Packing packing, int bits)
{
    const bool isPlain = packing == Packing::Bytes && layout <= Layout::Bgr;
    return {code, isPlain ? FormatNumber::packedRgb24 : FormatNumber::otherRgb, layout, packing,
            bits};
}

constexpr SensorFormat yuv(std::uint32_t code, Layout layout, Colors colors)
{
    return {code, FormatNumber::packedYuv, layout, Packing::Bytes, byteBits, colors};
}

constexpr SensorFormat formats[] = {
    mono(0x01080001, Packing::Bytes, 8),
    mono(0x01100003, Packing::Words, 10),
    mono(0x010c0004, Packing::HighBytes, 10),
    mono(0x01100005, Packing::Words, 12),
    mono(0x010c0006, Packing::HighBytes, 12),
    mono(0x01100007, Packing::Words, 16),
    mono(0x01100025, Packing::Words, 14),
    mono(0x010a0046, Packing::Stream, 10),
    mono(0x010c0047, Packing::Stream, 12),

    bayer(0x01080008, Layout::BayerGR, Packing::Bytes, 8),
    bayer(0x01080009, Layout::BayerRG, Packing::Bytes, 8),
    bayer(0x0108000a, Layout::BayerGB, Packing::Bytes, 8),
    bayer(0x0108000b, Layout::BayerBG, Packing::Bytes, 8),
    bayer(0x0110000c, Layout::BayerGR, Packing::Words, 10),
    bayer(0x0110000d, Layout::BayerRG, Packing::Words, 10),
    bayer(0x0110000e, Layout::BayerGB, Packing::Words, 10),
    bayer(0x0110000f, Layout::BayerBG, Packing::Words, 10),
    bayer(0x01100010, Layout::BayerGR, Packing::Words, 12),
    bayer(0x01100011, Layout::BayerRG, Packing::Words, 12),
    bayer(0x01100012, Layout::BayerGB, Packing::Words, 12),
    bayer(0x01100013, Layout::BayerBG, Packing::Words, 12),
    bayer(0x0110002e, Layout::BayerGR, Packing::Words, 16),
    bayer(0x0110002f, Layout::BayerRG, Packing::Words, 16),
    bayer(0x01100030, Layout::BayerGB, Packing::Words, 16),
    bayer(0x01100031, Layout::BayerBG, Packing::Words, 16),
    bayer(0x010c0026, Layout::BayerGR, Packing::HighBytes, 10),
    bayer(0x010c0027, Layout::BayerRG, Packing::HighBytes, 10),
    bayer(0x010c0028, Layout::BayerGB, Packing::HighBytes, 10),
    bayer(0x010c0029, Layout::BayerBG, Packing::HighBytes, 10),
    bayer(0x010c002a, Layout::BayerGR, Packing::HighBytes, 12),
    bayer(0x010c002b, Layout::BayerRG, Packing::HighBytes, 12),
    bayer(0x010c002c, Layout::BayerGB, Packing::HighBytes, 12),
    bayer(0x010c002d, Layout::BayerBG, Packing::HighBytes, 12),
    bayer(0x010a0052, Layout::BayerBG, Packing::Stream, 10),
    bayer(0x010a0054, Layout::BayerGB, Packing::Stream, 10),
    bayer(0x010a0056, Layout::BayerGR, Packing::Stream, 10),
    bayer(0x010a0058, Layout::BayerRG, Packing::Stream, 10),
    bayer(0x010c0053, Layout::BayerBG, Packing::Stream, 12),
    bayer(0x010c0055, Layout::BayerGB, Packing::Stream, 12),
    bayer(0x010c0057, Layout::BayerGR, Packing::Stream, 12),
    bayer(0x010c0059, Layout::BayerRG, Packing::Stream, 12),

    rgb(0x02180014, Layout::Rgb, Packing::Bytes, 8),
    rgb(0x02180015, Layout::Bgr, Packing::Bytes, 8),
    rgb(0x02200016, Layout::Rgba, Packing::Bytes, 8),
    rgb(0x02200017, Layout::Bgra, Packing::Bytes, 8),
    rgb(0x02300018, Layout::Rgb, Packing::Words, 10),
    rgb(0x02300019, Layout::Bgr, Packing::Words, 10),
    rgb(0x0230001a, Layout::Rgb, Packing::Words, 12),
    rgb(0x0230001b, Layout::Bgr, Packing::Words, 12),
    rgb(0x02300033, Layout::Rgb, Packing::Words, 16),
    rgb(0x0230004b, Layout::Bgr, Packing::Words, 16),
    rgb(0x021e005c, Layout::Rgb, Packing::Stream, 10),
    rgb(0x021e0048, Layout::Bgr, Packing::Stream, 10),
    rgb(0x0224005d, Layout::Rgb, Packing::Stream, 12),
    rgb(0x02240049, Layout::Bgr, Packing::Stream, 12),

    yuv(0x020c001e, Layout::Uyyvyy, Colors::Full601),
    yuv(0x0210001f, Layout::Uyvy, Colors::Full601),
    yuv(0x02180020, Layout::Uyv, Colors::Full601),
    yuv(0x02100032, Layout::Yuyv, Colors::Full601),
    yuv(0x0218003a, Layout::Uyv, Colors::Full601),
    yuv(0x0210003b, Layout::Yuyv, Colors::Full601),
    yuv(0x020c003c, Layout::Uyyvyy, Colors::Full601),
    yuv(0x0218003d, Layout::Uyv, Colors::Limited601),
    yuv(0x0210003e, Layout::Yuyv, Colors::Limited601),
    yuv(0x020c003f, Layout::Uyyvyy, Colors::Limited601),
    yuv(0x02180040, Layout::Uyv, Colors::Limited709),
    yuv(0x02100041, Layout::Yuyv, Colors::Limited709),
    yuv(0x020c0042, Layout::Uyyvyy, Colors::Limited709),
    yuv(0x02100043, Layout::Uyvy, Colors::Full601),
    yuv(0x02100044, Layout::Uyvy, Colors::Limited601),
    yuv(0x02100045, Layout::Uyvy, Colors::Limited709),
    yuv(0x0218005b, Layout::Yuv, Colors::Full601),
};

/// Pixels that share samples.
struct Group
{
    unsigned pixels;
    unsigned samples;
};

Group groupOf(Layout layout)
{
    switch (layout) {
    case Layout::Rgb:
    case Layout::Bgr:
    case Layout::Uyv:
    case Layout::Yuv:
        return {1, 3};
    case Layout::Rgba:
    case Layout::Bgra:
        return {1, 4};
    case Layout::Yuyv:
    case Layout::Uyvy:
        return {2, 4};
    case Layout::Uyyvyy:
        return {4, 6};
    default:
        return {1, 1};
    }
}

unsigned bitsInData(const SensorFormat& format)
{
    switch (format.packing) {
    case Packing::Words:
        return 16;
    case Packing::HighBytes:
        return 12;
    default:
        return unsigned(format.bits);
    }
}

} // namespace

std::size_t SensorFormat::samplesPerRow(int width) const
{
    const Group group = groupOf(layout);
    return (unsigned(width) + group.pixels - 1) / group.pixels * std::size_t{group.samples};
}

std::size_t SensorFormat::bytesOf(std::size_t samples) const
{
    return (samples * bitsInData(*this) + byteBits - 1) / byteBits;
}

const SensorFormat* findSensorFormat(std::uint32_t code)
{
    const auto* found =
        std::find_if(std::begin(formats), std::end(formats),
                     [code](const SensorFormat& format) { return format.code == code; });
    return found == std::end(formats) ? nullptr : found;
}

std::size_t bytesOfPicture(const SensorFormat& format, QSize size, std::uint32_t padding)
{
    if (size.isEmpty() || size.width() > longestSide || size.height() > longestSide)
        return 0;
    const std::size_t samples = format.samplesPerRow(size.width());
    const auto rows = std::size_t(size.height());
    if (padding == 0)
        return format.bytesOf(samples * rows);
    return format.bytesOf(samples) * rows + padding * (rows - 1);
}

} // namespace zolens

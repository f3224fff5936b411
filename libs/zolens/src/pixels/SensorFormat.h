#pragma once

#include <QSize>

#include <cstddef>
#include <cstdint>

namespace zolens {

/// How a machine vision camera delivers its pictures. Codes, layouts and packings are those of the
/// GenICam Pixel Format Naming Convention. A row that ends amid a group of pixels with one colour
/// is filled up. Rows with padding begin with a byte of their own, others follow each other at
/// once.
struct SensorFormat
{
    /// What the samples are, in their order. Bayer patterns name the first two pixels of the first
    /// row.
    enum class Layout {
        Mono,
        BayerRG,
        BayerGR,
        BayerGB,
        BayerBG,
        Rgb,
        Bgr,
        Rgba,
        Bgra,
        Yuyv,
        Uyvy,
        Uyyvyy,
        Uyv,
        Yuv,
    };
    /// How the bits of samples lie in bytes.
    enum class Packing {
        Bytes,
        Words,     ///< Little-endian, the lowest bits in use.
        Stream,    ///< Without gaps, from the lowest bit on; bytes may be shared by rows too.
        HighBytes, ///< Two samples in three bytes: the upper 8 bits of either lie outside.
    };
    enum class Colors { Full601, Limited601, Limited709 };

    std::uint32_t code;
    int number; ///< As in CWCamera::previewFormats.
    Layout layout;
    Packing packing;
    int bits; ///< Of a sample.
    Colors colors = Colors::Full601;

    bool isBayer() const { return layout >= Layout::BayerRG && layout <= Layout::BayerBG; }
    std::size_t samplesPerRow(int width) const;
    /// Of that many samples in a row, up to a whole byte.
    std::size_t bytesOf(std::size_t samples) const;
};

/// Null for formats that cannot be shown.
const SensorFormat* findSensorFormat(std::uint32_t code);

/// With `padding` bytes between two rows. 0 for sizes without pixels or beyond those of any sensor.
std::size_t bytesOfPicture(const SensorFormat& format, QSize size, std::uint32_t padding = 0);

} // namespace zolens

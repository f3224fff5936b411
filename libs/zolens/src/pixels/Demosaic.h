#pragma once

#include <QRgb>

#include <array>
#include <cstddef>
#include <vector>

namespace zolens {

/// What a row of a Bayer mosaic consists of.
struct MosaicRow
{
    bool red;         ///< Red and green, else blue and green.
    bool startsGreen; ///< Whether the first pixel is green.
};

/// Makes rows of colours from the rows of a Bayer mosaic around them. The missing colours are the
/// means of their neighbours, corrected by how the pixel's own colour bends there (after Malvar, He
/// and Cutler), which keeps edges sharp and nearly free of colour. Beyond its edges the mosaic goes
/// on as seen in a mirror.
class Demosaic final
{
public:
    /// Prepares for rows of that many pixels.
    void setWidth(int width);

    /// Where to put the samples of that row, which must be one of the last five.
    uchar* row(int y) { return slot(y) + margin; }
    /// To be called once the samples are there.
    void completeRow(int y);
    /// Rows up to two above and below, as far as there are any, are complete.
    void convertRow(int y, int height, MosaicRow kind, QRgb* to);

    /// How far above and below a row others are looked at.
    static constexpr int reach = 2;

private:
    static constexpr int rowCount = 2 * reach + 1;
    static constexpr int margin = 16;

    using Planes = std::array<std::vector<uchar>, 3>;

    uchar* slot(int y) { return samples.data() + std::size_t(y % rowCount) * stride; }

    int width = 0;
    std::size_t stride = 0;
    std::vector<uchar> samples;
    /// Of all bits where pixels are green, for rows that start with green; from the second byte on
    /// for others.
    std::vector<uchar> greens;
    Planes colors;
};

} // namespace zolens

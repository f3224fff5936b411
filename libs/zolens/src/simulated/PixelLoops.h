#pragma once

#include <QImage>

#include <array>

/// The loops over all pixels of pictures of Format_RGB32. They are built with full optimisation in
/// every configuration, so that a debug build shows live pictures too.
namespace zolens::PixelLoops {

using Table = std::array<uchar, 256>;

struct Tables
{
    Table red;
    Table green;
    Table blue;
};

/// Rows give red, green and blue, columns take them; 1024 is 1.
using Matrix = std::array<std::array<int, 3>, 3>;

void apply(const Tables& tables, QImage& image);
void apply(const Matrix& matrix, QImage& image);
/// Adds the difference to the neighbourhood, times amount / 256; a negative amount softens.
void adjustDetail(QImage& image, int amount);
void invert(QImage& image);
/// The lens and the lamp leave the corners darker.
void darkenEdges(QImage& image);
/// Weighted 0.299, 0.587, 0.114.
double meanLuminance(const QImage& image);

/// One row: `in` times scale / 256 plus the noise, held within a byte; `count` bytes.
void addNoise(const uchar* in, int scale, const qint8* noise, uchar* out, int count);
void reverse(const QRgb* in, QRgb* out, int count);

} // namespace zolens::PixelLoops

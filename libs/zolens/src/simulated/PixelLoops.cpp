#include "PixelLoops.h"

#include "Hash.h"
#include "PixelAccess.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace zolens::PixelLoops {

namespace {

constexpr int channels = 4;

/// Vertical 1-2-1 sums, with a pixel repeated at either end.
void sumColumns(const uchar* above, const uchar* middle, const uchar* below, int bytes,
                std::vector<int>& sums)
{
    int* out = sums.data() + channels;
    for (int i = 0; i < bytes; ++i)
        out[i] = above[i] + 2 * middle[i] + below[i];
    for (int c = 0; c < channels; ++c) {
        sums[c] = out[c];
        out[bytes + c] = out[bytes - channels + c];
    }
}

void adjustRow(const uchar* middle, const std::vector<int>& sums, int amount, int bytes, uchar* out)
{
    const int* sum = sums.data() + channels;
    for (int i = 0; i < bytes; ++i) {
        const int blurred = (sum[i - channels] + 2 * sum[i] + sum[i + channels] + 8) >> 4;
        out[i] = static_cast<uchar>(inByte(middle[i] + (((middle[i] - blurred) * amount) >> 8)));
    }
}

} // namespace

void apply(const Tables& tables, QImage& image)
{
    for (int y = 0; y < image.height(); ++y) {
        QRgb* pixels = row(image, y);
        for (int x = 0; x < image.width(); ++x) {
            const QRgb pixel = pixels[x];
            pixels[x] = qRgb(tables.red[qRed(pixel)], tables.green[qGreen(pixel)],
                             tables.blue[qBlue(pixel)]);
        }
    }
}

void apply(const Matrix& matrix, QImage& image)
{
    const auto channel = [](const std::array<int, 3>& weights, QRgb pixel) {
        return inByte((weights[0] * qRed(pixel) + weights[1] * qGreen(pixel) +
                       weights[2] * qBlue(pixel) + 512) >>
                      10);
    };
    for (int y = 0; y < image.height(); ++y) {
        QRgb* pixels = row(image, y);
        for (int x = 0; x < image.width(); ++x) {
            const QRgb pixel = pixels[x];
            pixels[x] = qRgb(channel(matrix[0], pixel), channel(matrix[1], pixel),
                             channel(matrix[2], pixel));
        }
    }
}

void adjustDetail(QImage& image, int amount)
{
    const QImage source = image.copy();
    const int bytes = image.width() * channels;
    std::vector<int> sums(static_cast<std::size_t>(bytes + 2 * channels));
    for (int y = 0; y < image.height(); ++y) {
        const uchar* middle = source.constScanLine(y);
        sumColumns(source.constScanLine(std::max(y - 1, 0)), middle,
                   source.constScanLine(std::min(y + 1, image.height() - 1)), bytes, sums);
        adjustRow(middle, sums, amount, bytes, image.scanLine(y));
    }
}

void invert(QImage& image)
{
    image.invertPixels(QImage::InvertRgb);
}

void darkenEdges(QImage& image)
{
    constexpr float depth = 0.17F;
    const float halfWidth = static_cast<float>(image.width()) / 2;
    const float halfHeight = static_cast<float>(image.height()) / 2;
    const float reach = 1.0F / (halfWidth * halfWidth * 1.5625F); // That of a 4:3 picture.
    for (int y = 0; y < image.height(); ++y) {
        QRgb* pixels = row(image, y);
        const float dy = static_cast<float>(y) - halfHeight;
        for (int x = 0; x < image.width(); ++x) {
            const float dx = static_cast<float>(x) - halfWidth;
            const float distance = (dx * dx + dy * dy) * reach;
            const float light = 1.0F - depth * distance * (0.4F + 0.6F * distance);
            // Rounding at random keeps the slope free of visible steps.
            const auto random =
                hashOf(static_cast<std::uint32_t>(x), static_cast<std::uint32_t>(y));
            const float round = static_cast<float>(random >> 8) / 16777216.0F;
            const auto dimmed = [light, round](int value) {
                return static_cast<int>(static_cast<float>(value) * light + round);
            };
            pixels[x] =
                qRgb(dimmed(qRed(pixels[x])), dimmed(qGreen(pixels[x])), dimmed(qBlue(pixels[x])));
        }
    }
}

double meanLuminance(const QImage& image)
{
    qint64 sum = 0;
    for (int y = 0; y < image.height(); ++y) {
        const QRgb* pixels = row(image, y);
        for (int x = 0; x < image.width(); ++x)
            sum += lightness(pixels[x]);
    }
    return static_cast<double>(sum) / (1024.0 * image.width() * image.height());
}

void addNoise(const uchar* in, int scale, const qint8* noise, uchar* out, int count)
{
    if (scale == 256) {
        for (int i = 0; i < count; ++i)
            out[i] = static_cast<uchar>(inByte(in[i] + noise[i]));
        return;
    }
    for (int i = 0; i < count; ++i)
        out[i] = static_cast<uchar>(inByte(((in[i] * scale) >> 8) + noise[i]));
}

void reverse(const QRgb* in, QRgb* out, int count)
{
    std::reverse_copy(in, in + count, out);
}

} // namespace zolens::PixelLoops

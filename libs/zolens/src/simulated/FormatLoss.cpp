#include "FormatLoss.h"

#include "PixelAccess.h"

#include <QRect>

#include <algorithm>
#include <array>
#include <functional>

namespace zolens {

namespace {

struct Mean
{
    int red = 0;
    int green = 0;
    int blue = 0;
};

Mean meanOf(const QImage& image, const QRect& group)
{
    Mean sum;
    for (int y = group.top(); y <= group.bottom(); ++y) {
        const QRgb* pixels = row(image, y);
        for (int x = group.left(); x <= group.right(); ++x) {
            sum.red += qRed(pixels[x]);
            sum.green += qGreen(pixels[x]);
            sum.blue += qBlue(pixels[x]);
        }
    }
    const int count = group.width() * group.height();
    return {sum.red / count, sum.green / count, sum.blue / count};
}

void setColor(QImage& image, const QRect& group, const Mean& mean)
{
    const int level = lightness(qRgb(mean.red, mean.green, mean.blue)) >> 10;
    for (int y = group.top(); y <= group.bottom(); ++y) {
        QRgb* pixels = row(image, y);
        for (int x = group.left(); x <= group.right(); ++x) {
            const int shift = (lightness(pixels[x]) >> 10) - level;
            pixels[x] = qRgb(inByte(mean.red + shift), inByte(mean.green + shift),
                             inByte(mean.blue + shift));
        }
    }
}

constexpr int side = 8;
constexpr std::size_t blockPixels = std::size_t{side} * side;
using Block = std::array<int, blockPixels>;

void addAndSubtract(int& a, int& b)
{
    const int sum = a + b;
    b = a - b;
    a = sum;
}

/// The Walsh-Hadamard transform in both directions; its own inverse but for the number of pixels.
void transform(Block& block)
{
    for (std::size_t half = 1; half < blockPixels; half *= 2) {
        for (std::size_t i = 0; i < blockPixels; ++i) {
            if ((i & half) == 0)
                addAndSubtract(block[i], block[i + half]);
        }
    }
}

void quantise(Block& block)
{
    constexpr int coarseness = 10 * side;
    transform(block);
    for (std::size_t i = 1; i < blockPixels; ++i)
        block[i] = (block[i] / coarseness) * coarseness;
    transform(block);
    for (int& value : block)
        value /= static_cast<int>(blockPixels);
}

/// What quantising adds to the lightness of each pixel.
Block lossOf(const QImage& image, int left, int top)
{
    Block before;
    for (int y = 0, i = 0; y < side; ++y) {
        const QRgb* pixels = row(image, top + y) + left;
        for (int x = 0; x < side; ++x, ++i)
            before[static_cast<std::size_t>(i)] = lightness(pixels[x]) >> 10;
    }
    Block loss = before;
    quantise(loss);
    std::transform(loss.begin(), loss.end(), before.begin(), loss.begin(), std::minus<>());
    return loss;
}

void quantiseBlock(QImage& image, int left, int top)
{
    const Block loss = lossOf(image, left, top);
    auto shift = loss.begin();
    for (int y = 0; y < side; ++y) {
        QRgb* pixels = row(image, top + y) + left;
        for (int x = 0; x < side; ++x, ++shift) {
            const QRgb pixel = pixels[x];
            pixels[x] = qRgb(inByte(qRed(pixel) + *shift), inByte(qGreen(pixel) + *shift),
                             inByte(qBlue(pixel) + *shift));
        }
    }
}

} // namespace

void subsampleChroma(QImage& image, int groupWidth, int groupHeight)
{
    for (int y = 0; y < image.height(); y += groupHeight) {
        for (int x = 0; x < image.width(); x += groupWidth) {
            const QRect group = QRect(x, y, groupWidth, groupHeight) & image.rect();
            setColor(image, group, meanOf(image, group));
        }
    }
}

void quantiseBlocks(QImage& image)
{
    for (int y = 0; y + side <= image.height(); y += side) {
        for (int x = 0; x + side <= image.width(); x += side)
            quantiseBlock(image, x, y);
    }
}

} // namespace zolens

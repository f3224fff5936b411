#include "FormatLoss.h"

#include "PixelAccess.h"

#include <QRect>

#include <array>
#include <utility>

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
using Block = std::array<int, side * side>;

/// The Walsh-Hadamard transform along one direction; its own inverse but for a factor of 8.
void transform(Block& block, int along, int across)
{
    for (int line = 0; line < side; ++line) {
        int* first = block.data() + line * across;
        for (int half = 1; half < side; half *= 2) {
            for (int i = 0; i < side; ++i) {
                if ((i & half) == 0) {
                    int& a = first[i * along];
                    int& b = first[(i + half) * along];
                    const int sum = a + b;
                    b = a - b;
                    a = sum;
                }
            }
        }
    }
}

void quantise(Block& block)
{
    constexpr int factor = side * side;
    constexpr int coarseness = 10 * side;
    transform(block, 1, side);
    transform(block, side, 1);
    for (std::size_t i = 1; i < block.size(); ++i) {
        block[i] = (block[i] / coarseness) * coarseness;
    }
    transform(block, 1, side);
    transform(block, side, 1);
    for (int& value : block) {
        value /= factor;
    }
}

void quantiseBlock(QImage& image, int left, int top)
{
    Block before;
    for (int i = 0; i < side * side; ++i) {
        before[i] = lightness(row(std::as_const(image), top + i / side)[left + i % side]) >> 10;
    }
    Block after = before;
    quantise(after);
    for (int i = 0; i < side * side; ++i) {
        QRgb& pixel = row(image, top + i / side)[left + i % side];
        const int shift = after[i] - before[i];
        pixel = qRgb(inByte(qRed(pixel) + shift), inByte(qGreen(pixel) + shift),
                     inByte(qBlue(pixel) + shift));
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
        for (int x = 0; x + side <= image.width(); x += side) {
            quantiseBlock(image, x, y);
        }
    }
}

} // namespace zolens

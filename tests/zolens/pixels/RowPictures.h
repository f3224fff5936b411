#pragma once

#include "GuardedBytes.h"
#include "SensorPictures.h"

#include "pixels/RowConversions.h"

#include <algorithm>
#include <memory>
#include <vector>

/// Pictures whose pixels all differ, laid out by hand, and what rows of them have to become.
namespace RowPictures {

/// One value a sample, the same in every run.
inline int sampleAt(char name, int x, int y, int bits)
{
    return SensorPictures::scattered((name * 64 + y) * 64 + x, bits);
}

/// As coded, in eight bits. Chroma is moderate, so that most colours are not cut off.
inline int codedAt(char name, int x, int y)
{
    const bool isChroma = name == 'U' || name == 'V';
    return isChroma ? 96 + sampleAt(name, x, y, 6) : sampleAt(name, x, y, 8);
}

/// How many pixels share the samples of a group, as "UYVY" is one of two pixels.
inline int groupPixels(const QByteArray& order)
{
    return qMax(1, order.count('Y'));
}

/// Rows of groups, those at the ends filled up.
inline QByteArray interleaved(const QByteArray& order, QSize size, int padding)
{
    QByteArray data;
    const int pixels = groupPixels(order);
    for (int y = 0; y < size.height(); ++y) {
        for (int group = 0; group * pixels < size.width(); ++group) {
            int x = group * pixels;
            for (const char name : order)
                data.append(char(codedAt(name, name == 'Y' ? x++ : group, y)));
        }
        data.append(GuardedBytes::blank(padding));
    }
    return data;
}

/// The colour of every pixel by the formulas; chroma counts for so many columns and rows.
struct Expected
{
    QByteArray order;
    QSize chroma = {1, 1};
    Weights weights = bt601;
    bool fullRange = false;

    bool isYuv() const { return order.contains('Y'); }

    Yuv yuv(int x, int y) const
    {
        const int column = x / chroma.width();
        const int row = y / chroma.height();
        const auto difference = [&](char name) {
            return order.contains(name) ? codedAt(name, column, row) : 128;
        };
        return {codedAt('Y', x, y), difference('U'), difference('V')};
    }

    QRgb color(int x, int y) const
    {
        return isYuv() ? expectedColor(yuv(x, y), weights, fullRange)
                       : qRgb(codedAt('R', x, y), codedAt('G', x, y), codedAt('B', x, y));
    }

    bool fits(QRgb actual, int x, int y) const
    {
        return isYuv()
                   ? isNear(actual, color(x, y), 3, blueTolerance(yuv(x, y), weights, fullRange))
                   : actual == color(x, y);
    }
};

/// The planes of a picture, each at the end of its memory.
class Source final
{
public:
    void add(const QByteArray& plane, int stride)
    {
        planes.push_back(std::make_unique<GuardedBytes>(plane));
        strides.push_back(stride);
    }

    zolens::SourceRows rows() const
    {
        zolens::SourceRows result = {};
        for (std::size_t i = 0; i < planes.size(); ++i) {
            result.plane[i] = planes[i]->data();
            result.stride[i] = strides[i];
        }
        return result;
    }

private:
    std::vector<std::unique_ptr<GuardedBytes>> planes;
    std::vector<int> strides;
};

/// Rows with that much behind each but the last one, which ends where memory ends.
inline void addPlane(Source* source, const QByteArray& paddedRows, int rows, int padding)
{
    source->add(paddedRows.left(paddedRows.size() - padding), paddedRows.size() / rows);
}

/// Where rows are converted to, with room between them that has to stay as it is.
class Target final
{
public:
    Target(QSize pictureSize, bool goesUp)
        : size(pictureSize),
          upwards(goesUp),
          stride(size.width() * 4 + gap),
          memory(GuardedBytes::blank(stride * size.height() - gap))
    {
    }

    zolens::TargetRows rows() const { return {line(0), upwards ? -stride : stride}; }

    /// What is wrong; empty when nothing.
    QString mistake(const Expected& expected) const
    {
        for (int y = 0; y < size.height(); ++y) {
            for (int x = 0; x < size.width(); ++x) {
                const QRgb actual = reinterpret_cast<const QRgb*>(line(y))[x];
                if (qAlpha(actual) != 255 || !expected.fits(actual, x, y))
                    return QStringLiteral("%1 instead of %2 at %3, %4")
                        .arg(actual, 0, 16)
                        .arg(expected.color(x, y), 0, 16)
                        .arg(x)
                        .arg(y);
            }
        }
        return isGapTouched() ? QStringLiteral("wrote between the rows") : QString();
    }

private:
    static constexpr int gap = 24;

    /// The last row in memory has no gap behind it.
    uchar* line(int y) const
    {
        return memory.data() + stride * (upwards ? size.height() - 1 - y : y);
    }

    bool isGapTouched() const
    {
        for (int i = 0; i < size.height() - 1; ++i) {
            const uchar* behind = memory.data() + stride * i + size.width() * 4;
            if (std::any_of(behind, behind + gap, [](uchar byte) { return byte != 0x5a; }))
                return true;
        }
        return false;
    }

    const QSize size;
    const bool upwards;
    const int stride;
    GuardedBytes memory;
};

constexpr QSize sizes[] = {{1, 1}, {2, 1}, {1, 2}, {3, 3}, {4, 2}, {5, 5}, {17, 4}, {35, 3}};
constexpr int paddings[] = {0, 6};

} // namespace RowPictures

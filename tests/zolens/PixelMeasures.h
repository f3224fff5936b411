#pragma once

#include <QColor>
#include <QImage>
#include <QRect>

#include <cmath>
#include <vector>

/// What tests read off pictures.
namespace measures {

struct Mean
{
    double red = 0.0;
    double green = 0.0;
    double blue = 0.0;

    double luminance() const { return 0.299 * red + 0.587 * green + 0.114 * blue; }
};

inline Mean meanOf(const QImage& image, const QRect& area)
{
    Mean mean;
    const double share = 1.0 / (double{1} * area.width() * area.height());
    for (int y = area.top(); y <= area.bottom(); ++y) {
        for (int x = area.left(); x <= area.right(); ++x) {
            const QRgb pixel = image.pixel(x, y);
            mean.red += qRed(pixel) * share;
            mean.green += qGreen(pixel) * share;
            mean.blue += qBlue(pixel) * share;
        }
    }
    return mean;
}

inline Mean meanOf(const QImage& image)
{
    return meanOf(image, image.rect());
}

/// The rectangle of micrometres from the centre in a picture that shows 1920 across.
inline QRect pixelsOf(const QImage& image, const QRectF& micrometres)
{
    const double scale = image.width() / 1920.0;
    return QRectF(image.width() / 2.0 + micrometres.x() * scale,
                  image.height() / 2.0 + micrometres.y() * scale, micrometres.width() * scale,
                  micrometres.height() * scale)
        .toRect();
}

/// Where the green of a row crosses a level, with parts of a pixel; pixel centres are at .5.
inline std::vector<double> crossings(const QImage& image, int y, int from, int to, double level)
{
    std::vector<double> places;
    for (int x = from; x < to; ++x) {
        const double here = qGreen(image.pixel(x, y)) - level;
        const double next = qGreen(image.pixel(x + 1, y)) - level;
        if ((here < 0) != (next < 0))
            places.push_back(x + 0.5 + here / (here - next));
    }
    return places;
}

/// Spread of the difference of two pictures in green, that is of their noise times root two.
inline double spreadOfDifference(const QImage& a, const QImage& b, const QRect& area)
{
    double squares = 0.0;
    for (int y = area.top(); y <= area.bottom(); ++y) {
        for (int x = area.left(); x <= area.right(); ++x) {
            const double difference = qGreen(a.pixel(x, y)) - qGreen(b.pixel(x, y));
            squares += difference * difference;
        }
    }
    return std::sqrt(squares / (double{1} * area.width() * area.height()));
}

/// Mean step from pixel to pixel along the rows: the sharper, the more.
inline double steepness(const QImage& image, const QRect& area)
{
    double sum = 0.0;
    for (int y = area.top(); y <= area.bottom(); ++y) {
        for (int x = area.left(); x < area.right(); ++x)
            sum += std::abs(qGreen(image.pixel(x + 1, y)) - qGreen(image.pixel(x, y)));
    }
    return sum / (double{1} * area.width() * area.height());
}

} // namespace measures

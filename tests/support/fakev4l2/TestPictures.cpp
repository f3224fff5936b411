#include "TestPictures.h"

#include <linux/videodev2.h>

#include <QBuffer>
#include <QMap>
#include <QMutex>
#include <QPainter>

#include <cmath>
#include <cstdlib>

namespace pictures {
namespace {

constexpr int tolerance = 12;
/// By row and column.
constexpr Qt::GlobalColor quarterColors[2][2] = {{Qt::red, Qt::green}, {Qt::blue, Qt::white}};

struct Yuv
{
    char y, u, v;
};

char byte(double value)
{
    return char(uchar(std::lround(value)));
}

/// BT.601 in limited range.
Yuv toYuv(QRgb color)
{
    const double r = qRed(color);
    const double g = qGreen(color);
    const double b = qBlue(color);
    const double luma = 0.299 * r + 0.587 * g + 0.114 * b;
    return {byte(16 + luma * 219 / 255), byte(128 + (b - luma) * 0.5 / 0.886 * 224 / 255),
            byte(128 + (r - luma) * 0.5 / 0.701 * 224 / 255)};
}

bool isNear(QRgb a, QRgb b)
{
    return std::abs(qRed(a) - qRed(b)) <= tolerance &&
           std::abs(qGreen(a) - qGreen(b)) <= tolerance &&
           std::abs(qBlue(a) - qBlue(b)) <= tolerance;
}

} // namespace

QImage quarters(const QSize& size)
{
    QImage image(size, QImage::Format_RGB32);
    QPainter painter(&image);
    const int w = size.width() / 2;
    const int h = size.height() / 2;
    painter.fillRect(0, 0, w, h, quarterColors[0][0]);
    painter.fillRect(w, 0, size.width() - w, h, quarterColors[0][1]);
    painter.fillRect(0, h, w, size.height() - h, quarterColors[1][0]);
    painter.fillRect(w, h, size.width() - w, size.height() - h, quarterColors[1][1]);
    return image;
}

int grey(int number)
{
    return number % greySteps * (256 / greySteps);
}

QByteArray jpeg(const QImage& image)
{
    constexpr int quality = 90;
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "JPG", quality);
    return buffer.data();
}

QByteArray yuyv(const QImage& image)
{
    QByteArray data;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); x += 2) {
            const Yuv left = toYuv(image.pixel(x, y));
            const Yuv right = toYuv(image.pixel(x + 1, y));
            data.append(left.y).append(left.u).append(right.y).append(left.v);
        }
    }
    return data;
}

QByteArray nv12(const QImage& image, int bytesPerLine)
{
    QByteArray data(bytesPerLine * image.height() * 3 / 2, 0);
    const int chroma = bytesPerLine * image.height();
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const Yuv color = toYuv(image.pixel(x, y));
            data[y * bytesPerLine + x] = color.y;
            data[chroma + y / 2 * bytesPerLine + x / 2 * 2] = color.u;
            data[chroma + y / 2 * bytesPerLine + x / 2 * 2 + 1] = color.v;
        }
    }
    return data;
}

QByteArray rgb24(const QImage& image)
{
    QByteArray data;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QRgb pixel = image.pixel(x, y);
            data.append(char(qRed(pixel))).append(char(qGreen(pixel))).append(char(qBlue(pixel)));
        }
    }
    return data;
}

QByteArray quartersAs(quint32 fourcc, const QSize& size)
{
    static QMutex mutex;
    static QMap<QPair<quint32, int>, QByteArray> made;
    const QMutexLocker locker(&mutex);
    QByteArray& data = made[{fourcc, size.width()}];
    if (data.isEmpty())
        data = fourcc == V4L2_PIX_FMT_MJPEG ? jpeg(quarters(size)) : yuyv(quarters(size));
    return data;
}

QByteArray greyJpeg(const QSize& size, int number)
{
    static QMutex mutex;
    static QMap<QPair<int, int>, QByteArray> made;
    const QMutexLocker locker(&mutex);
    QByteArray& data = made[{size.width(), grey(number)}];
    if (data.isEmpty()) {
        QImage image(size, QImage::Format_RGB32);
        image.fill(QColor(grey(number), grey(number), grey(number)));
        data = jpeg(image);
    }
    return data;
}

int greyNumber(const QImage& picture)
{
    constexpr int step = 256 / greySteps;
    return (qRed(picture.pixel(5, 5)) + step / 2) / step;
}

bool areQuarters(const QImage& image, bool flipped, bool mirrored)
{
    for (const int row : {0, 1}) {
        for (const int column : {0, 1}) {
            const QRgb seen = image.pixel((2 * column + 1) * image.width() / 4,
                                          (2 * row + 1) * image.height() / 4);
            const QColor wanted =
                quarterColors[flipped ? 1 - row : row][mirrored ? 1 - column : column];
            if (!isNear(seen, wanted.rgb()))
                return false;
        }
    }
    return true;
}

} // namespace pictures

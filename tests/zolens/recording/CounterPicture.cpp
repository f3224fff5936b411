#include "CounterPicture.h"

#include <QPainter>
#include <QRandomGenerator>

extern "C" {
#include <libavutil/frame.h>
}

namespace counterpicture {
namespace {

constexpr int columns = 4;
constexpr int bits = columns * columns;
constexpr int middleGrey = 128;

/// The squares fill the left half of the picture.
QRectF square(const QSizeF& size, int bit)
{
    const QSizeF one(size.width() / 2 / columns, size.height() / columns);
    return QRectF(QPointF(one.width() * (bit % columns), one.height() * (bit / columns)), one);
}

void fillWithNoise(QImage* image, int number)
{
    QRandomGenerator random(static_cast<quint32>(number));
    for (int y = 0; y < image->height(); ++y) {
        auto* line = reinterpret_cast<quint32*>(image->scanLine(y));
        random.fillRange(line, image->width());
    }
}

} // namespace

QImage draw(const QSize& size, int number, bool noisy)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(Qt::gray);
    if (noisy)
        fillWithNoise(&image, number);
    QPainter painter(&image);
    for (int bit = 0; bit < bits; ++bit)
        painter.fillRect(square(size, bit), number >> bit & 1 ? Qt::white : Qt::black);
    return image;
}

int read(const AVFrame& picture)
{
    int number = 0;
    for (int bit = 0; bit < bits; ++bit) {
        const QPoint middle = square(QSizeF(picture.width, picture.height), bit).center().toPoint();
        const int luma = picture.data[0][middle.y() * picture.linesize[0] + middle.x()];
        number |= (luma > middleGrey ? 1 : 0) << bit;
    }
    return number;
}

} // namespace counterpicture

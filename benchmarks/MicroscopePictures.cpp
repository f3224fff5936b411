#include "MicroscopePictures.h"

#include "simulated/MicroscopeImager.h"
#include "support/rtspserver/ClockCode.h"

#include <libyuv.h>

#include <QPainter>

namespace bench {
namespace {

constexpr int quality = 85;

void paintNumber(QImage* picture, int number)
{
    QPainter painter(picture);
    for (int bit = 0; bit < clockcode::bits; ++bit) {
        const QRect square(bit * clockcode::side, 0, clockcode::side, clockcode::side);
        painter.fillRect(square, (number >> bit) & 1 ? Qt::white : Qt::black);
    }
}

} // namespace

std::vector<QImage> microscopePictures(const QSize& size, int count)
{
    zolens::MicroscopeImager imager;
    zolens::SimulatedSettings settings;
    settings.size = size;
    std::vector<QImage> pictures;
    for (int number = 0; number < count; ++number) {
        QImage picture(size, QImage::Format_RGB32);
        imager.render(settings, quint64(number), picture);
        paintNumber(&picture, number);
        pictures.push_back(picture);
    }
    return pictures;
}

int numberOf(const QImage& picture)
{
    return int(
        clockcode::read([&picture](int x, int y) { return qGray(picture.pixel(x, y)) > 128; }));
}

QByteArray jpeg(const QImage& picture, TJSAMP sampling)
{
    const tjhandle handle = tjInitCompress();
    uchar* data = nullptr;
    unsigned long size = 0;
    tjCompress2(handle, picture.constBits(), picture.width(), picture.bytesPerLine(),
                picture.height(), TJPF_BGRX, &data, &size, sampling, quality, 0);
    const QByteArray result(reinterpret_cast<const char*>(data), int(size));
    tjFree(data);
    tjDestroy(handle);
    return result;
}

QByteArray yuyv(const QImage& picture)
{
    const int stride = picture.width() * 2;
    QByteArray data(stride * picture.height(), 0);
    libyuv::ARGBToYUY2(picture.constBits(), picture.bytesPerLine(),
                       reinterpret_cast<uchar*>(data.data()), stride, picture.width(),
                       picture.height());
    return data;
}

} // namespace bench

#include "ReferenceFrames.h"

namespace {

/// A minute and more.
constexpr int mostFrames = 2000;

bool isGray(QRgb pixel, int value)
{
    return qRed(pixel) == value && qGreen(pixel) == value && qBlue(pixel) == value;
}

/// Of the pattern that begins with green and red, then blue and green.
bool hasOwnColor(QRgb pixel, int value, int x, int y)
{
    if ((x + y) % 2 == 0)
        return qGreen(pixel) == value;
    return (y % 2 == 0 ? qRed(pixel) : qBlue(pixel)) == value;
}

} // namespace

ReferenceFrames::ReferenceFrames(quint32 pixelFormat, const QSize& pictureSize)
    : format(pixelFormat),
      size(pictureSize),
      camera(arv_fake_camera_new("reference"))
{
    const auto set = [this](quint32 place, int value) {
        arv_fake_camera_write_register(camera.get(), place, quint32(value));
    };
    set(ARV_FAKE_CAMERA_REGISTER_PIXEL_FORMAT, int(format));
    set(ARV_FAKE_CAMERA_REGISTER_WIDTH, size.width());
    set(ARV_FAKE_CAMERA_REGISTER_HEIGHT, size.height());
    buffer.reset(arv_buffer_new_allocate(arv_fake_camera_get_payload(camera.get())));
}

bool ReferenceFrames::contain(const QImage& picture)
{
    if (picture.size() != size)
        return false;
    for (int i = 0; i < mostFrames; ++i) {
        arv_fake_camera_fill_buffer(camera.get(), buffer.get(), nullptr);
        if (isNext(picture))
            return true;
    }
    return false;
}

bool ReferenceFrames::isNext(const QImage& picture)
{
    std::size_t length = 0;
    const auto* data = static_cast<const uchar*>(arv_buffer_get_data(buffer.get(), &length));
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x) {
            if (!fits(picture.pixel(x, y), data, x, y))
                return false;
        }
    }
    return true;
}

bool ReferenceFrames::fits(QRgb pixel, const uchar* data, int x, int y) const
{
    const std::size_t position = std::size_t(y) * std::size_t(size.width()) + std::size_t(x);
    switch (format) {
    case ARV_PIXEL_FORMAT_MONO_8:
        return isGray(pixel, data[position]);
    case ARV_PIXEL_FORMAT_MONO_16: // Little-endian: the upper byte is the second one.
        return isGray(pixel, data[2 * position + 1]);
    case ARV_PIXEL_FORMAT_BAYER_GR_8:
        return hasOwnColor(pixel, data[position], x, y);
    case ARV_PIXEL_FORMAT_RGB_8_PACKED:
        return qRed(pixel) == data[3 * position] && qGreen(pixel) == data[3 * position + 1] &&
               qBlue(pixel) == data[3 * position + 2];
    default:
        return false;
    }
}

#include "ColorChart.h"

#include <QPainter>

#include <algorithm>
#include <array>
#include <cmath>

namespace {

constexpr int columns = 6;
constexpr int rows = 4;
constexpr QRgb fields[rows * columns] = {
    0xffc0392b, 0xffd98324, 0xffe2c044, 0xff8bb03a, 0xff3f8f4f, 0xff2f8f86, //
    0xff3a7fc1, 0xff3d4fa8, 0xff6c44a0, 0xffa2408f, 0xffd0668c, 0xffe0a48c, //
    0xff7a4a32, 0xffb98a66, 0xff5a6b3a, 0xff86a8c4, 0xff2c3f66, 0xff5f2f4a, //
    0xffe8e8e8, 0xffc0c0c0, 0xff989898, 0xff707070, 0xff484848, 0xff242424,
};
constexpr QRgb paper = 0xffa8a49c;
constexpr QRgb ink = 0xff181818;
constexpr QRgb ball = 0xfff0f0f0;

constexpr int paperIndex = rows * columns;
constexpr int inkIndex = paperIndex + 1;
/// Of each colour: the noise.
constexpr int shades = 4;
constexpr double noise = 0.02;
constexpr int stripes = 240;
constexpr double displayGamma = 2.2;

using Channels = std::array<double, 3>; ///< Red, green, blue.

bool isBetweenFields(double position)
{
    constexpr double margin = 0.06;
    const double inField = position - std::floor(position);
    return inField < margin || inField > 1.0 - margin;
}

int colorAt(double across, double down)
{
    constexpr double stripedHalf = 0.12;
    if (std::abs(across - 0.5) < stripedHalf && std::abs(down - 0.5) < stripedHalf)
        return int(across * stripes) % 2 == 0 ? paperIndex : inkIndex;
    const double x = across * columns;
    const double y = down * rows;
    if (isBetweenFields(x) || isBetweenFields(y))
        return paperIndex;
    return int(y) * columns + int(x);
}

int shadeAt(int x, int y)
{
    constexpr unsigned int spread = 2654435761U; // Neighbours fall far from each other.
    return int((unsigned(x) * spread ^ unsigned(y) * spread * 31U) >> 16U) % shades;
}

QImage chart(const QSize& size)
{
    QImage image(size, QImage::Format_Indexed8);
    for (int y = 0; y < size.height(); ++y) {
        uchar* line = image.scanLine(y);
        for (int x = 0; x < size.width(); ++x) {
            const int color = colorAt((x + 0.5) / size.width(), (y + 0.5) / size.height());
            line[x] = uchar(color * shades + shadeAt(x, y));
        }
    }
    return image;
}

Channels exposed(QRgb color, const CameraLook& look)
{
    const Channels filters = {look.warmth, 1.0, 1.0 / look.warmth};
    Channels values = {qRed(color) / 255.0, qGreen(color) / 255.0, qBlue(color) / 255.0};
    for (std::size_t i = 0; i < values.size(); ++i) {
        const double light = std::pow(values[i], displayGamma) * look.light * filters[i];
        const double tone = std::pow(std::min(1.0, light), 1.0 / (displayGamma * look.gamma));
        values[i] = (tone - 0.5) * look.contrast + 0.5 + look.brightness;
    }
    return values;
}

/// Turns and stretches the colour differences.
QRgb colored(const Channels& values, double saturation, double hue)
{
    const auto [r, g, b] = values;
    const double luma = 0.299 * r + 0.587 * g + 0.114 * b;
    const double u = (b - luma) * saturation;
    const double v = (r - luma) * saturation;
    const double blue = u * std::cos(hue) - v * std::sin(hue);
    const double red = u * std::sin(hue) + v * std::cos(hue);
    const double green = -(0.299 * red + 0.114 * blue) / 0.587;
    const auto level = [luma](double difference) {
        return int(std::lround(255 * std::clamp(luma + difference, 0.0, 1.0)));
    };
    return qRgb(level(red), level(green), level(blue));
}

QRgb seen(QRgb color, const CameraLook& look, double added = 0.0)
{
    Channels values = exposed(color, look);
    std::for_each(values.begin(), values.end(), [added](double& value) { value += added; });
    return colored(values, look.saturation, look.hue);
}

QVector<QRgb> colors(const CameraLook& look)
{
    std::vector<QRgb> real(std::begin(fields), std::end(fields));
    real.insert(real.end(), {paper, ink});
    QVector<QRgb> table;
    for (const QRgb color : real) {
        for (int shade = 0; shade < shades; ++shade)
            table << seen(color, look, noise * (shade - (shades - 1) / 2.0));
    }
    return table;
}

void drawBall(QImage* picture, const CameraLook& look, int position)
{
    const int side = picture->height() / 8;
    const int way = picture->width() - side;
    QPainter painter(picture);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(seen(ball, look)));
    painter.drawEllipse(way * position / ColorChart::positions, picture->height() - side, side,
                        side);
}

void soften(QImage* picture, double amount)
{
    constexpr int coarseness = 4;
    const QImage coarse = picture->scaled(picture->size() / coarseness, Qt::IgnoreAspectRatio,
                                          Qt::SmoothTransformation);
    QPainter painter(picture);
    painter.setOpacity(amount);
    painter.drawImage(
        0, 0, coarse.scaled(picture->size(), Qt::IgnoreAspectRatio, Qt::SmoothTransformation));
}

} // namespace

QImage ColorChart::picture(const QSize& size, const CameraLook& look, int position)
{
    QImage colored = indices(size);
    colored.setColorTable(colors(look));
    QImage picture = colored.convertToFormat(QImage::Format_RGB32);
    drawBall(&picture, look, position);
    soften(&picture, 1.0 - look.sharpness);
    return picture;
}

const QImage& ColorChart::indices(const QSize& size)
{
    QImage& known = charts[{size.width(), size.height()}];
    if (known.isNull())
        known = chart(size);
    return known;
}

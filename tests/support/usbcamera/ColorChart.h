#pragma once

#include <QImage>
#include <QSize>
#include <QVector>

#include <map>

/// How a camera turns the light that reaches it into a picture.
struct CameraLook
{
    double light = 1.0;      ///< 1 shows the chart as it is.
    double warmth = 1.0;     ///< Above 1 for more red and less blue.
    double gamma = 1.0;      ///< Above 1 for brighter middle tones.
    double contrast = 1.0;   ///< Around middle grey.
    double brightness = 0.0; ///< Added; 1 is all from black to white.
    double saturation = 1.0;
    double hue = 0.0;       ///< In radians.
    double sharpness = 1.0; ///< 0 to 1.
};

/// What a camera with all the usual controls looks at: fields of many colours, a row of greys, fine
/// stripes in the middle, some noise, and a ball that rolls along the lower edge. Neither half is
/// like the other one.
class ColorChart final
{
public:
    static constexpr int positions = 16; ///< Of the ball.

    QImage picture(const QSize& size, const CameraLook& look, int position);

private:
    const QImage& indices(const QSize& size);

    std::map<std::pair<int, int>, QImage> charts; ///< By width and height, in indices of colours.
};

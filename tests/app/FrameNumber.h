#pragma once

#include <simulated/MicroscopeImager.h>

#include <QImage>

#include <algorithm>

/// Reads the number of a frame of the simulated microscope from the grain of its middle row. The
/// frame must come from exactly these settings, with a steady lamp.
class FrameNumber final
{
public:
    explicit FrameNumber(const zolens::SimulatedSettings& settings)
        : picture(settings.size, QImage::Format_RGB32)
    {
        zolens::MicroscopeImager().render(settings, 0, picture);
        noise.prepare(settings);
    }

    /// -1 for a picture that is no frame.
    int of(const QImage& frame) const
    {
        if (frame.size() != picture.size())
            return -1;
        int number = 0;
        while (number < most && !fits(frame, number))
            ++number;
        return number < most ? number : -1;
    }

private:
    /// Particles pass over some of the row, and the brightest values are cut off.
    bool fits(const QImage& frame, int number) const
    {
        const int y = frame.height() / 2;
        const uchar* first = picture.constScanLine(y);
        const uchar* row = frame.constScanLine(y);
        const qint8* firstGrain = noise.row(0, y);
        const qint8* grain = noise.row(static_cast<quint64>(number), y);
        const int count = frame.width() * 4;
        int same = 0;
        for (int i = 0; i < count; ++i)
            same += row[i] - grain[i] == first[i] - firstGrain[i] ? 1 : 0;
        return same > count * 3 / 4;
    }

    static constexpr int most = 5000;

    QImage picture; ///< Frame number 0.
    zolens::NoiseStrip noise;
};

#pragma once

#include "gige/Aravis.h"

#include <QImage>

/// The pictures that a fake box sends, one after the other, decoded by plain rules.
class ReferenceFrames final
{
public:
    ReferenceFrames(quint32 pixelFormat, const QSize& pictureSize);

    /// Whether the picture is one of the first ones, as far as the format tells: of a Bayer pattern
    /// each pixel's own colour.
    bool contain(const QImage& picture);

private:
    bool isNext(const QImage& picture);
    bool fits(QRgb pixel, const uchar* data, int x, int y) const;

    const quint32 format;
    const QSize size;
    zolens::AravisPointer<ArvFakeCamera> camera;
    zolens::AravisPointer<ArvBuffer> buffer;
};

#pragma once

#include "ffmpeg/AvPointers.h"

#include <QImage>
#include <QSize>

namespace zolens {

/// An I420 picture of even width and height in BT.601 limited range, with its time in `pts`.
using Picture = AvPointer<AVFrame>;

/// Makes pictures in buffers that go around, since fresh memory of that size is slow. Pictures may
/// outlive it. Not thread-safe, but pictures may end on any thread.
class PicturePool final
{
public:
    /// With undefined content; null when memory is short.
    Picture acquire(const QSize& size);

private:
    AvPointer<AVBufferPool> buffers;
    QSize bufferedSize;
};

/// The largest size with even sides that the picture holds; a last odd row and column are left out.
QSize evenSize(const QSize& size);
/// `target` has the even size of `image`, which is of Format_RGB32.
void convertToPicture(const QImage& image, AVFrame* target);
/// Stretches to the size of `target` and takes the time over.
void scalePicture(const AVFrame& source, AVFrame* target);

} // namespace zolens

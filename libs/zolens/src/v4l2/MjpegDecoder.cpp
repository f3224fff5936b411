#include "MjpegDecoder.h"

#include <libyuv.h>
#include <turbojpeg.h>

#include <QImage>

#include <cstring>

namespace zolens {

void MjpegDecoder::Destroy::operator()(void* handle) const
{
    tjDestroy(handle);
}

FrameDecoder::Result MjpegDecoder::decode(const DriverFrame& frame,
                                          FrameConverter::Orientation orientation, QImage* target)
{
    if (!handle)
        handle.reset(tjInitDecompress());
    if (!handle || !decompress(frame, orientation.flip, target)) {
        handle.reset();
        return Result::Damaged;
    }
    if (orientation.mirror)
        mirror(target);
    return Result::Picture;
}

bool MjpegDecoder::decompress(const DriverFrame& frame, bool flip, QImage* target)
{
    int width = 0;
    int height = 0;
    int sampling = 0;
    int colors = 0;
    if (tjDecompressHeader3(handle.get(), frame.data, frame.size, &width, &height, &sampling,
                            &colors) != 0 ||
        QSize(width, height) != size || target->size() != size)
        return false;
    return tjDecompress2(handle.get(), frame.data, frame.size, target->bits(), width,
                         target->bytesPerLine(), height, TJPF_BGRX,
                         flip ? TJFLAG_BOTTOMUP : 0) == 0;
}

/// Row by row, which stays in the processor's cache.
void MjpegDecoder::mirror(QImage* target)
{
    row.resize(std::size_t(size.width()) * sizeof(QRgb));
    for (int y = 0; y < size.height(); ++y) {
        uchar* line = target->scanLine(y);
        libyuv::ARGBMirror(line, int(row.size()), row.data(), int(row.size()), size.width(), 1);
        std::memcpy(line, row.data(), row.size());
    }
}

} // namespace zolens

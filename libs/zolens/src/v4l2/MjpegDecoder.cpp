#include "MjpegDecoder.h"

#include <libyuv.h>
#include <turbojpeg.h>

#include <QImage>

#include <algorithm>
#include <cstring>
#include <iterator>

namespace zolens {
namespace {

constexpr uchar endMarker[] = {0xff, 0xd9};
/// A picture that states more is damaged rather than worth the memory.
constexpr int mostTimesLarger = 4;

qint64 area(const QSize& size)
{
    return qint64{size.width()} * size.height();
}

/// Behind the pixels. Padding repeats one byte, which coded pixels hardly do, but may end with.
const uchar* endOfPixels(const DriverFrame& frame)
{
    const uchar* end = std::find_end(frame.data, frame.data + frame.size, std::begin(endMarker),
                                     std::end(endMarker));
    while (end - frame.data > 1 && end[-1] == end[-2])
        --end;
    return end;
}

} // namespace

void MjpegDecoder::Destroy::operator()(void* handle) const
{
    tjDestroy(handle);
}

FrameDecoder::Result MjpegDecoder::decode(const DriverFrame& frame,
                                          FrameConverter::Orientation orientation, QImage* target)
{
    Outcome outcome = decompress(frame, orientation.flip, target);
    if (outcome == Outcome::Doubtful)
        outcome = decompress(withProperEnd(frame), orientation.flip, target);
    if (outcome != Outcome::Clean)
        return Result::Damaged;
    if (orientation.mirror)
        mirror(target);
    return Result::Picture;
}

/// The library only warns of pictures that lack data and of those that merely end oddly.
MjpegDecoder::Outcome MjpegDecoder::decompress(const DriverFrame& frame, bool flip, QImage* target)
{
    if (!handle)
        handle.reset(tjInitDecompress());
    if (!handle)
        return Outcome::Unusable;
    if (read(frame, flip, target))
        return Outcome::Clean;
    const bool isWarning = tjGetErrorCode(handle.get()) == TJERR_WARNING;
    handle.reset();
    return isWarning ? Outcome::Doubtful : Outcome::Unusable;
}

bool MjpegDecoder::read(const DriverFrame& frame, bool flip, QImage* target)
{
    int width = 0;
    int height = 0;
    int sampling = 0;
    int colors = 0;
    if (tjDecompressHeader3(handle.get(), frame.data, frame.size, &width, &height, &sampling,
                            &colors) != 0 ||
        target->size() != size)
        return false;
    if (const QSize actual(width, height); actual != size)
        return readLarger(frame, actual, flip, target);
    return tjDecompress2(handle.get(), frame.data, frame.size, target->bits(), width,
                         target->bytesPerLine(), height, TJPF_BGRX,
                         flip ? TJFLAG_BOTTOMUP : 0) == 0;
}

/// Some devices send whole blocks of pixels, as 1088 rows for 1080. The library has no way to leave
/// the surplus out.
bool MjpegDecoder::readLarger(const DriverFrame& frame, const QSize& actual, bool flip,
                              QImage* target)
{
    if (actual.expandedTo(size) != actual || area(actual) > mostTimesLarger * area(size))
        return false;
    const int stride = actual.width() * int(sizeof(QRgb));
    larger.resize(std::size_t(stride) * std::size_t(actual.height()));
    if (tjDecompress2(handle.get(), frame.data, frame.size, larger.data(), actual.width(), stride,
                      actual.height(), TJPF_BGRX, 0) != 0)
        return false;
    libyuv::ARGBCopy(larger.data(), stride, target->bits(), target->bytesPerLine(), size.width(),
                     flip ? -size.height() : size.height());
    return true;
}

/// A picture that has all its pixels gives no cause for warnings then.
DriverFrame MjpegDecoder::withProperEnd(const DriverFrame& frame)
{
    mended.assign(frame.data, endOfPixels(frame));
    mended.insert(mended.end(), std::begin(endMarker), std::end(endMarker));
    DriverFrame whole = frame;
    whole.data = mended.data();
    whole.size = mended.size();
    return whole;
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

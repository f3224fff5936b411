#include "SensorConverter.h"

#include "SampleRows.h"
#include "SensorRows.h"

#include <libyuv.h>

#include <QImage>

namespace zolens {

using Layout = SensorFormat::Layout;

struct SensorConverter::Picture
{
    const SensorFormat& format;
    const SensorData& data;
    int width;
    int height;

    std::size_t samplesPerRow() const { return format.samplesPerRow(width); }
    /// Where to count the samples of the row from.
    const uchar* begin(int y) const
    {
        return data.padding ? data.bytes + distance() * std::size_t(y) : data.bytes;
    }
    std::size_t firstSample(int y) const
    {
        return data.padding ? 0 : samplesPerRow() * std::size_t(y);
    }

private:
    std::size_t distance() const { return format.bytesOf(samplesPerRow()) + data.padding; }
};

/// The rows of the target in the order of the source. A row that is mirrored is made beside.
struct SensorConverter::Rows
{
    TargetRows target;
    int width;
    QRgb* unmirrored; ///< Null when rows are not mirrored.

    QRgb* begin(int y) const { return unmirrored ? unmirrored : row(y); }
    void complete(int y) const
    {
        if (unmirrored)
            libyuv::ARGBMirror(reinterpret_cast<uint8_t*>(unmirrored), 0,
                               reinterpret_cast<uint8_t*>(row(y)), 0, width, 1);
    }

private:
    QRgb* row(int y) const
    {
        return reinterpret_cast<QRgb*>(target.pixels + qptrdiff(target.stride) * y);
    }
};

namespace {

MosaicRow mosaicRow(Layout pattern, int y)
{
    const bool redFirst = pattern == Layout::BayerRG || pattern == Layout::BayerGR;
    const bool greenFirst = pattern == Layout::BayerGR || pattern == Layout::BayerGB;
    const bool isOdd = y % 2;
    return {redFirst != isOdd, greenFirst != isOdd};
}

} // namespace

bool SensorConverter::convert(const SensorFormat& format, const SensorData& data,
                              FrameConverter::Orientation orientation, QImage* target)
{
    const std::size_t needed = bytesOfPicture(format, target->size(), data.padding);
    if (needed == 0 || data.size < needed || target->format() != QImage::Format_RGB32)
        return false;
    const Picture picture = {format, data, target->width(), target->height()};
    line.resize(orientation.mirror ? std::size_t(picture.width) : 0);
    const Rows rows = {rowsOf(target, orientation.flip), picture.width,
                       orientation.mirror ? line.data() : nullptr};
    if (format.isBayer())
        convertBayer(picture, rows);
    else
        convertPlain(picture, rows);
    return true;
}

void SensorConverter::convertPlain(const Picture& picture, const Rows& target)
{
    const RowConversion::Function convertRow = rowFunction(picture.format.layout);
    const libyuv::YuvConstants* matrix = matrixFor(picture.format.colors);
    const int stride = int(picture.samplesPerRow());
    samples.resize(picture.samplesPerRow());
    for (int y = 0; y < picture.height; ++y) {
        auto* pixels = reinterpret_cast<uint8_t*>(target.begin(y));
        convertRow({{samplesOf(picture, y)}, {stride}}, {pixels, picture.width * 4}, matrix,
                   picture.width, 1);
        target.complete(y);
    }
}

void SensorConverter::convertBayer(const Picture& picture, const Rows& target)
{
    demosaic.setWidth(picture.width);
    int complete = 0;
    for (int y = 0; y < picture.height; ++y) {
        for (; complete < picture.height && complete <= y + Demosaic::reach; ++complete) {
            unpackSamples(picture.format, picture.begin(complete), picture.firstSample(complete),
                          picture.samplesPerRow(), demosaic.row(complete));
            demosaic.completeRow(complete);
        }
        demosaic.convertRow(y, picture.height, mosaicRow(picture.format.layout, y),
                            target.begin(y));
        target.complete(y);
    }
}

/// Bytes are read where they lie.
const uchar* SensorConverter::samplesOf(const Picture& picture, int y)
{
    const std::size_t first = picture.firstSample(y);
    if (picture.format.packing == SensorFormat::Packing::Bytes)
        return picture.begin(y) + first;
    unpackSamples(picture.format, picture.begin(y), first, samples.size(), samples.data());
    return samples.data();
}

} // namespace zolens

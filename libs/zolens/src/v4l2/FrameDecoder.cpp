#include "FrameDecoder.h"

#include "MjpegDecoder.h"
#include "ffmpeg/VideoDecoder.h"
#include "pixels/SensorConverter.h"

#include <QImage>

#include <algorithm>
#include <cstring>
#include <vector>

extern "C" {
#include <libavutil/imgutils.h>
}

namespace zolens {
namespace {

using Orientation = FrameConverter::Orientation;

/// Frames of plain pixels. The colours are those of BT.601, as the USB video class has them unless
/// a device says otherwise.
class RawDecoder final : public FrameDecoder
{
public:
    explicit RawDecoder(const PictureLayout& pictureLayout) : layout(pictureLayout)
    {
        const auto format = layout.pixels->layout;
        picture.reset(av_frame_alloc());
        picture->format = format;
        picture->width = layout.size.width();
        picture->height = layout.size.height();
        picture->colorspace = AVCOL_SPC_SMPTE170M;
        picture->color_range = format == AV_PIX_FMT_GRAY8 ? AVCOL_RANGE_JPEG : AVCOL_RANGE_MPEG;
        av_image_fill_linesizes(picture->linesize, format, picture->width);
        pad();
    }

    Result decode(const DriverFrame& frame, Orientation orientation, QImage* target) override
    {
        // The pixels are only read.
        auto* data = const_cast<uint8_t*>(frame.data);
        const int needed = av_image_fill_pointers(picture->data, AVPixelFormat(picture->format),
                                                  picture->height, data, picture->linesize);
        if (needed < 0 || frame.size < std::size_t(needed))
            return Result::Damaged;
        return converter.convert(*picture, orientation, target) ? Result::Picture : Result::Damaged;
    }

private:
    /// Planes of fewer samples are padded in proportion.
    void pad()
    {
        const int tight = picture->linesize[0];
        if (layout.bytesPerLine <= tight)
            return;
        for (int i = 1; i < AV_NUM_DATA_POINTERS; ++i)
            picture->linesize[i] = int(qint64{picture->linesize[i]} * layout.bytesPerLine / tight);
        picture->linesize[0] = layout.bytesPerLine;
    }

    const PictureLayout layout;
    AvPointer<AVFrame> picture;
    FrameConverter converter;
};

/// Frames as sensors give them: deep greys, and colours behind a mosaic of filters.
class SensorDecoder final : public FrameDecoder
{
public:
    SensorDecoder(const PictureLayout& pictureLayout, const SensorFormat& sensorFormat)
        : format(sensorFormat)
    {
        const std::size_t tight = format.bytesOf(format.samplesPerRow(pictureLayout.size.width()));
        const auto stated = std::size_t(std::max(pictureLayout.bytesPerLine, 0));
        padding = std::uint32_t(stated > tight ? stated - tight : 0);
    }

    Result decode(const DriverFrame& frame, Orientation orientation, QImage* target) override
    {
        const SensorData data = {frame.data, frame.size, padding};
        return converter.convert(format, data, orientation, target) ? Result::Picture
                                                                    : Result::Damaged;
    }

private:
    const SensorFormat& format;
    std::uint32_t padding = 0; ///< In bytes, behind each row.
    SensorConverter converter;
};

std::unique_ptr<FrameDecoder> makeSensorDecoder(const PictureLayout& layout)
{
    const SensorFormat* format = findSensorFormat(layout.pixels->sensorCode);
    return format ? std::make_unique<SensorDecoder>(layout, *format) : nullptr;
}

class H264Decoder final : public FrameDecoder
{
public:
    H264Decoder() : packet(av_packet_alloc())
    {
        const AvPointer<AVCodecParameters> parameters(avcodec_parameters_alloc());
        parameters->codec_type = AVMEDIA_TYPE_VIDEO;
        parameters->codec_id = AV_CODEC_ID_H264;
        ready = decoder.open(*parameters, true);
    }

    bool isReady() const { return ready; }
    bool needsEveryFrame() const override { return true; }

    Result decode(const DriverFrame& frame, Orientation orientation, QImage* target) override
    {
        // The decoder reads a little beyond the end.
        data.assign(frame.size + AV_INPUT_BUFFER_PADDING_SIZE, 0);
        std::memcpy(data.data(), frame.data, frame.size);
        packet->data = data.data();
        packet->size = int(frame.size);
        const quint64 damagedBefore = decoder.damagedFrames();
        Result result = Result::Nothing;
        decoder.decode(*packet, [&](const AVFrame& picture) {
            if (target)
                result = converter.convert(picture, orientation, target) ? Result::Picture
                                                                         : Result::Damaged;
        });
        return decoder.damagedFrames() > damagedBefore ? Result::Damaged : result;
    }

private:
    AvPointer<AVPacket> packet;
    VideoDecoder decoder;
    FrameConverter converter;
    std::vector<uint8_t> data;
    bool ready = false;
};

} // namespace

FrameDecoder::~FrameDecoder() = default;

std::unique_ptr<FrameDecoder> makeDecoder(const PictureLayout& layout)
{
    switch (layout.pixels->coding) {
    case PixelFormat::Coding::Raw:
        return std::make_unique<RawDecoder>(layout);
    case PixelFormat::Coding::Sensor:
        return makeSensorDecoder(layout);
    case PixelFormat::Coding::Jpeg:
        return std::make_unique<MjpegDecoder>(layout.size);
    case PixelFormat::Coding::H264:
        break;
    }
    auto decoder = std::make_unique<H264Decoder>();
    return decoder->isReady() ? std::move(decoder) : nullptr;
}

} // namespace zolens

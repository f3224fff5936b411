#include "H264Encoder.h"

#include "ffmpeg/AvOptions.h"
#include "ffmpeg/FfmpegLog.h"

#include <algorithm>
#include <thread>

namespace zolens {
namespace {

constexpr auto encoderName = "libx264";
constexpr auto constantQuality = "20";
/// Whatever the processor, what comes in is at once in the file: the threads share each picture.
/// Those that encode one each would hold theirs back, of a slow camera more than a second. Nor does
/// a picture's quality depend on how long it shows, which is known only when the next one comes.
constexpr auto noPictureHeldBack = "zerolatency";
/// More than half of the processor would be of no use.
constexpr unsigned leastThreads = 2;
constexpr unsigned mostThreads = 4;
/// Up to here encoding leaves at least half of the processor to the camera and the live view, at 30
/// noisy pictures a second. Beyond, the fastest preset does.
constexpr int64_t mostPixelsPerCore = 640 * 1024;
constexpr int64_t keyFrameInterval = H264Encoder::timeBase.den;
/// Key frames come by time; pictures count only for cameras that are faster than any.
constexpr int mostPicturesPerKeyFrame = 1000;
constexpr AVRational usualRate{30, 1};

unsigned cores()
{
    return std::max(std::thread::hardware_concurrency(), 1U);
}

void describePictures(AVCodecContext* codec, const QSize& size)
{
    codec->width = size.width();
    codec->height = size.height();
    codec->pix_fmt = AV_PIX_FMT_YUV420P;
    codec->colorspace = AVCOL_SPC_SMPTE170M;
    codec->color_range = AVCOL_RANGE_MPEG;
    codec->time_base = H264Encoder::timeBase;
    codec->framerate = usualRate;
}

void tune(AVCodecContext* codec)
{
    codec->gop_size = mostPicturesPerKeyFrame;
    codec->thread_count = static_cast<int>(std::clamp(cores() / 2, leastThreads, mostThreads));
    codec->flags |= AV_CODEC_FLAG_GLOBAL_HEADER;
}

void setOptions(AvOptions* options, const QSize& size)
{
    const int64_t pixels = int64_t{size.width()} * size.height();
    options->set("preset", pixels <= mostPixelsPerCore * cores() ? "superfast" : "ultrafast");
    options->set("tune", noPictureHeldBack);
    options->set("crf", constantQuality);
    options->set("sc_threshold", "0");
}

} // namespace

bool H264Encoder::isAvailable()
{
    return avcodec_find_encoder_by_name(encoderName);
}

bool H264Encoder::open(const QSize& size)
{
    silenceFfmpeg();
    const AVCodec* encoder = avcodec_find_encoder_by_name(encoderName);
    codec.reset(encoder ? avcodec_alloc_context3(encoder) : nullptr);
    packet.reset(av_packet_alloc());
    if (!codec || !packet)
        return false;
    describePictures(codec.get(), size);
    tune(codec.get());
    AvOptions options;
    setOptions(&options, size);
    if (avcodec_open2(codec.get(), encoder, options.get()) < 0)
        codec.reset();
    return codec != nullptr;
}

bool H264Encoder::isOpen() const
{
    return codec != nullptr;
}

QSize H264Encoder::size() const
{
    return QSize(codec->width, codec->height);
}

AvPointer<AVCodecParameters> H264Encoder::parameters() const
{
    AvPointer<AVCodecParameters> parameters(avcodec_parameters_alloc());
    if (parameters && avcodec_parameters_from_context(parameters.get(), codec.get()) < 0)
        parameters.reset();
    return parameters;
}

bool H264Encoder::encode(AVFrame* picture, const PacketHandler& handler)
{
    const bool key = picture->pts >= nextKeyFrame;
    picture->pict_type = key ? AV_PICTURE_TYPE_I : AV_PICTURE_TYPE_NONE;
    if (key)
        nextKeyFrame = picture->pts + keyFrameInterval;
    return avcodec_send_frame(codec.get(), picture) >= 0 && receive(handler);
}

bool H264Encoder::finish(const PacketHandler& handler)
{
    return avcodec_send_frame(codec.get(), nullptr) >= 0 && receive(handler);
}

bool H264Encoder::receive(const PacketHandler& handler)
{
    int result = 0;
    while ((result = avcodec_receive_packet(codec.get(), packet.get())) >= 0) {
        handler(packet.get());
        av_packet_unref(packet.get());
    }
    return result == AVERROR(EAGAIN) || result == AVERROR_EOF;
}

} // namespace zolens

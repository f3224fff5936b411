#include "TestVideo.h"

#include "ffmpeg/AvPointers.h"

#include <QFile>

#include <cstring>

extern "C" {
#include <libavutil/opt.h>
}

namespace {

using zolens::AvPointer;

/// Unlike contexts of input, those of output have their file closed apart.
struct CloseOutput
{
    void operator()(AVFormatContext* context) const
    {
        avio_closep(&context->pb);
        avformat_free_context(context);
    }
};
using Output = std::unique_ptr<AVFormatContext, CloseOutput>;

Output openOutput(const QByteArray& path)
{
    AVFormatContext* context = nullptr;
    if (avformat_alloc_output_context2(&context, nullptr, nullptr, path.constData()) < 0)
        return nullptr;
    Output output(context);
    return avio_open(&context->pb, path.constData(), AVIO_FLAG_WRITE) < 0 ? nullptr
                                                                          : std::move(output);
}

AvPointer<AVCodecContext> openEncoder(const TestVideo& video, bool globalHeader)
{
    const AVCodec* codec = avcodec_find_encoder_by_name(video.encoder.constData());
    AvPointer<AVCodecContext> encoder(codec ? avcodec_alloc_context3(codec) : nullptr);
    if (!encoder)
        return nullptr;
    encoder->width = video.size.width();
    encoder->height = video.size.height();
    encoder->pix_fmt = video.encoder == "mjpeg" ? AV_PIX_FMT_YUVJ420P : AV_PIX_FMT_YUV420P;
    encoder->time_base = {1, video.framesPerSecond};
    encoder->framerate = {video.framesPerSecond, 1};
    encoder->gop_size = video.keyFrameDistance;
    encoder->thread_count = 1;
    // Key frames at their distance only.
    av_opt_set_int(encoder->priv_data, "sc_threshold", 0, 0);
    if (globalHeader)
        encoder->flags |= AV_CODEC_FLAG_GLOBAL_HEADER;
    return avcodec_open2(encoder.get(), codec, nullptr) < 0 ? nullptr : std::move(encoder);
}

AvPointer<AVFrame> makePicture(const AVCodecContext& encoder)
{
    AvPointer<AVFrame> picture(av_frame_alloc());
    picture->format = encoder.pix_fmt;
    picture->width = encoder.width;
    picture->height = encoder.height;
    return av_frame_get_buffer(picture.get(), 0) < 0 ? nullptr : std::move(picture);
}

void draw(AVFrame* picture, int number)
{
    constexpr int barWidth = 16;
    const int left = number * barWidth % (picture->width - barWidth);
    for (int y = 0; y < picture->height; ++y) {
        uint8_t* line = picture->data[0] + y * picture->linesize[0];
        std::memset(line, 128, size_t(picture->width));
        std::memset(line + left, 235, barWidth);
    }
    for (int plane = 1; plane < 3; ++plane)
        std::memset(picture->data[plane], 128,
                    size_t(picture->linesize[plane]) * ((picture->height + 1) / 2));
}

bool writePackets(AVFormatContext* output, AVCodecContext* encoder)
{
    const AvPointer<AVPacket> packet(av_packet_alloc());
    while (avcodec_receive_packet(encoder, packet.get()) >= 0) {
        packet->duration = 1;
        av_packet_rescale_ts(packet.get(), encoder->time_base, output->streams[0]->time_base);
        if (av_write_frame(output, packet.get()) < 0)
            return false;
        av_packet_unref(packet.get());
    }
    return true;
}

} // namespace

bool TestVideo::write(const QString& path) const
{
    av_log_set_level(AV_LOG_QUIET);
    const Output output = openOutput(QFile::encodeName(path));
    if (!output)
        return false;
    const AvPointer<AVCodecContext> codec =
        openEncoder(*this, output->oformat->flags & AVFMT_GLOBALHEADER);
    AVStream* stream = codec ? avformat_new_stream(output.get(), nullptr) : nullptr;
    if (!stream || avcodec_parameters_from_context(stream->codecpar, codec.get()) < 0)
        return false;
    stream->time_base = codec->time_base;
    stream->avg_frame_rate = codec->framerate;
    if (avformat_write_header(output.get(), nullptr) < 0)
        return false;
    const AvPointer<AVFrame> picture = makePicture(*codec);
    for (int i = 0; i < frames; ++i) {
        if (!picture || av_frame_make_writable(picture.get()) < 0)
            return false;
        draw(picture.get(), i);
        picture->pts = i < frames / 2 ? i : i + pauseSeconds * framesPerSecond;
        if (avcodec_send_frame(codec.get(), picture.get()) < 0 ||
            !writePackets(output.get(), codec.get()))
            return false;
    }
    avcodec_send_frame(codec.get(), nullptr);
    return writePackets(output.get(), codec.get()) && av_write_trailer(output.get()) >= 0;
}

int TestVideo::barPosition(const QImage& picture)
{
    for (int x = 0; x < picture.width(); ++x) {
        if (qGray(picture.pixel(x, picture.height() / 2)) > 200)
            return x;
    }
    return -1;
}

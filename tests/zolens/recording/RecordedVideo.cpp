#include "RecordedVideo.h"

#include "CounterPicture.h"
#include "ffmpeg/AvPointers.h"

#include <QFile>
#include <QtEndian>

namespace {

using zolens::AvPointer;

AvPointer<AVFormatContext> openFile(const QString& path)
{
    av_log_set_level(AV_LOG_QUIET);
    AVFormatContext* context = nullptr;
    if (avformat_open_input(&context, QFile::encodeName(path).constData(), nullptr, nullptr) < 0)
        return nullptr;
    AvPointer<AVFormatContext> input(context);
    const bool usable = avformat_find_stream_info(context, nullptr) >= 0 && input->nb_streams == 1;
    return usable ? std::move(input) : nullptr;
}

AvPointer<AVCodecContext> openDecoder(const AVCodecParameters& parameters)
{
    const AVCodec* decoder = avcodec_find_decoder(parameters.codec_id);
    AvPointer<AVCodecContext> codec(decoder ? avcodec_alloc_context3(decoder) : nullptr);
    const bool opened = codec && avcodec_parameters_to_context(codec.get(), &parameters) >= 0 &&
                        avcodec_open2(codec.get(), decoder, nullptr) >= 0;
    return opened ? std::move(codec) : nullptr;
}

std::array<int, 3> cornerOf(const AVFrame& picture)
{
    constexpr int inset = 4;
    const int x = picture.width - inset;
    const int y = picture.height - inset;
    return {picture.data[0][y * picture.linesize[0] + x],
            picture.data[1][y / 2 * picture.linesize[1] + x / 2],
            picture.data[2][y / 2 * picture.linesize[2] + x / 2]};
}

RecordedVideo::Frame describe(const AVFrame& picture, double secondsPerTick)
{
    RecordedVideo::Frame frame;
    frame.number = counterpicture::read(picture);
    frame.seconds = static_cast<double>(picture.pts) * secondsPerTick;
    frame.duration = static_cast<double>(picture.pkt_duration) * secondsPerTick;
    frame.key = picture.key_frame != 0;
    frame.size = QSize(picture.width, picture.height);
    frame.corner = cornerOf(picture);
    return frame;
}

bool decode(AVCodecContext* codec, const AVPacket* packet, double secondsPerTick,
            RecordedVideo* video)
{
    if (avcodec_send_packet(codec, packet) < 0)
        return false;
    const AvPointer<AVFrame> picture(av_frame_alloc());
    int result = 0;
    while ((result = avcodec_receive_frame(codec, picture.get())) >= 0) {
        video->frames.push_back(describe(*picture, secondsPerTick));
        video->colorSpace = picture->colorspace;
        video->colorRange = picture->color_range;
    }
    return result == AVERROR(EAGAIN) || result == AVERROR_EOF;
}

} // namespace

RecordedVideo RecordedVideo::read(const QString& path)
{
    RecordedVideo video;
    const AvPointer<AVFormatContext> input = openFile(path);
    if (!input)
        return video;
    const AVStream& stream = *input->streams[0];
    const AvPointer<AVCodecContext> codec = openDecoder(*stream.codecpar);
    if (!codec)
        return video;
    video.codec = avcodec_get_name(stream.codecpar->codec_id);
    video.seconds = static_cast<double>(input->duration) / AV_TIME_BASE;
    video.readable = true;
    const double tick = av_q2d(stream.time_base);
    const AvPointer<AVPacket> packet(av_packet_alloc());
    while (av_read_frame(input.get(), packet.get()) >= 0) {
        video.readable = decode(codec.get(), packet.get(), tick, &video) && video.readable;
        av_packet_unref(packet.get());
    }
    video.readable = decode(codec.get(), nullptr, tick, &video) && video.readable;
    return video;
}

QByteArrayList RecordedVideo::boxes(const QString& path)
{
    constexpr int headBytes = 8;
    QByteArrayList names;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return names;
    for (QByteArray head = file.read(headBytes); head.size() == headBytes;
         head = file.read(headBytes)) {
        names.append(head.mid(4));
        const qint64 size = qFromBigEndian<quint32>(head.constData());
        if (size < headBytes || !file.seek(file.pos() + size - headBytes))
            break;
    }
    return names;
}

std::vector<int> RecordedVideo::numbers() const
{
    std::vector<int> numbers;
    for (const Frame& frame : frames)
        numbers.push_back(frame.number);
    numbers.erase(std::unique(numbers.begin(), numbers.end()), numbers.end());
    return numbers;
}

#include "StreamDemuxer.h"

#include "StreamInterrupt.h"
#include "StreamLog.h"
#include "StreamUrl.h"
#include "ffmpeg/AvOptions.h"
#include "ffmpeg/FfmpegLog.h"

#include <QByteArray>

namespace zolens {
namespace {

using std::chrono::milliseconds;

/// Time for the last word to the server, which lets it forget the session at once.
constexpr milliseconds farewell(150);
/// A source may give this many unreadable pieces in a row before it counts as failed.
constexpr int toleratedBadReads = 100;

/// The description of an RTSP session tells the codecs, so nothing has to be read ahead; frames
/// are handed out as they come.
void setRtspOptions(AvOptions* options, StreamUrl::Transport transport)
{
    options->set("fflags", "nobuffer");
    options->set("analyzeduration", "0");
    options->set("probesize", "32");
    options->set("fpsprobesize", "0");
    options->set("allowed_media_types", "video");
    options->set("buffer_size", "4194304");
    if (transport == StreamUrl::Transport::Udp) {
        options->set("rtsp_transport", "udp");
        options->set("max_delay", "20000");
        options->set("reorder_queue_size", "16");
        return;
    }
    options->set("max_delay", "0");
    options->set("reorder_queue_size", "0");
    options->set("rtsp_transport", transport == StreamUrl::Transport::Tcp ? "tcp" : "tcp+udp");
    options->set("rtsp_flags", "prefer_tcp");
}

/// Other sources name their codecs in the data, of which a little has to be read ahead.
void setProbingOptions(AvOptions* options, StreamUrl::Kind kind)
{
    const bool local = kind == StreamUrl::Kind::File;
    options->set("analyzeduration", local ? "2000000" : "500000");
    options->set("probesize", local ? "5000000" : "500000");
    if (kind == StreamUrl::Kind::Transport)
        options->set("fflags", "nobuffer");
}

int interruptCallback(void* opaque)
{
    return static_cast<StreamInterrupt*>(opaque)->isDue() ? 1 : 0;
}

} // namespace

StreamDemuxer::StreamDemuxer(StreamInterrupt& streamInterrupt)
    : interrupt(streamInterrupt),
      packet(av_packet_alloc())
{
    silenceFfmpeg();
}

StreamDemuxer::~StreamDemuxer()
{
    interrupt.beginClosing(farewell);
}

bool StreamDemuxer::open(const StreamUrl& url)
{
    if (!packet || !connectTo(url))
        return false;
    const QByteArray container(format->iformat->name);
    paced = url.kind() == StreamUrl::Kind::File ||
            (url.kind() == StreamUrl::Kind::Http && !container.contains("jpeg"));
    return findVideo();
}

bool StreamDemuxer::connectTo(const StreamUrl& url)
{
    AvOptions options;
    options.set("protocol_whitelist", url.protocols().constData());
    options.set("format_whitelist", url.containers().constData());
    if (url.kind() == StreamUrl::Kind::Rtsp)
        setRtspOptions(&options, url.transport());
    else
        setProbingOptions(&options, url.kind());

    AVFormatContext* context = avformat_alloc_context();
    if (!context)
        return false;
    context->interrupt_callback = {interruptCallback, &interrupt};
    // On failure the context is freed by the call.
    if (avformat_open_input(&context, url.location().constData(), nullptr, options.get()) < 0)
        return false;
    format.reset(context);
    if (const char* unused = options.firstUnused())
        qCDebug(streamLog, "Option %s has no effect on %s", unused, format->iformat->name);
    return true;
}

bool StreamDemuxer::findVideo()
{
    videoIndex = av_find_best_stream(format.get(), AVMEDIA_TYPE_VIDEO, -1, -1, nullptr, 0);
    const bool described = videoIndex >= 0 && QByteArray(format->iformat->name) == "rtsp";
    if (!described) {
        avformat_find_stream_info(format.get(), nullptr);
        videoIndex = av_find_best_stream(format.get(), AVMEDIA_TYPE_VIDEO, -1, -1, nullptr, 0);
    }
    if (videoIndex < 0 || (stream()->disposition & AV_DISPOSITION_ATTACHED_PIC))
        return false;
    for (unsigned i = 0; i < format->nb_streams; ++i) {
        if (int(i) != videoIndex)
            format->streams[i]->discard = AVDISCARD_ALL;
    }
    if (described)
        takePieces();
    return !interrupt.isDue();
}

/// RTP brings these codecs in pieces of a frame, which the library's parsers would put together by
/// what they hold rather than by their time stamps.
void StreamDemuxer::takePieces()
{
    const AVCodecID codec = video().codec_id;
    inPieces = codec == AV_CODEC_ID_H264 || codec == AV_CODEC_ID_HEVC;
    if (inPieces)
        format->flags |= AVFMT_FLAG_NOPARSE | AVFMT_FLAG_NOFILLIN;
}

const AVPacket* StreamDemuxer::read()
{
    while (!interrupt.isDue()) {
        av_packet_unref(packet.get());
        const int result = av_read_frame(format.get(), packet.get());
        // An interrupted read may still hand out a piece of a frame.
        if (interrupt.isDue() || (result < 0 && !isWorthRetrying(result)))
            return nullptr;
        if (result >= 0 && packet->stream_index == videoIndex) {
            badReads = 0;
            const AVPacket* frame = inPieces ? assembler.add(*packet) : packet.get();
            if (frame)
                return frame;
        }
    }
    return nullptr;
}

bool StreamDemuxer::isWorthRetrying(int error)
{
    if (error == AVERROR(EAGAIN))
        return interrupt.sleepFor(milliseconds(5));
    return error == AVERROR_INVALIDDATA && ++badReads <= toleratedBadReads;
}

bool StreamDemuxer::rewind()
{
    const int64_t start = stream()->start_time == AV_NOPTS_VALUE ? 0 : stream()->start_time;
    return avformat_seek_file(format.get(), videoIndex, INT64_MIN, start, start, 0) >= 0 ||
           av_seek_frame(format.get(), -1, 0, AVSEEK_FLAG_BYTE) >= 0;
}

const AVCodecParameters& StreamDemuxer::video() const
{
    return *stream()->codecpar;
}

AVRational StreamDemuxer::timeBase() const
{
    return stream()->time_base;
}

double StreamDemuxer::frameDuration() const
{
    const AVRational rate = stream()->avg_frame_rate;
    return rate.num > 0 && rate.den > 0 ? av_q2d(av_inv_q(rate)) : 0.0;
}

const AVStream* StreamDemuxer::stream() const
{
    return format->streams[videoIndex];
}

} // namespace zolens

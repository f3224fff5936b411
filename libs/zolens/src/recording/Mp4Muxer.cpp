#include "Mp4Muxer.h"

#include "ffmpeg/AvOptions.h"
#include "ffmpeg/FfmpegLog.h"

namespace zolens {
namespace {

/// Tells how long a single picture shows.
constexpr int usualRate = 30;
constexpr auto fragmentation = "frag_keyframe+empty_moov+default_base_moof";

} // namespace

Mp4Muxer::Mp4Muxer(QFileDevice& file, Layout fileLayout) : layout(fileLayout), output(file)
{
    silenceFfmpeg();
}

Mp4Muxer::~Mp4Muxer() = default;

bool Mp4Muxer::begin(const AVCodecParameters& parameters, AVRational timeBase)
{
    AVFormatContext* context = nullptr;
    avformat_alloc_output_context2(&context, nullptr, "mp4", nullptr);
    muxer.reset(context);
    if (!muxer || !output.context() || !addStream(parameters, timeBase))
        return false;
    muxer->pb = output.context();
    AvOptions options;
    if (layout == Layout::Fragmented)
        options.set("movflags", fragmentation);
    return avformat_write_header(muxer.get(), options.get()) >= 0 && output.flush();
}

bool Mp4Muxer::addStream(const AVCodecParameters& parameters, AVRational timeBase)
{
    AVStream* stream = avformat_new_stream(muxer.get(), nullptr);
    if (!stream || avcodec_parameters_copy(stream->codecpar, &parameters) < 0)
        return false;
    stream->codecpar->codec_tag = 0; // The container finds its own.
    stream->time_base = timeBase;
    sourceTimeBase = timeBase;
    duration = timeBase.den / usualRate;
    return true;
}

bool Mp4Muxer::write(AVPacket* packet)
{
    bool written = true;
    if (held) {
        duration = packet->pts - held->pts;
        written = writeHeld();
    } else {
        held.reset(av_packet_alloc());
    }
    if (!held)
        return false;
    av_packet_move_ref(held.get(), packet);
    return written;
}

bool Mp4Muxer::writeHeld()
{
    held->stream_index = 0;
    held->duration = duration;
    av_packet_rescale_ts(held.get(), sourceTimeBase, muxer->streams[0]->time_base);
    const bool written = av_write_frame(muxer.get(), held.get()) >= 0;
    av_packet_unref(held.get());
    return written && output.context()->error >= 0;
}

bool Mp4Muxer::endFragment()
{
    return av_write_frame(muxer.get(), nullptr) >= 0 && output.flush();
}

bool Mp4Muxer::finish()
{
    if (held && !writeHeld())
        return false;
    return av_write_trailer(muxer.get()) >= 0 && output.flush();
}

} // namespace zolens

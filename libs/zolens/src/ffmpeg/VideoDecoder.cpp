#include "VideoDecoder.h"

#include <algorithm>
#include <thread>

namespace zolens {
namespace {

/// Larger pictures are refused before memory is taken for them.
constexpr int64_t maximumPixels = int64_t(1) << 27;
constexpr unsigned maximumThreads = 4;

/// Frame threads hold back one frame each, slice threads none.
void tune(AVCodecContext* codec, bool live)
{
    codec->max_pixels = maximumPixels;
    codec->thread_count = int(std::clamp(std::thread::hardware_concurrency(), 1U, maximumThreads));
    codec->thread_type = live ? FF_THREAD_SLICE : FF_THREAD_FRAME | FF_THREAD_SLICE;
    if (live)
        codec->flags |= AV_CODEC_FLAG_LOW_DELAY;
}

} // namespace

bool VideoDecoder::open(const AVCodecParameters& parameters, bool live)
{
    const AVCodec* decoder = avcodec_find_decoder(parameters.codec_id);
    if (!decoder)
        return false;
    const AVCodecDescriptor* descriptor = avcodec_descriptor_get(parameters.codec_id);
    intraOnly = descriptor && (descriptor->props & AV_CODEC_PROP_INTRA_ONLY);
    codec.reset(avcodec_alloc_context3(decoder));
    frame.reset(av_frame_alloc());
    if (!codec || !frame || avcodec_parameters_to_context(codec.get(), &parameters) < 0)
        return false;
    tune(codec.get(), live);
    return avcodec_open2(codec.get(), decoder, nullptr) >= 0;
}

void VideoDecoder::decode(const AVPacket& packet, const FrameHandler& handler)
{
    if (avcodec_send_packet(codec.get(), &packet) < 0)
        ++damaged;
    receive(handler);
}

void VideoDecoder::drain(const FrameHandler& handler)
{
    avcodec_send_packet(codec.get(), nullptr);
    receive(handler);
    avcodec_flush_buffers(codec.get());
}

void VideoDecoder::receive(const FrameHandler& handler)
{
    int result = 0;
    while ((result = avcodec_receive_frame(codec.get(), frame.get())) >= 0) {
        handler(*frame);
        av_frame_unref(frame.get());
    }
    if (result != AVERROR(EAGAIN) && result != AVERROR_EOF)
        ++damaged;
}

} // namespace zolens

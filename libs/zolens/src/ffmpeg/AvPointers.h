#pragma once

#include <memory>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libswscale/swscale.h>
}

namespace zolens {

/// Releases what the FFmpeg libraries allocate.
struct AvRelease
{
    void operator()(AVFormatContext* context) const { avformat_close_input(&context); }
    void operator()(AVCodecContext* context) const { avcodec_free_context(&context); }
    void operator()(AVCodecParameters* parameters) const { avcodec_parameters_free(&parameters); }
    void operator()(AVPacket* packet) const { av_packet_free(&packet); }
    void operator()(AVFrame* frame) const { av_frame_free(&frame); }
    void operator()(AVBufferPool* pool) const { av_buffer_pool_uninit(&pool); }
    void operator()(SwsContext* context) const { sws_freeContext(context); }
};

template <typename T>
using AvPointer = std::unique_ptr<T, AvRelease>;

} // namespace zolens

#include "Picture.h"

#include <libyuv.h>

extern "C" {
#include <libavutil/imgutils.h>
}

namespace zolens {
namespace {

constexpr int alignment = 64;

int bytesOf(const QSize& size)
{
    return av_image_get_buffer_size(AV_PIX_FMT_YUV420P, size.width(), size.height(), alignment);
}

} // namespace

Picture PicturePool::acquire(const QSize& size)
{
    const int bytes = size.isEmpty() ? 0 : bytesOf(size);
    if (bytes <= 0)
        return nullptr;
    if (size != bufferedSize) {
        buffers.reset(av_buffer_pool_init(static_cast<size_t>(bytes), nullptr));
        bufferedSize = size;
    }
    Picture picture(av_frame_alloc());
    if (!picture || !buffers)
        return nullptr;
    picture->buf[0] = av_buffer_pool_get(buffers.get());
    if (!picture->buf[0])
        return nullptr;
    picture->format = AV_PIX_FMT_YUV420P;
    picture->width = size.width();
    picture->height = size.height();
    av_image_fill_arrays(picture->data, picture->linesize, picture->buf[0]->data,
                         AV_PIX_FMT_YUV420P, size.width(), size.height(), alignment);
    return picture;
}

QSize evenSize(const QSize& size)
{
    return QSize(size.width() / 2 * 2, size.height() / 2 * 2);
}

void convertToPicture(const QImage& image, AVFrame* target)
{
    libyuv::ARGBToI420(image.constBits(), image.bytesPerLine(), target->data[0],
                       target->linesize[0], target->data[1], target->linesize[1], target->data[2],
                       target->linesize[2], target->width, target->height);
}

void scalePicture(const AVFrame& source, AVFrame* target)
{
    libyuv::I420Scale(source.data[0], source.linesize[0], source.data[1], source.linesize[1],
                      source.data[2], source.linesize[2], source.width, source.height,
                      target->data[0], target->linesize[0], target->data[1], target->linesize[1],
                      target->data[2], target->linesize[2], target->width, target->height,
                      libyuv::kFilterBox);
    target->pts = source.pts;
}

} // namespace zolens

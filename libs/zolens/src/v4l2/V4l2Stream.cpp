#include "V4l2Stream.h"

#include "V4l2Device.h"
#include "V4l2Log.h"
#include "VideoFormats.h"

#include <linux/videodev2.h>
#include <sys/mman.h>

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstring>

namespace zolens {
namespace {

/// Two in the decoders, one that waits for them, and three for the driver.
constexpr unsigned int wantedBuffers = 6;
constexpr unsigned int fewestBuffers = 2;
/// Frame times are handed over in units of 100 nanoseconds, as USB cameras count them.
constexpr double ticksPerSecond = 1e7;
constexpr int captureType = V4L2_BUF_TYPE_VIDEO_CAPTURE;

v4l2_buffer emptyBuffer(unsigned int index = 0)
{
    v4l2_buffer buffer = {};
    buffer.type = captureType;
    buffer.memory = V4L2_MEMORY_MMAP;
    buffer.index = index;
    return buffer;
}

} // namespace

V4l2Stream::V4l2Stream(std::shared_ptr<const V4l2Device> videoDevice)
    : device(std::move(videoDevice))
{
}

V4l2Stream::~V4l2Stream()
{
    stop();
}

int V4l2Stream::start(const PixelFormat& pixels, const QSize& size)
{
    stop();
    int error = setFormat(pixels, size);
    if (error != 0)
        return error;
    setRate();
    unsigned int count = wantedBuffers;
    active = true;
    error = requestBuffers(&count);
    if (error == 0)
        error = fill(count);
    int type = captureType;
    if (error == 0)
        error = device->request(VIDIOC_STREAMON, &type);
    if (error != 0)
        stop();
    return error;
}

void V4l2Stream::stop()
{
    if (!active)
        return;
    active = false;
    int type = captureType;
    device->request(VIDIOC_STREAMOFF, &type);
    for (const Mapping& mapping : buffers)
        device->system().munmap(mapping.data, mapping.size);
    buffers.clear();
    unsigned int none = 0;
    requestBuffers(&none);
}

/// Drivers answer a format that they lack with another one instead of an error.
int V4l2Stream::setFormat(const PixelFormat& pixels, const QSize& size)
{
    v4l2_format format = {};
    format.type = captureType;
    format.fmt.pix.pixelformat = pixels.fourcc;
    format.fmt.pix.width = __u32(size.width());
    format.fmt.pix.height = __u32(size.height());
    format.fmt.pix.field = V4L2_FIELD_ANY;
    const int error = device->request(VIDIOC_S_FMT, &format);
    if (error != 0)
        return error;
    const v4l2_pix_format& actual = format.fmt.pix;
    if (actual.pixelformat != pixels.fourcc || actual.width == 0 || actual.height == 0)
        return EINVAL;
    pictures = {&pixels, QSize(int(actual.width), int(actual.height)), int(actual.bytesperline)};
    return 0;
}

/// Devices that have only one rate refuse, which does no harm.
void V4l2Stream::setRate()
{
    interval = shortestFrameTime(*device, pictures.pixels->fourcc, pictures.size);
    if (interval <= 0.0)
        return;
    v4l2_streamparm parameters = {};
    parameters.type = captureType;
    parameters.parm.capture.timeperframe = {__u32(std::lround(interval * ticksPerSecond)),
                                            __u32(ticksPerSecond)};
    device->request(VIDIOC_S_PARM, &parameters);
}

int V4l2Stream::requestBuffers(unsigned int* count)
{
    v4l2_requestbuffers request = {};
    request.count = *count;
    request.type = captureType;
    request.memory = V4L2_MEMORY_MMAP;
    const int error = device->request(VIDIOC_REQBUFS, &request);
    *count = request.count;
    return error;
}

int V4l2Stream::fill(unsigned int count)
{
    if (count < fewestBuffers)
        return ENOMEM;
    for (unsigned int i = 0; i < count; ++i) {
        int error = mapBuffer(i);
        if (error == 0)
            error = enqueue(i);
        if (error != 0)
            return error;
    }
    return 0;
}

int V4l2Stream::mapBuffer(unsigned int index)
{
    v4l2_buffer buffer = emptyBuffer(index);
    const int error = device->request(VIDIOC_QUERYBUF, &buffer);
    if (error != 0)
        return error;
    void* data = device->system().mmap(buffer.length, device->descriptor(), buffer.m.offset);
    if (data == MAP_FAILED)
        return errno;
    buffers.push_back({static_cast<uchar*>(data), buffer.length});
    return 0;
}

int V4l2Stream::enqueue(unsigned int index) const
{
    v4l2_buffer buffer = emptyBuffer(index);
    return device->request(VIDIOC_QBUF, &buffer);
}

int V4l2Stream::take(DriverFrame* frame)
{
    v4l2_buffer buffer = emptyBuffer();
    const int error = device->request(VIDIOC_DQBUF, &buffer);
    if (error != 0)
        return error;
    if (buffer.index >= buffers.size())
        return EIO;
    const Mapping& mapping = buffers[buffer.index];
    frame->buffer = buffer.index;
    frame->data = mapping.data;
    frame->size = std::min<std::size_t>(buffer.bytesused, mapping.size);
    frame->damaged = (buffer.flags & V4L2_BUF_FLAG_ERROR) || frame->size == 0;
    return 0;
}

void V4l2Stream::giveBack(const DriverFrame& frame) const
{
    const int error = enqueue(frame.buffer);
    if (error != 0)
        qCDebug(v4l2Log, "A buffer could not be given back: %s", std::strerror(error));
}

} // namespace zolens

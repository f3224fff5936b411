#include "FakeCamera.h"

#include <sys/mman.h>
#include <sys/timerfd.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

namespace {

constexpr qint64 nanosecondsPerSecond = 1000000000;
constexpr int mostBuffers = 32;

template <typename T>
T* as(void* argument)
{
    return static_cast<T*>(argument);
}

} // namespace

FakeCamera::FakeCamera() = default;

FakeCamera::~FakeCamera()
{
    freeBuffers();
}

void FakeCamera::setInUse(bool on)
{
    const std::lock_guard<std::mutex> lock(mutex);
    inUse = on;
}

void FakeCamera::stall()
{
    const std::lock_guard<std::mutex> lock(mutex);
    pace(owner, 0);
}

void FakeCamera::breakQueue()
{
    const std::lock_guard<std::mutex> lock(mutex);
    queueBroken = true;
}

void FakeCamera::vanish()
{
    const std::lock_guard<std::mutex> lock(mutex);
    gone = true;
    if (owner >= 0)
        pace(owner, 1);
}

bool FakeCamera::isBroken() const
{
    const std::lock_guard<std::mutex> lock(mutex);
    return gone || queueBroken || !streaming;
}

QSize FakeCamera::size() const
{
    const std::lock_guard<std::mutex> lock(mutex);
    return currentSize;
}

quint32 FakeCamera::fourcc() const
{
    const std::lock_guard<std::mutex> lock(mutex);
    return currentFourcc;
}

int FakeCamera::value(quint32 control) const
{
    const std::lock_guard<std::mutex> lock(mutex);
    return controls.value(control);
}

std::vector<std::pair<quint32, int>> FakeCamera::writes() const
{
    const std::lock_guard<std::mutex> lock(mutex);
    return controls.writes;
}

int FakeCamera::memory() const
{
    const std::lock_guard<std::mutex> lock(mutex);
    return memoryFile;
}

int FakeCamera::ioctl(int handle, unsigned long request, void* argument)
{
    const std::lock_guard<std::mutex> lock(mutex);
    return gone ? ENODEV : dispatch(handle, request, argument);
}

int FakeCamera::dispatch(int handle, unsigned long request, void* argument)
{
    switch (request) {
    case VIDIOC_QUERYCAP:
        return queryCapability(as<v4l2_capability>(argument));
    case VIDIOC_ENUM_FMT:
        return enumFormat(as<v4l2_fmtdesc>(argument));
    case VIDIOC_ENUM_FRAMESIZES:
        return enumSize(as<v4l2_frmsizeenum>(argument));
    case VIDIOC_ENUM_FRAMEINTERVALS:
        return enumInterval(as<v4l2_frmivalenum>(argument));
    case VIDIOC_G_FMT:
        return getFormat(as<v4l2_format>(argument));
    case VIDIOC_S_FMT:
        return setFormat(handle, as<v4l2_format>(argument));
    case VIDIOC_S_PARM:
        return setRate(as<v4l2_streamparm>(argument));
    case VIDIOC_REQBUFS:
        return requestBuffers(handle, as<v4l2_requestbuffers>(argument));
    case VIDIOC_QUERYBUF:
        return queryBuffer(as<v4l2_buffer>(argument));
    case VIDIOC_QBUF:
        return queueBuffer(handle, *as<v4l2_buffer>(argument));
    case VIDIOC_DQBUF:
        return dequeueBuffer(handle, as<v4l2_buffer>(argument));
    case VIDIOC_STREAMON:
        return startStream(handle);
    case VIDIOC_STREAMOFF:
        return stopStream(handle);
    default:
        return controls.ioctl(request, argument);
    }
}

int FakeCamera::queryCapability(v4l2_capability* answer) const
{
    const auto length = std::min<std::size_t>(sizeof answer->card, std::size_t(name.size()));
    std::memcpy(answer->card, name.constData(), length);
    answer->device_caps = deviceCaps;
    answer->capabilities =
        V4L2_CAP_VIDEO_CAPTURE | V4L2_CAP_META_CAPTURE | V4L2_CAP_STREAMING | V4L2_CAP_DEVICE_CAPS;
    return 0;
}

int FakeCamera::enumFormat(v4l2_fmtdesc* entry) const
{
    if (entry->index >= formats.size())
        return EINVAL;
    entry->pixelformat = formats[entry->index].fourcc;
    return 0;
}

const FakeFormat* FakeCamera::format(quint32 code) const
{
    const auto found = std::find_if(formats.begin(), formats.end(),
                                    [code](const auto& it) { return it.fourcc == code; });
    return found == formats.end() ? nullptr : &*found;
}

int FakeCamera::enumSize(v4l2_frmsizeenum* entry) const
{
    const FakeFormat* found = format(entry->pixel_format);
    if (!found)
        return EINVAL;
    if (found->range) {
        entry->type = V4L2_FRMSIZE_TYPE_STEPWISE;
        entry->stepwise = *found->range;
        return entry->index == 0 ? 0 : EINVAL;
    }
    if (entry->index >= found->sizes.size())
        return EINVAL;
    const QSize size = found->sizes[entry->index];
    entry->type = V4L2_FRMSIZE_TYPE_DISCRETE;
    entry->discrete = {__u32(size.width()), __u32(size.height())};
    return 0;
}

int FakeCamera::enumInterval(v4l2_frmivalenum* entry) const
{
    if (entry->index > 1)
        return EINVAL;
    entry->type = V4L2_FRMIVAL_TYPE_DISCRETE;
    entry->discrete = {entry->index + 1, __u32(framesPerSecond)};
    return 0;
}

int FakeCamera::getFormat(v4l2_format* format) const
{
    format->fmt.pix.pixelformat = currentFourcc;
    format->fmt.pix.width = __u32(currentSize.width());
    format->fmt.pix.height = __u32(currentSize.height());
    return 0;
}

/// A format or size that is not offered is silently replaced.
int FakeCamera::setFormat(int handle, v4l2_format* request)
{
    if (inUse || bufferCount > 0 || (owner >= 0 && owner != handle))
        return EBUSY;
    const FakeFormat* found = format(request->fmt.pix.pixelformat);
    if (!found)
        found = &formats.front();
    const QSize wanted(int(request->fmt.pix.width), int(request->fmt.pix.height));
    const auto& sizes = found->sizes;
    const bool offered =
        found->range || std::find(sizes.begin(), sizes.end(), wanted) != sizes.end();
    currentFourcc = found->fourcc;
    currentSize = offered ? wanted : sizes.front();
    request->fmt.pix.bytesperline = 0;
    request->fmt.pix.sizeimage = __u32(bufferLength());
    return getFormat(request);
}

int FakeCamera::setRate(v4l2_streamparm* parameters)
{
    const v4l2_fract& time = parameters->parm.capture.timeperframe;
    return time.numerator == 0 ? EINVAL : 0;
}

std::size_t FakeCamera::bufferLength() const
{
    constexpr std::size_t page = 4096;
    constexpr std::size_t mostBytesPerPixel = 4;
    const auto pixels = std::size_t(currentSize.width()) * std::size_t(currentSize.height());
    return (pixels * mostBytesPerPixel + page - 1) / page * page;
}

int FakeCamera::requestBuffers(int handle, v4l2_requestbuffers* request)
{
    if (streaming || inUse || (owner >= 0 && owner != handle))
        return EBUSY;
    freeBuffers();
    if (request->count == 0)
        return 0;
    request->count = std::min<__u32>(request->count, mostBuffers);
    bufferCount = int(request->count);
    owner = handle;
    memoryFile = memfd_create("frames", MFD_CLOEXEC);
    return ftruncate(memoryFile, off_t(bufferLength()) * bufferCount) == 0 ? 0 : ENOMEM;
}

void FakeCamera::freeBuffers()
{
    if (memoryFile >= 0)
        close(memoryFile);
    memoryFile = -1;
    bufferCount = 0;
    owner = -1;
    queued.clear();
}

int FakeCamera::queryBuffer(v4l2_buffer* buffer) const
{
    if (int(buffer->index) >= bufferCount)
        return EINVAL;
    buffer->length = __u32(bufferLength());
    buffer->m.offset = __u32(buffer->index * bufferLength());
    return 0;
}

int FakeCamera::queueBuffer(int handle, const v4l2_buffer& buffer)
{
    const bool isQueued = std::find(queued.begin(), queued.end(), buffer.index) != queued.end();
    if (handle != owner || int(buffer.index) >= bufferCount || isQueued)
        return EINVAL;
    queued.push_back(buffer.index);
    return 0;
}

/// Frames for which there is no buffer are lost, as with a real camera.
int FakeCamera::dequeueBuffer(int handle, v4l2_buffer* buffer)
{
    if (!streaming || handle != owner)
        return EINVAL;
    if (queueBroken)
        return EIO;
    quint64 expirations = 0;
    if (read(handle, &expirations, sizeof expirations) < 0)
        return EAGAIN;
    frameNumber += int(expirations);
    if (queued.empty())
        return EAGAIN;
    buffer->index = queued.front();
    queued.pop_front();
    const QByteArray data = pictures(currentFourcc, currentSize, frameNumber);
    const auto length = std::min<std::size_t>(std::size_t(data.size()), bufferLength());
    const auto written =
        pwrite(memoryFile, data.constData(), length, off_t(buffer->index) * off_t(bufferLength()));
    buffer->bytesused = __u32(std::max<ssize_t>(0, written));
    buffer->flags = frameFlags;
    return 0;
}

int FakeCamera::startStream(int handle)
{
    if (handle != owner || bufferCount == 0)
        return EINVAL;
    streaming = true;
    queueBroken = false;
    pace(handle, nanosecondsPerSecond / framesPerSecond);
    return 0;
}

int FakeCamera::stopStream(int handle)
{
    if (owner >= 0 && handle != owner)
        return EBUSY;
    streaming = false;
    queued.clear();
    if (owner >= 0)
        pace(owner, 0);
    return 0;
}

void FakeCamera::pace(int handle, qint64 nanoseconds) const
{
    const timespec time = {time_t(nanoseconds / nanosecondsPerSecond),
                           long(nanoseconds % nanosecondsPerSecond)};
    const itimerspec setting = {time, time};
    timerfd_settime(handle, 0, &setting, nullptr);
}

void FakeCamera::release(int handle)
{
    const std::lock_guard<std::mutex> lock(mutex);
    if (handle != owner)
        return;
    streaming = false;
    freeBuffers();
}

#pragma once

#include "FakeControls.h"

#include <linux/videodev2.h>

#include <QByteArray>
#include <QSize>

#include <deque>
#include <functional>
#include <mutex>
#include <optional>
#include <vector>

struct FakeFormat
{
    quint32 fourcc;
    std::vector<QSize> sizes;
    std::optional<v4l2_frmsize_stepwise> range; ///< Instead of single sizes.
};

/// One camera behind FakeV4l2. What it is made of is set before it is plugged in; the operations
/// are thread-safe.
class FakeCamera final
{
public:
    using Pictures = std::function<QByteArray(quint32 fourcc, const QSize& size, int number)>;

    FakeCamera();
    ~FakeCamera();

    QByteArray name = "Fake camera";
    quint32 deviceCaps = V4L2_CAP_VIDEO_CAPTURE | V4L2_CAP_STREAMING;
    std::vector<FakeFormat> formats;
    FakeControls controls;
    int framesPerSecond = 30;
    /// What a frame holds.
    Pictures pictures;
    quint32 frameFlags = 0;

    /// Whether another program streams from it.
    void setInUse(bool on);
    /// The stream gives no frames until it is started again.
    void stall();
    /// The queue of buffers fails until it is started again, as after errors on the bus.
    void breakQueue();
    void vanish();
    bool isBroken() const;

    QSize size() const;
    quint32 fourcc() const;
    int value(quint32 control) const;
    /// What was written, in order.
    std::vector<std::pair<quint32, int>> writes() const;

    /// 0 or the error number.
    int ioctl(int handle, unsigned long request, void* argument);
    void release(int handle);
    int memory() const;

private:
    int dispatch(int handle, unsigned long request, void* argument);
    int queryCapability(v4l2_capability* answer) const;
    int enumFormat(v4l2_fmtdesc* entry) const;
    int enumSize(v4l2_frmsizeenum* entry) const;
    int enumInterval(v4l2_frmivalenum* entry) const;
    int getFormat(v4l2_format* format) const;
    int setFormat(int handle, v4l2_format* format);
    int setRate(v4l2_streamparm* parameters);
    int requestBuffers(int handle, v4l2_requestbuffers* request);
    int queryBuffer(v4l2_buffer* buffer) const;
    int queueBuffer(int handle, const v4l2_buffer& buffer);
    int dequeueBuffer(int handle, v4l2_buffer* buffer);
    int startStream(int handle);
    int stopStream(int handle);
    void pace(int handle, qint64 nanoseconds) const;
    const FakeFormat* format(quint32 code) const;
    std::size_t bufferLength() const;
    void freeBuffers();

    mutable std::mutex mutex;
    bool inUse = false;
    bool gone = false;
    bool queueBroken = false;
    quint32 currentFourcc = 0;
    QSize currentSize;
    int owner = -1; ///< The handle that has buffers.
    int bufferCount = 0;
    int memoryFile = -1;
    bool streaming = false;
    std::deque<unsigned int> queued;
    int frameNumber = 0;
};

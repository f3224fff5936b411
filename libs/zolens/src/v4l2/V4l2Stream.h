#pragma once

#include "PixelFormats.h"

#include <QSize>

#include <memory>
#include <vector>

namespace zolens {

class V4l2Device;

/// A frame in a buffer that is shared with the driver, until it is given back.
struct DriverFrame
{
    unsigned int buffer = 0;
    const uchar* data = nullptr;
    std::size_t size = 0;
    bool damaged = false; ///< As far as the driver knows.
};

/// What the pictures of a stream look like in memory.
struct PictureLayout
{
    const PixelFormat* pixels = nullptr;
    QSize size;
    int bytesPerLine = 0; ///< Of the first plane; 0 when there is no padding.
};

/// The flow of frames out of a device, from start() to stop(). Used by the worker only, but for
/// giveBack(), which any thread may call until stop().
class V4l2Stream final
{
public:
    explicit V4l2Stream(std::shared_ptr<const V4l2Device> videoDevice);
    ~V4l2Stream();

    /// Takes the highest frame rate. 0 on success, else an error number; the device may then have
    /// another size, which layout() tells.
    int start(const PixelFormat& pixels, const QSize& size);
    void stop();

    /// 0 on success, EAGAIN when there is no frame yet, else another error number.
    int take(DriverFrame* frame);
    void giveBack(const DriverFrame& frame) const;

    const PictureLayout& layout() const { return pictures; }
    /// In seconds; 0 when it is unknown.
    double frameTime() const { return interval; }

private:
    struct Mapping
    {
        uchar* data;
        std::size_t size;
    };

    int setFormat(const PixelFormat& pixels, const QSize& size);
    void setRate();
    int requestBuffers(unsigned int* count);
    int mapBuffer(unsigned int index);
    int enqueue(unsigned int index) const;
    int fill(unsigned int count);

    const std::shared_ptr<const V4l2Device> device;
    PictureLayout pictures;
    double interval = 0.0;
    std::vector<Mapping> buffers;
    bool active = false;
};

} // namespace zolens

#pragma once

#include "FrameDecoder.h"

#include <QSize>

#include <vector>

namespace zolens {

/// Decodes JPEG pictures straight into the image. A picture that ends too early or is corrupt
/// counts as damaged, whatever of it could be decoded. One that has all its pixels is shown, also
/// when padding follows them or the mark of its end is missing; of a larger one the upper left part
/// is shown.
class MjpegDecoder final : public FrameDecoder
{
public:
    explicit MjpegDecoder(const QSize& pictureSize) : size(pictureSize) {}

    Result decode(const DriverFrame& frame, FrameConverter::Orientation orientation,
                  QImage* target) override;

private:
    struct Destroy
    {
        void operator()(void* handle) const;
    };

    enum class Outcome { Clean, Doubtful, Unusable };

    Outcome decompress(const DriverFrame& frame, bool flip, QImage* target);
    bool read(const DriverFrame& frame, bool flip, QImage* target);
    bool readLarger(const DriverFrame& frame, const QSize& actual, bool flip, QImage* target);
    DriverFrame withProperEnd(const DriverFrame& frame);
    void mirror(QImage* target);

    const QSize size;
    /// Null until the next picture: made anew after a failure, which leaves traces in it.
    std::unique_ptr<void, Destroy> handle;
    std::vector<uchar> mended;
    std::vector<uchar> larger;
    std::vector<uchar> row;
};

} // namespace zolens

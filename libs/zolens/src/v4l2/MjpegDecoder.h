#pragma once

#include "FrameDecoder.h"

#include <QSize>

#include <vector>

namespace zolens {

/// Decodes JPEG pictures straight into the image. A picture that ends too early or is corrupt
/// counts as damaged, whatever of it could be decoded.
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

    bool decompress(const DriverFrame& frame, bool flip, QImage* target);
    void mirror(QImage* target);

    const QSize size;
    /// Null until the next picture: made anew after a failure, which leaves traces in it.
    std::unique_ptr<void, Destroy> handle;
    std::vector<uchar> row;
};

} // namespace zolens

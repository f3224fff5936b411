#pragma once

#include "StreamUrl.h"
#include "device/CaptureCamera.h"

namespace zolens {

/// A network stream or a local video file as a camera. It has the one size and format of the
/// stream, and no properties but those of the library. A still picture is the next frame. A stream
/// that stalls or ends is taken up again without a word; a file starts over. It counts as started
/// as soon as there is a picture, or when video data come but no key frame yet. Its name and
/// address are the URL without credentials.
class StreamCamera final : public CaptureCamera
{
public:
    explicit StreamCamera(const QString& text);

    /// The source balances by itself.
    int whiteBalanceMode() override { return CWWhiteBalance_Auto; }

protected:
    CaptureWork prepare(FrameSink* sink) const override;

private:
    const StreamUrl url;
};

} // namespace zolens

#pragma once

#include "StreamUrl.h"
#include "device/CaptureSession.h"

namespace zolens {

/// What a stream's camera and its worker share.
struct StreamSession final : CaptureSession
{
    StreamSession(const StreamUrl& source, FrameSink* frameSink)
        : CaptureSession(frameSink),
          url(source)
    {
        // The next picture is soon there, or the stream stalls.
        stillPatience = std::chrono::seconds(2);
        info.type = CWDevice_NetworkStream;
        info.name = url.displayName().toStdString();
        info.address = info.name;
    }

    const StreamUrl url;
};

} // namespace zolens

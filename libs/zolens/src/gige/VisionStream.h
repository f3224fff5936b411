#pragma once

#include "VisionDevice.h"
#include "device/VideoModes.h"

#include <functional>
#include <memory>

namespace zolens {

class FeatureAccess;
class WakeUp;

/// The flow of pictures out of a camera, from start() to stop(). Packets of the network that get
/// lost are asked for again. Used by the worker only.
class VisionStream final
{
public:
    /// A picture in memory of the stream; goes back to the stream when it is done.
    using Picture = std::unique_ptr<ArvBuffer, std::function<void(ArvBuffer*)>>;

    /// `bell` rings at every picture, and must outlive the stream.
    VisionStream(std::shared_ptr<VisionDevice> visionDevice, WakeUp& bell);
    ~VisionStream();

    /// False when the camera refuses, or its pictures are more than memory has room for.
    bool start(const VideoFormat& format, const QSize& size);
    /// Waits for a camera that is not known to be lost. What is left of the stream of a lost one
    /// takes seconds to end, and does so with the object.
    void stop();

    /// Null when there is none yet. Damaged ones come too.
    Picture take();
    /// Pictures that could be taken.
    int waiting() const;
    /// Whether the picture is complete and of the kind that was asked for.
    bool isSound(ArvBuffer& picture) const;
    /// What the camera made of the size that was asked for.
    QSize size() const { return pictureSize; }
    /// In seconds, as the camera states it; 0 when it does not.
    double frameTime() const { return interval; }

private:
    bool open(FeatureAccess& features);
    bool fill(unsigned int payload);

    const std::shared_ptr<VisionDevice> device;
    WakeUp& bell;
    AravisPointer<ArvStream> stream;
    quint32 formatCode = 0;
    QSize pictureSize;
    double interval = 0.0;
};

} // namespace zolens

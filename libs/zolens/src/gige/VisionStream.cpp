#include "VisionStream.h"

#include "FeatureAccess.h"
#include "VisionFormats.h"
#include "device/WakeUp.h"

#include <algorithm>
#include <utility>

namespace zolens {
namespace {

/// One that is shown, and enough to bridge a moment in which the machine is busy; fewer of very
/// large pictures, since what a camera claims must not take all memory.
constexpr guint mostBuffers = 6;
constexpr guint fewestBuffers = 3;
constexpr guint mostMemory = 600'000'000; // bytes

guint bufferCount(guint payload)
{
    return std::min(mostBuffers, mostMemory / payload);
}

/// Null where memory is short.
ArvBuffer* newBuffer(guint payload)
{
    void* const memory = g_try_malloc(payload);
    return memory ? arv_buffer_new_full(payload, memory, memory, g_free) : nullptr;
}

/// The camera sends by itself, as fast as it can.
void runFreely(FeatureAccess& features)
{
    features.attempt([&](GError** error) {
        arv_camera_clear_triggers(features.camera(), error);
        return true;
    });
    features.choose("AcquisitionMode", "Continuous");
    for (const char* limit : {"AcquisitionFrameRateEnable", "AcquisitionFrameRateEnabled"}) {
        if (features.has(limit))
            features.setNumber(limit, 0.0);
    }
}

QSize currentSize(FeatureAccess& features)
{
    const auto read = [&](GError** error) {
        gint width = 0;
        gint height = 0;
        arv_camera_get_region(features.camera(), nullptr, nullptr, &width, &height, error);
        return QSize(width, height);
    };
    return features.attempt(read).value_or(QSize());
}

/// The same kind of socket with and without the right to others.
void prepareNetwork(ArvCamera* camera)
{
    if (!arv_camera_is_gv_device(camera))
        return;
    arv_camera_gv_set_stream_options(camera, ARV_GV_STREAM_OPTION_PACKET_SOCKET_DISABLED);
    arv_camera_gv_set_packet_size_adjustment(camera, ARV_GV_PACKET_SIZE_ADJUSTMENT_ONCE);
}

double statedFrameTime(FeatureAccess& features)
{
    const auto read = [&](GError** error) {
        return arv_camera_get_frame_rate(features.camera(), error);
    };
    const double rate = features.attempt(read).value_or(0.0);
    return rate > 0.0 ? 1.0 / rate : 0.0;
}

} // namespace

VisionStream::VisionStream(std::shared_ptr<VisionDevice> visionDevice, WakeUp& wakeUp)
    : device(std::move(visionDevice)),
      bell(wakeUp)
{
}

VisionStream::~VisionStream()
{
    stop();
}

bool VisionStream::start(const VideoFormat& format, const QSize& size)
{
    stop();
    if (device->isLost())
        return false;
    FeatureAccess features(*device);
    if (!selectMode(features, format, size))
        return false;
    runFreely(features);
    formatCode = format.code;
    pictureSize = currentSize(features);
    interval = statedFrameTime(features);
    return open(features);
}

bool VisionStream::open(FeatureAccess& features)
{
    ArvCamera* const camera = features.camera();
    const auto payload =
        features.attempt([&](GError** error) { return arv_camera_get_payload(camera, error); });
    if (payload.value_or(0) == 0 || bufferCount(*payload) < fewestBuffers)
        return false;
    prepareNetwork(camera);
    const auto created = features.attempt(
        [&](GError** error) { return arv_camera_create_stream(camera, nullptr, nullptr, error); });
    if (!created || !*created)
        return false;
    stream.reset(*created);
    if (ARV_IS_GV_STREAM(stream.get()))
        g_object_set(stream.get(), "socket-buffer", ARV_GV_STREAM_SOCKET_BUFFER_AUTO,
                     "packet-resend", ARV_GV_STREAM_PACKET_RESEND_ALWAYS, nullptr);
    if (!fill(*payload))
        return false;
    g_signal_connect(stream.get(), "new-buffer",
                     G_CALLBACK(+[](ArvStream*, WakeUp* listener) { listener->ring(); }), &bell);
    arv_stream_set_emit_signals(stream.get(), TRUE);
    const auto begin = [&](GError** error) {
        arv_camera_start_acquisition(camera, error);
        return true;
    };
    return features.attempt(begin).has_value();
}

bool VisionStream::fill(unsigned int payload)
{
    for (guint i = 0; i < bufferCount(payload); ++i) {
        ArvBuffer* const buffer = newBuffer(payload);
        if (!buffer)
            return false;
        arv_stream_push_buffer(stream.get(), buffer);
    }
    return true;
}

void VisionStream::stop()
{
    if (!stream)
        return;
    arv_stream_set_emit_signals(stream.get(), FALSE);
    FeatureAccess features(*device);
    features.attempt([&](GError** error) {
        arv_camera_stop_acquisition(features.camera(), error);
        return true;
    });
    if (!device->isLost())
        stream.reset();
}

VisionStream::Picture VisionStream::take()
{
    ArvStream* const source = stream.get();
    return Picture(arv_stream_try_pop_buffer(source),
                   [source](ArvBuffer* buffer) { arv_stream_push_buffer(source, buffer); });
}

int VisionStream::waiting() const
{
    gint free = 0;
    gint filled = 0;
    arv_stream_get_n_buffers(stream.get(), &free, &filled);
    return filled;
}

bool VisionStream::isSound(ArvBuffer& picture) const
{
    const auto kind = arv_buffer_get_payload_type(&picture);
    const bool isPicture = kind == ARV_BUFFER_PAYLOAD_TYPE_IMAGE ||
                           kind == ARV_BUFFER_PAYLOAD_TYPE_EXTENDED_CHUNK_DATA;
    return arv_buffer_get_status(&picture) == ARV_BUFFER_STATUS_SUCCESS && isPicture &&
           arv_buffer_get_image_pixel_format(&picture) == formatCode &&
           arv_buffer_get_image_width(&picture) == pictureSize.width() &&
           arv_buffer_get_image_height(&picture) == pictureSize.height();
}

} // namespace zolens

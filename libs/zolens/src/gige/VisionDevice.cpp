#include "VisionDevice.h"

#include "VisionLog.h"

#include <utility>

namespace zolens {

void VisionDevice::LossNotice::tell()
{
    if (!lost.exchange(true))
        onLoss();
}

VisionDevice::VisionDevice(AravisPointer<ArvCamera> aravisCamera, std::function<void()> onLoss)
    : holder(arv_camera_get_device(aravisCamera.get())),
      arvCamera(std::move(aravisCamera))
{
    using Notice = std::shared_ptr<LossNotice>;
    notice->onLoss = std::move(onLoss);
    const auto tell = +[](ArvDevice*, Notice* about) { (*about)->tell(); };
    const auto forget = +[](Notice* about, GClosure*) { delete about; };
    lossHandler = g_signal_connect_data(
        device(), "control-lost", G_CALLBACK(tell), new Notice(notice),
        reinterpret_cast<GClosureNotify>(reinterpret_cast<void*>(forget)), GConnectFlags(0));
}

VisionDevice::~VisionDevice()
{
    g_signal_handler_disconnect(device(), lossHandler);
}

void VisionDevice::note(const AravisError& error)
{
    qCDebug(visionLog, "%s", error.text());
    if (error.is(ARV_DEVICE_ERROR_TIMEOUT) || error.is(ARV_DEVICE_ERROR_NOT_CONNECTED))
        giveUp();
}

} // namespace zolens

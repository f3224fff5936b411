#pragma once

#include "Aravis.h"
#include "LastHolder.h"

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>

namespace zolens {

/// An open camera of GigE Vision or USB3 Vision. Its calls wait for the camera, those of one that
/// is gone for 2.5 seconds each. A camera that is lost once is of no more use: one that comes back
/// is opened anew.
class VisionDevice final
{
public:
    /// `onLoss` is called once, on any thread, also while the device is being destroyed.
    VisionDevice(AravisPointer<ArvCamera> aravisCamera, std::function<void()> onLoss);
    /// Gives the camera back. Blocks for up to 8 seconds when it is gone.
    ~VisionDevice();
    VisionDevice(const VisionDevice&) = delete;
    VisionDevice& operator=(const VisionDevice&) = delete;

    ArvCamera* camera() const { return arvCamera.get(); }
    ArvDevice* device() const { return arv_camera_get_device(arvCamera.get()); }

    /// Held by the thread that asks or sets something: Aravis allows one at a time.
    std::unique_lock<std::mutex> reserve() { return std::unique_lock<std::mutex>(mutex); }

    bool isLost() const { return notice->lost; }
    void giveUp() { notice->tell(); }
    /// Gives the camera up when that is what the error means.
    void note(const AravisError& error);

private:
    /// Outlives the device when its signal is under way.
    struct LossNotice
    {
        void tell();

        std::atomic<bool> lost{false};
        std::function<void()> onLoss;
    };

    const std::shared_ptr<LossNotice> notice = std::make_shared<LossNotice>();
    LastHolder holder; ///< Ends after the camera, which holds the device too.
    const AravisPointer<ArvCamera> arvCamera;
    gulong lossHandler = 0;
    std::mutex mutex;
};

} // namespace zolens

#pragma once

#include "TaskThread.h"
#include "WaitBudget.h"
#include "zolens/CameraTypes.h"

#include <future>
#include <memory>
#include <optional>

namespace zolens {

struct CaptureSession;
class DeviceControls;

/// The controls of a device for a thread that must not wait long. It waits for answers at most a
/// second in any three; where one takes longer, the last answer stands in, and what is set is set
/// when the device comes to it, the latest value of each setting only. Owned by the camera and used
/// on its thread.
class PatientControls final
{
public:
    explicit PatientControls(std::shared_ptr<const CaptureSession> captureSession);
    ~PatientControls();

    /// False when the system has not left what it takes: then there are the last answers only.
    bool isRunning() const { return tasks.isRunning(); }
    /// Nothing for what the device lacks, and once it is gone.
    std::optional<double> read(tagCMProperty id);
    int whiteBalanceMode();
    int powerFrequency();

    /// False when the device is gone or refused the value in time.
    bool write(tagCMProperty id, double value);
    void setAutoExposure(bool on);
    void setWhiteBalanceMode(int mode);
    void setPowerFrequency(int value);

private:
    class PendingChanges;
    using Change = std::packaged_task<bool(DeviceControls&)>;

    /// What `question` finds out on the device, or `lastAnswer` among what is known.
    template <typename Question, typename LastAnswer>
    auto ask(Question question, LastAnswer lastAnswer);
    bool change(int setting, Change change);
    bool awaitChange(std::future<bool> changed);
    std::chrono::milliseconds patience();

    const std::shared_ptr<const CaptureSession> session;
    const std::shared_ptr<PendingChanges> pending;
    WaitBudget waits;
    TaskThread tasks;
};

} // namespace zolens

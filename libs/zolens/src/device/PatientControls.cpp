#include "PatientControls.h"

#include "CaptureSession.h"

#include <algorithm>
#include <map>
#include <mutex>
#include <utility>

namespace zolens {
namespace {

using Clock = WaitBudget::Clock;
using std::chrono::milliseconds;

/// Drivers and networks wait for seconds for a camera that does not answer; the window does not.
constexpr milliseconds answerTime(500);
constexpr std::chrono::seconds waitTime(1);
constexpr std::chrono::seconds waitSpan(3);

/// Settings beside the properties, whose own numbers are positive.
enum Setting { AutoExposure = -3, WhiteBalanceMode = -2, PowerFrequency = -1 };

} // namespace

/// The latest change of each setting that the device has not come to. Thread-safe.
class PatientControls::PendingChanges final
{
public:
    /// False when it replaces one.
    bool put(int setting, Change change)
    {
        const std::lock_guard<std::mutex> lock(mutex);
        return changes.insert_or_assign(setting, std::move(change)).second;
    }

    Change take(int setting)
    {
        const std::lock_guard<std::mutex> lock(mutex);
        return std::move(changes.extract(setting).mapped());
    }

private:
    std::mutex mutex;
    std::map<int, Change> changes;
};

PatientControls::PatientControls(std::shared_ptr<const CaptureSession> captureSession)
    : session(std::move(captureSession)),
      pending(std::make_shared<PendingChanges>()),
      waits(waitTime, waitSpan)
{
}

PatientControls::~PatientControls() = default;

milliseconds PatientControls::patience()
{
    return std::min(answerTime, std::chrono::floor<milliseconds>(waits.left(Clock::now())));
}

template <typename Question, typename LastAnswer>
auto PatientControls::ask(Question question, LastAnswer lastAnswer)
{
    using Answer = decltype(lastAnswer(LastAnswers()));
    const auto controls = session->controls();
    if (!controls)
        return lastAnswer(LastAnswers());
    const auto limit = patience();
    if (limit == milliseconds::zero())
        return lastAnswer(controls->lastAnswers());
    const auto start = Clock::now();
    const auto answer =
        tasks.ask<Answer>([controls, question] { return question(*controls); }, limit);
    waits.spend(start, Clock::now());
    return answer ? *answer : lastAnswer(controls->lastAnswers());
}

std::optional<double> PatientControls::read(tagCMProperty id)
{
    return ask([id](DeviceControls& controls) { return controls.read(id); },
               [id](const LastAnswers& answers) { return answers.value(id); });
}

int PatientControls::whiteBalanceMode()
{
    return ask([](DeviceControls& controls) { return controls.whiteBalanceMode(); },
               [](const LastAnswers& answers) { return answers.whiteBalanceMode(); });
}

int PatientControls::powerFrequency()
{
    return ask([](DeviceControls& controls) { return controls.powerFrequency(); },
               [](const LastAnswers& answers) { return answers.powerFrequency(); });
}

bool PatientControls::write(tagCMProperty id, double value)
{
    return change(
        id, Change([id, value](DeviceControls& controls) { return controls.write(id, value); }));
}

void PatientControls::setAutoExposure(bool on)
{
    change(AutoExposure, Change([on](DeviceControls& controls) {
               controls.setAutoExposure(on);
               return true;
           }));
}

void PatientControls::setWhiteBalanceMode(int mode)
{
    change(WhiteBalanceMode, Change([mode](DeviceControls& controls) {
               controls.setWhiteBalanceMode(mode);
               return true;
           }));
}

void PatientControls::setPowerFrequency(int value)
{
    change(PowerFrequency, Change([value](DeviceControls& controls) {
               controls.setPowerFrequency(value);
               return true;
           }));
}

bool PatientControls::change(int setting, Change change)
{
    const auto controls = session->controls();
    if (!controls)
        return false;
    auto changed = change.get_future();
    if (pending->put(setting, std::move(change)))
        tasks.post([controls, setting, changes = pending] { changes->take(setting)(*controls); });
    return awaitChange(std::move(changed));
}

/// A change that is not made in time counts as one that will be.
bool PatientControls::awaitChange(std::future<bool> changed)
{
    if (tasks.isLate())
        return true;
    const auto start = Clock::now();
    const bool inTime = changed.wait_for(patience()) == std::future_status::ready;
    waits.spend(start, Clock::now());
    if (inTime)
        return changed.get();
    tasks.noteDelay();
    return true;
}

} // namespace zolens

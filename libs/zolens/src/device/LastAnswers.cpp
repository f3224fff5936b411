#include "LastAnswers.h"

namespace zolens {

void LastAnswers::noteValue(tagCMProperty id, double value)
{
    const std::lock_guard<std::mutex> lock(mutex);
    values[id] = value;
}

void LastAnswers::noteWhiteBalanceMode(int mode)
{
    const std::lock_guard<std::mutex> lock(mutex);
    balance = mode;
}

void LastAnswers::notePowerFrequency(int frequency)
{
    const std::lock_guard<std::mutex> lock(mutex);
    mains = frequency;
}

std::optional<double> LastAnswers::value(tagCMProperty id) const
{
    const std::lock_guard<std::mutex> lock(mutex);
    const auto found = values.find(id);
    return found == values.end() ? std::nullopt : std::optional(found->second);
}

int LastAnswers::whiteBalanceMode() const
{
    const std::lock_guard<std::mutex> lock(mutex);
    return balance;
}

int LastAnswers::powerFrequency() const
{
    const std::lock_guard<std::mutex> lock(mutex);
    return mains;
}

} // namespace zolens

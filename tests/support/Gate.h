#pragma once

#include <functional>
#include <future>

/// Holds callers up until it is opened, as a device that does not answer.
class Gate final
{
public:
    std::function<void()> wait()
    {
        return [future = opened.get_future().share()] { future.wait(); };
    }
    void open() { opened.set_value(); }

private:
    std::promise<void> opened;
};

#pragma once

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTimer>

namespace bench {

/// Counts the frames that arrive through the event loop, and waits for them. Of the GUI thread.
class Arrivals final
{
public:
    Arrivals() { wakeUp.start(wakeUpInterval); }

    void add() { ++count; }

    /// Waits for that many more. False when they do not come in time.
    bool waitFor(int more)
    {
        QElapsedTimer timer;
        timer.start();
        const int wanted = count + more;
        while (count < wanted && timer.elapsed() < patience)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        return count >= wanted;
    }

private:
    static constexpr int patience = 10000;     // In milliseconds.
    static constexpr int wakeUpInterval = 100; // In milliseconds, for a look at the patience.

    QTimer wakeUp;
    int count = 0;
};

} // namespace bench
